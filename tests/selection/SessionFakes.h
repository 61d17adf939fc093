#pragma once

#include "platform/null/NullPlatform.h"
#include "selection/GuideLines.h"
#include "selection/Magnifier.h"
#include "selection/SnapshotSource.h"

#include <QCoreApplication>
#include <QCoroFuture>
#include <QCoroTask>
#include <QFuture>
#include <QPromise>

#include <memory>
#include <string>
#include <vector>

namespace snapvane::testing {

/// What happened, in the order in which it did.
using Journal = std::vector<std::string>;

/// Lets everything run that is ready to, without waiting.
inline void settle() {
    for (int round = 0; round < 20; ++round) {
        QCoreApplication::processEvents();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

/// Something that is waited for, and that happens when the test says so.
class Gate {
public:
    QFuture<bool> wait() {
        m_waits.push_back(std::make_unique<QPromise<bool>>());
        m_waits.back()->start();
        return m_waits.back()->future();
    }
    /// Ends one wait, counted from the first one; `success` is what the waiting one is told.
    void open(std::size_t index = 0, bool success = true) {
        QPromise<bool>& promise = *m_waits.at(index);
        if (!promise.future().isFinished()) {
            promise.addResult(success);
            promise.finish();
        }
        settle();
    }
    void openAll() {
        for (std::size_t i = 0; i < m_waits.size(); ++i) {
            open(i);
        }
    }
    std::size_t waits() const { return m_waits.size(); }

private:
    std::vector<std::unique_ptr<QPromise<bool>>> m_waits;
};

class RecordingGuideLines : public GuideLines {
public:
    explicit RecordingGuideLines(Journal& journal) : m_journal(journal) {}

    void rebuildOverlays() override { note("rebuild"); }
    void hideOverlays() override { note("hide"); }
    void updateCursor(GlobalPoint point) override {
        cursor = point;
        note("cursor");
    }
    void screenParametersChanged() override { note("screens changed"); }

    GlobalPoint cursor;

private:
    void note(const std::string& what) {
        m_journal.push_back("lines " + what + (captureSessionActive() ? " (active)" : ""));
    }

    Journal& m_journal;
};

class RecordingMagnifier : public Magnifier {
public:
    explicit RecordingMagnifier(Journal& journal) : m_journal(journal) {}

    void prepare(const DisplaySnapshotList& snapshots) override {
        m_journal.push_back("loupe prepare " + std::to_string(snapshots.size()));
    }
    void update(GlobalPoint globalPoint, GlobalSize selectionSize) override {
        point = globalPoint;
        size = selectionSize;
        m_journal.emplace_back("loupe update");
    }
    void dismiss() override { m_journal.emplace_back("loupe dismiss"); }

    GlobalPoint point;
    GlobalSize size;

private:
    Journal& m_journal;
};

/// An overlay host that tells when sessions come and go, and can be made to find open menus.
class RecordingOverlayHost : public null::NullOverlayHost {
public:
    explicit RecordingOverlayHost(Journal& journal) : m_journal(journal) {
        onOrderFront = [&journal] { journal.emplace_back("overlay front"); };
        onClose = [&journal](bool concealed) {
            journal.emplace_back(concealed ? "overlay close concealed" : "overlay close bare");
        };
    }

    std::unique_ptr<OverlaySession> open(const OverlayOptions& options,
                                         OverlayClient& client) override {
        m_journal.emplace_back("overlay open");
        return NullOverlayHost::open(options, client);
    }
    QCoro::Task<> menusClosed() override {
        ++menuWaits;
        m_journal.emplace_back("menus");
        if (holdMenus) {
            auto closing = menus.wait();
            co_await closing;
        }
    }

    bool holdMenus = false;
    Gate menus;

private:
    Journal& m_journal;
};

/// Snapshots that are there when the test says so; opening the gate without success makes them
/// fail.
class HeldSnapshots : public SnapshotSource {
public:
    explicit HeldSnapshots(Journal& journal) : m_journal(journal) {}

    QCoro::Task<DisplaySnapshotList> captureAllDisplays() override {
        m_journal.emplace_back("snapshots");
        if (hold) {
            auto taking = gate.wait();
            const bool success = co_await taking;
            if (!success) {
                throw std::runtime_error("no snapshots today");
            }
        }
        // A member that is returned as it stands is moved from.
        DisplaySnapshotList answer = list;
        co_return answer;
    }

    bool hold = false;
    Gate gate;
    DisplaySnapshotList list = {
        {{{0, 0}, {8, 8}}, 1, QImage(8, 8, QImage::Format_RGB32)},
    };

private:
    Journal& m_journal;
};

/// Two screens of 400 × 300 points side by side, the primary one on the left.
inline ScreenList twoScreens() {
    return ScreenMapping::layOut({{1, QStringLiteral("Left"), {{0, 0}, {400, 300}}, 1, {}},
                                  {2, QStringLiteral("Right"), {{400, 0}, {400, 300}}, 1, {}}});
}

/// The event of a pointer at a device position.
inline OverlayPointerEvent pointerEvent(OverlayPointerEvent::Kind kind, const ScreenList& screens,
                                        DevicePoint position) {
    return {kind, ScreenMapping::pointerPlace(screens, position)};
}

/// Drags from one device position to another on the host's open session.
inline void drag(null::NullOverlayHost& host, const ScreenList& screens, DevicePoint from,
                 DevicePoint to) {
    using Kind = OverlayPointerEvent::Kind;
    OverlayClient& client = host.session->client;
    client.overlayPointerEvent(pointerEvent(Kind::Down, screens, from));
    client.overlayPointerEvent(pointerEvent(Kind::Dragged, screens, to));
    client.overlayPointerEvent(pointerEvent(Kind::Up, screens, to));
}

} // namespace snapvane::testing
