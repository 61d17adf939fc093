#pragma once

#include "app/CaptureCoordinator.h"
#include "app/GlobalShortcut.h"
#include "selection/SessionFakes.h"

#include <QAction>

namespace snapvane::testing {

/// Answers alerts at once and keeps what they said.
class RecordingAlerts : public AlertPresenter {
public:
    explicit RecordingAlerts(Journal& journal) : m_journal(journal) {}

    int present(const Alert& alert) override {
        m_journal.push_back("alert " + alert.messageText.toStdString());
        shown.push_back(alert);
        if (whileShown) {
            whileShown();
        }
        return answer;
    }

    std::vector<Alert> shown;
    std::function<void()> whileShown;
    int answer = -1;

private:
    Journal& m_journal;
};

class RecordingShortcut : public GlobalShortcut {
public:
    explicit RecordingShortcut(Journal& journal) : m_journal(journal) {}

    void onKeyUp(std::function<void()> newHandler) override {
        handler = std::move(newHandler);
        m_journal.emplace_back("shortcut handler");
    }
    void enable() override { m_journal.emplace_back("shortcut enable"); }
    void disable() override { m_journal.emplace_back("shortcut disable"); }
    void bindMenuItem(QAction& action) override {
        bound = &action;
        m_journal.emplace_back("shortcut bind");
    }

    std::function<void()> handler;
    QAction* bound = nullptr;

private:
    Journal& m_journal;
};

/// The capture service and the actions after it, as a coordinator sees them.
class FakeCaptures {
public:
    explicit FakeCaptures(Journal& journal) : m_journal(journal) {}

    CaptureCoordinator::CaptureRegion region() {
        return [this](GlobalRect rect) { return capture(rect); };
    }
    CaptureCoordinator::RunConfiguredAction action() {
        return [this](CaptureResult result) { return run(std::move(result)); };
    }

    std::vector<GlobalRect> rects;
    std::vector<CaptureResult> handedOver;
    std::exception_ptr failure;
    bool holdCaptures = false;
    bool holdActions = false;
    Gate captureGate;
    Gate actionGate;

private:
    QCoro::Task<CaptureResult> capture(GlobalRect rect) {
        m_journal.emplace_back("capture");
        rects.push_back(rect);
        if (holdCaptures) {
            auto capturing = captureGate.wait();
            co_await capturing;
        }
        if (failure) {
            std::rethrow_exception(failure);
        }
        CaptureResult result;
        result.pngData = "bytes";
        result.globalCaptureRect = rect;
        co_return result;
    }
    QCoro::Task<> run(CaptureResult result) {
        m_journal.emplace_back("action");
        handedOver.push_back(result);
        if (holdActions) {
            auto running = actionGate.wait();
            co_await running;
        }
        m_journal.emplace_back("action done");
    }

    Journal& m_journal;
};

} // namespace snapvane::testing
