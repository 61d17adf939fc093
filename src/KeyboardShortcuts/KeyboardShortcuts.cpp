#include "KeyboardShortcuts/KeyboardShortcuts.h"

#include "KeyboardShortcuts/EventStream.h"
#include "KeyboardShortcuts/HotKey.h"
#include "KeyboardShortcuts/HotKeyCenter.h"
#include "KeyboardShortcuts/MainThread.h"
#include "KeyboardShortcuts/RepeatingTaskController.h"
#include "base/Log.h"
#include "base/ProgramError.h"
#include "base/UserDefaults.h"

#include <QPointer>

#include <algorithm>

namespace KeyboardShortcuts {

namespace {

NamedShortcuts* installed = nullptr;

const snapvane::Log& shortcutsLog() {
    static const snapvane::Log log("KeyboardShortcuts");
    return log;
}

} // namespace

NamedShortcuts::NamedShortcuts(snapvane::UserDefaults& defaults, HotKeyCenter& center)
    : m_defaults(defaults), m_center(center) {
    requireMainThread();
}

NamedShortcuts::~NamedShortcuts() = default;

NamedShortcuts& NamedShortcuts::shared() {
    if (installed == nullptr) {
        snapvane::programError("the program's shortcuts are not installed");
    }
    return *installed;
}

void NamedShortcuts::install(NamedShortcuts* shortcuts) {
    requireMainThread();
    installed = shortcuts;
}

QString NamedShortcuts::userDefaultsKey(const Name& name) {
    return QStringLiteral("KeyboardShortcuts_") + name.rawValue();
}

std::optional<Shortcut> NamedShortcuts::getShortcut(const Name& name) const {
    requireMainThread();
    // The stored false, and numbers, read back as texts that are no JSON object.
    const auto stored = m_defaults.string(userDefaultsKey(name));
    return stored ? Shortcut::decoded(stored->toUtf8()) : std::nullopt;
}

void NamedShortcuts::setShortcut(const std::optional<Shortcut>& shortcut, const Name& name) {
    requireMainThread();
    m_knownNames.insert(name);
    const auto before = getShortcut(name);
    if (before && !isShortcutActive(*before, &name)) {
        unregister(*before);
    }
    const QString key = userDefaultsKey(name);
    if (shortcut) {
        m_defaults.set(key, QString::fromUtf8(shortcut->encoded()));
    } else {
        m_defaults.set(key, false);
    }
    registerIfNeeded(name);
    Q_EMIT shortcutByNameDidChange(name);
}

void NamedShortcuts::setInitialShortcutIfNeeded(const Name& name) {
    requireMainThread();
    m_knownNames.erase(name); // It may be known without its default.
    m_knownNames.insert(name);
    const QString key = userDefaultsKey(name);
    const std::optional<Shortcut>& initial = name.initialShortcut();
    if (initial && !m_defaults.contains(key)) {
        m_defaults.set(key, QString::fromUtf8(initial->encoded()));
    }
}

void NamedShortcuts::reset(const std::vector<Name>& names) {
    requireMainThread();
    for (const Name& name : names) {
        setShortcut(name.initialShortcut(), name);
    }
}

void NamedShortcuts::resetAll() {
    reset(std::vector<Name>(m_knownNames.begin(), m_knownNames.end()));
}

void NamedShortcuts::onKeyDown(const Name& name, Action action) {
    addAction(m_keyDownHandlers, name, std::move(action));
}

void NamedShortcuts::onKeyUp(const Name& name, Action action) {
    addAction(m_keyUpHandlers, name, std::move(action));
}

void NamedShortcuts::removeHandler(const Name& name) {
    requireMainThread();
    m_keyDownHandlers.actions.erase(name);
    m_keyUpHandlers.actions.erase(name);
    unregisterIfUnneeded(getShortcut(name));
}

void NamedShortcuts::removeAllHandlers() {
    requireMainThread();
    m_keyDownHandlers.actions.clear();
    m_keyUpHandlers.actions.clear();
    std::vector<Shortcut> registered;
    registered.reserve(m_hotKeys.size());
    for (const auto& entry : m_hotKeys) {
        registered.push_back(entry.first);
    }
    for (const Shortcut& shortcut : registered) {
        unregisterIfUnneeded(shortcut);
    }
}

EventStream NamedShortcuts::events(const Name& name) {
    requireMainThread();
    m_knownNames.insert(name);
    EventStream stream;
    attach(stream, name, forwardingTo(stream));
    return stream;
}

EventStream NamedShortcuts::events(const Shortcut& shortcut) {
    requireMainThread();
    EventStream stream;
    attach(stream, shortcut, forwardingTo(stream));
    return stream;
}

EventStream NamedShortcuts::repeatingKeyDownEvents(const Name& name) {
    requireMainThread();
    m_knownNames.insert(name);
    EventStream stream;
    const auto hold = std::make_shared<Hold>();
    const auto repeats = std::make_shared<RepeatingTaskController>(
        [self = QPointer(this), name, hold, sink = stream.sink()] {
            const bool goesOn = self && self->isHeld(name, *hold);
            if (goesOn) {
                sink.push(EventType::keyDown);
            }
            return goesOn;
        });
    const auto begin = [this, name, hold, repeats, sink = stream.sink()] {
        *hold = holdOf(name);
        repeats->start();
        sink.push(EventType::keyDown);
    };
    const auto stop = [repeats] { repeats->stop(); };
    attach(stream, name, {.keyDown = begin, .keyUp = stop, .end = stop});
    return stream;
}

void NamedShortcuts::disable(const std::vector<Name>& names) {
    requireMainThread();
    for (const Name& name : names) {
        m_disabledNames.insert(name);
        unregisterIfUnneeded(shortcutOf(name));
    }
}

void NamedShortcuts::enable(const std::vector<Name>& names) {
    requireMainThread();
    for (const Name& name : names) {
        m_disabledNames.erase(name);
        registerIfNeeded(name);
    }
}

bool NamedShortcuts::isEnabled(const Name& name) const {
    requireMainThread();
    return !m_disabledNames.contains(name);
}

void NamedShortcuts::setEnabled(bool enabled) {
    requireMainThread();
    m_isEnabled = enabled;
    updateCenter();
}

void NamedShortcuts::setPaused(bool paused) {
    requireMainThread();
    m_isPaused = paused;
    updateCenter();
}

void NamedShortcuts::updateCenter() {
    m_center.setEnabled(m_isEnabled && !m_isPaused);
}

NamedShortcuts::StreamActions NamedShortcuts::forwardingTo(EventStream& stream) {
    return {.keyDown = [sink = stream.sink()] { sink.push(EventType::keyDown); },
            .keyUp = [sink = stream.sink()] { sink.push(EventType::keyUp); },
            .end = [] {}};
}

template <typename Owner>
void NamedShortcuts::attach(EventStream& stream, const Owner& owner, StreamActions actions) {
    const QUuid identifier = QUuid::createUuid();
    m_keyDownHandlers.streamsOf(owner)[owner].emplace_back(identifier, std::move(actions.keyDown));
    m_keyUpHandlers.streamsOf(owner)[owner].emplace_back(identifier, std::move(actions.keyUp));
    stream.onEnd([self = QPointer(this), owner, identifier, end = std::move(actions.end)] {
        end();
        if (self) {
            self->m_keyDownHandlers.removeStream(owner, identifier);
            self->m_keyUpHandlers.removeStream(owner, identifier);
            self->unregisterIfUnneeded(self->shortcutOf(owner));
        }
    });
    registerIfNeeded(owner);
}

void NamedShortcuts::addAction(HandlerTable& table, const Name& name, Action action) {
    requireMainThread();
    m_knownNames.insert(name);
    table.actions[name].push_back(std::move(action));
    registerIfNeeded(name);
}

void NamedShortcuts::handleKeyEvent(EventType type, const Shortcut& shortcut) {
    if (m_isPaused) {
        return;
    }
    const HandlerTable& table = type == EventType::keyDown ? m_keyDownHandlers : m_keyUpHandlers;
    // Asked for each name anew: a handler may change shortcuts and disable names.
    const auto isOwner = [this, &shortcut](const Name& name) {
        return !m_disabledNames.contains(name) && getShortcut(name) == shortcut;
    };
    for (const Name& name : table.namesWithActions()) {
        if (isOwner(name)) {
            table.runActions(name);
        }
    }
    for (const Name& name : table.namesWithStreams()) {
        if (isOwner(name)) {
            table.runStreams(name);
        }
    }
    table.runStreams(shortcut);
}

void NamedShortcuts::registerIfNeeded(const Name& name) {
    const auto shortcut = getShortcut(name);
    if (!m_disabledNames.contains(name) && hasHandlers(name) && shortcut) {
        registerIfNeeded(*shortcut);
    }
}

void NamedShortcuts::registerIfNeeded(const Shortcut& shortcut) {
    if (m_hotKeys.contains(shortcut)) {
        return;
    }
    if (!HotKeyCenter::canRegister(shortcut)) {
        reportRefusal(shortcut);
        return;
    }
    const auto callback = [self = QPointer(this), shortcut](EventType type) {
        return [self, shortcut, type] {
            if (self) {
                self->handleKeyEvent(type, shortcut);
            }
        };
    };
    const auto hotKey = std::make_shared<HotKey>(
        m_center, shortcut.carbonKeyCode(), shortcut.carbonModifiers(), m_center.nextHotKeyId(),
        callback(EventType::keyDown), callback(EventType::keyUp));
    if (!m_center.register_(hotKey)) {
        reportRefusal(shortcut);
        return;
    }
    m_refused.erase(shortcut);
    m_hotKeys.emplace(shortcut, hotKey);
    hotKey->onRegistrationFailed = [self = QPointer(this), shortcut,
                                    weak = std::weak_ptr<HotKey>(hotKey)] {
        const auto failed = weak.lock();
        const auto entry = self ? self->m_hotKeys.find(shortcut) : decltype(m_hotKeys)::iterator();
        if (self && entry != self->m_hotKeys.end() && entry->second == failed) {
            self->reportRefusal(shortcut);
            self->m_hotKeys.erase(entry);
        }
    };
}

void NamedShortcuts::reportRefusal(const Shortcut& shortcut) {
    // Once, not each time that the shortcut is enabled again and refused again.
    if (m_refused.insert(shortcut).second) {
        shortcutsLog().error(
            QStringLiteral("The system refused the shortcut %1: another program holds it, or this "
                           "keyboard cannot type it.")
                .arg(QString::fromUtf8(shortcut.encoded())));
    }
}

void NamedShortcuts::unregister(const Shortcut& shortcut) {
    m_hotKeys.erase(shortcut);
}

void NamedShortcuts::unregisterIfUnneeded(const std::optional<Shortcut>& shortcut) {
    if (shortcut && !isShortcutActive(*shortcut)) {
        unregister(*shortcut);
    }
}

bool NamedShortcuts::isShortcutActive(const Shortcut& shortcut, const Name* excluded) const {
    const auto uses = [this, &shortcut, excluded](const Name& name) {
        return (excluded == nullptr || !(name == *excluded)) && !m_disabledNames.contains(name) &&
               getShortcut(name) == shortcut;
    };
    const auto isUsedBy = [&shortcut, &uses](const HandlerTable& table) {
        return table.streamsByShortcut.contains(shortcut) ||
               std::ranges::any_of(table.namesWithActions(), uses) ||
               std::ranges::any_of(table.namesWithStreams(), uses);
    };
    return isUsedBy(m_keyDownHandlers) || isUsedBy(m_keyUpHandlers);
}

bool NamedShortcuts::hasHandlers(const Name& name) const {
    return m_keyDownHandlers.hasHandlers(name) || m_keyUpHandlers.hasHandlers(name);
}

NamedShortcuts::Hold NamedShortcuts::holdOf(const Name& name) const {
    const auto shortcut = getShortcut(name);
    const auto found = shortcut ? m_hotKeys.find(*shortcut) : m_hotKeys.end();
    if (found == m_hotKeys.end()) {
        return {};
    }
    return {found->second, found->second->registrations()};
}

bool NamedShortcuts::isHeld(const Name& name, const Hold& hold) const {
    const auto hotKey = hold.hotKey.lock();
    return hotKey && hotKey->isRegistered() && hotKey->registrations() == hold.registrations &&
           holdOf(name).hotKey.lock() == hotKey && !m_disabledNames.contains(name);
}

std::optional<Shortcut> NamedShortcuts::shortcutOf(const Name& name) const {
    return getShortcut(name);
}

std::optional<Shortcut> NamedShortcuts::shortcutOf(const Shortcut& shortcut) {
    return shortcut;
}

} // namespace KeyboardShortcuts
