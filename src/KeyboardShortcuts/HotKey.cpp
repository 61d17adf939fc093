#include "KeyboardShortcuts/HotKey.h"

#include "KeyboardShortcuts/HotKeyCenter.h"
#include "KeyboardShortcuts/MainThread.h"

#include <QCoreApplication>

namespace KeyboardShortcuts {

HotKey::HotKey(HotKeyCenter& center, std::int64_t carbonKeyCode, std::int64_t carbonModifiers,
               std::int64_t id, Callback onKeyDown, Callback onKeyUp)
    : m_center(&center), m_carbonKeyCode(carbonKeyCode), m_carbonModifiers(carbonModifiers),
      m_id(id), m_onKeyDown(std::move(onKeyDown)), m_onKeyUp(std::move(onKeyUp)) {}

HotKey::~HotKey() {
    const auto forget = [center = m_center, id = m_id] {
        if (center) {
            center->forget(id);
        }
    };
    if (isMainThread()) {
        m_eventHotKeyRef.reset();
        forget();
        return;
    }
    // The system's registration, and whatever the callbacks hold, belong to the main thread.
    struct Remains {
        std::unique_ptr<snapvane::HotKeyRegistration> registration;
        Callback callbacks[3];
    };
    auto remains = std::make_shared<Remains>();
    remains->registration = std::move(m_eventHotKeyRef);
    remains->callbacks[0] = std::move(m_onKeyDown);
    remains->callbacks[1] = std::move(m_onKeyUp);
    remains->callbacks[2] = std::move(onRegistrationFailed);
    QMetaObject::invokeMethod(
        QCoreApplication::instance(),
        [forget, remains = std::move(remains)]() mutable {
            remains.reset();
            forget();
        },
        Qt::QueuedConnection);
}

} // namespace KeyboardShortcuts
