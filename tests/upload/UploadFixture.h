#pragma once

#include "base/Await.h"
#include "support/FerryboxServer.h"
#include "support/QtPrinting.h"
#include "upload/FerryboxUploadError.h"
#include "upload/FerryboxUploadService.h"
#include "upload/HttpSession.h"
#include "upload/TransportError.h"

#include <QCoroFuture>
#include <QPromise>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace snapvane::testing {

/// A key that is kept in the test instead of the desktop's secret store.
class FakeKey {
public:
    std::optional<QString> key = QStringLiteral("key-0123456789");
    /// How often it was asked for.
    int loads = 0;
    /// Makes whoever asks wait for `release`.
    bool held = false;

    void release() { m_gate.finish(); }

    FerryboxUploadService::LoadKey loader() {
        return [this] { return load(); };
    }

private:
    QCoro::Task<std::optional<QString>> load() {
        ++loads;
        if (held) {
            m_gate.start();
            QFuture<void> opened = m_gate.future();
            co_await opened;
        }
        // A copy of its own, as from a store: whoever asked for it wipes it.
        co_return key ? std::optional(QString(key->constData(), key->size())) : std::nullopt;
    }

    QPromise<void> m_gate;
};

/// The client and the server that a test gives it.
class UploadTest : public ::testing::Test {
protected:
    using Handler = FerryboxServer::Handler;

    static constexpr char picture[] = "\x89PNG\r\n\x1a\n and the rest";
    static QByteArray pictureBytes() { return QByteArray(picture, sizeof picture); }
    static QString filename() { return QStringLiteral("Snapvane 2025-03-02 14.03.09.png"); }

    QCoro::Task<QUrl> startUpload(const QUrl& baseURL, const QByteArray& data = pictureBytes()) {
        services.push_back(
            std::make_unique<FerryboxUploadService>(baseURL, *session, key.loader(), limits));
        return services.back()->uploadPNG(data, filename());
    }
    QUrl upload(const QUrl& baseURL, const QByteArray& data = pictureBytes()) {
        return await(startUpload(baseURL, data));
    }
    QUrl upload(const FerryboxServer& server) { return upload(server.baseURL()); }

    /// What the user is told of an upload that must fail.
    QString failureText(const QUrl& baseURL) {
        try {
            upload(baseURL);
        } catch (const LocalizedError& error) {
            return error.localizedDescription();
        }
        ADD_FAILURE() << "nothing went wrong";
        return {};
    }
    QString failureText(const FerryboxServer& server) { return failureText(server.baseURL()); }

    /// The same request again and again.
    static Handler always(const HttpPlan& plan) {
        return [plan](const RecordedRequest&) { return plan; };
    }

    FakeKey key;
    FerryboxUploadService::Limits limits;
    std::unique_ptr<HttpSession> session = std::make_unique<HttpSession>();
    std::vector<std::unique_ptr<FerryboxUploadService>> services;
};

} // namespace snapvane::testing
