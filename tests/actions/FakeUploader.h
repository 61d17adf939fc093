#pragma once

#include "actions/FerryboxUploading.h"
#include "base/LocalizedError.h"

#include <QCoroFuture>
#include <QPromise>

#include <deque>
#include <exception>
#include <vector>

namespace snapvane::testing {

/// Gives a link or fails, at once or when the test says so.
class FakeUploader : public FerryboxUploading {
public:
    struct Upload {
        QByteArray data;
        QString filename;
    };

    QCoro::Task<QUrl> uploadPNG(QByteArray data, QString filename) override {
        if (failsAtOnce) {
            throw LocalizedError(QStringLiteral("not today"));
        }
        return answerLater(std::move(data), std::move(filename));
    }

    /// Lets a held upload end; they count from 0.
    void release(std::size_t upload) { m_gates.at(upload).finish(); }

    std::vector<Upload> uploads;
    QUrl link = QUrl(QStringLiteral("https://ferrybox.example/f/1"));
    /// Thrown when set. Like the link, what counts is what is set when the upload starts.
    std::exception_ptr failure;
    bool held = false;
    /// Makes it throw "not today" before there is a task at all.
    bool failsAtOnce = false;

private:
    QCoro::Task<QUrl> answerLater(QByteArray data, QString filename) {
        uploads.push_back({data, filename});
        const QUrl answer = link;
        const std::exception_ptr thrown = failure;
        if (held) {
            m_gates.emplace_back().start();
            QFuture<void> opened = m_gates.back().future();
            co_await opened;
        }
        if (thrown) {
            std::rethrow_exception(thrown);
        }
        co_return answer;
    }

    std::deque<QPromise<void>> m_gates;
};

} // namespace snapvane::testing
