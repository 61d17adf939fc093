#pragma once

#include "app/CaptureCoordinator.h"
#include "selection/SessionFakes.h"

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

/// The system's hot keys, with their coming and going told in the journal.
class RecordingHotKeys : public null::NullHotKeys {
public:
    explicit RecordingHotKeys(Journal& journal) : m_journal(journal) {}

    std::unique_ptr<HotKeyRegistration> registerHotKey(std::uint32_t keyCode,
                                                       std::uint32_t modifiers,
                                                       HotKeyIdentifier identifier,
                                                       std::function<void()> lost) override {
        auto registration =
            NullHotKeys::registerHotKey(keyCode, modifiers, identifier, std::move(lost));
        if (!registration) {
            m_journal.emplace_back("hot key refused");
            return nullptr;
        }
        m_journal.emplace_back("hot key registered");
        if (onRegistration) {
            onRegistration();
        }
        return std::make_unique<RecordedRegistration>(m_journal, std::move(registration));
    }

    /// Called when a hot key has been registered.
    std::function<void()> onRegistration;

private:
    class RecordedRegistration : public HotKeyRegistration {
    public:
        RecordedRegistration(Journal& journal, std::unique_ptr<HotKeyRegistration> held)
            : m_journal(journal), m_held(std::move(held)) {}
        ~RecordedRegistration() override { m_journal.emplace_back("hot key unregistered"); }

    private:
        Journal& m_journal;
        std::unique_ptr<HotKeyRegistration> m_held;
    };

    Journal& m_journal;
};

/// The desktop in memory with such hot keys.
class RecordingPlatform : public null::NullPlatform {
public:
    explicit RecordingPlatform(Journal& journal) : m_hotKeys(journal) {}

    RecordingHotKeys& hotKeys() override { return m_hotKeys; }

private:
    RecordingHotKeys m_hotKeys;
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
