#pragma once

#include "KeyboardShortcuts/Name.h"

#include <QUuid>

#include <functional>
#include <unordered_map>
#include <utility>
#include <vector>

namespace KeyboardShortcuts {

using Action = std::function<void()>;
/// In the order in which they were added; each known by an identifier to whoever added it.
using StreamHandlers = std::vector<std::pair<QUuid, Action>>;

/// What runs for one type of event: the actions of each name, and what feeds the streams of names
/// and of shortcuts. Owned by NamedShortcuts.
struct HandlerTable {
    std::unordered_map<Name, std::vector<Action>> actions;
    std::unordered_map<Name, StreamHandlers> streamsByName;
    std::unordered_map<Shortcut, StreamHandlers> streamsByShortcut;

    auto& streamsOf(const Name&) { return streamsByName; }
    auto& streamsOf(const Shortcut&) { return streamsByShortcut; }

    bool hasHandlers(const Name& name) const;
    std::vector<Name> namesWithActions() const;
    std::vector<Name> namesWithStreams() const;

    /// Each runs the handlers that are there now, whatever they add or remove on the way.
    void runActions(const Name& name) const;
    void runStreams(const Name& name) const;
    void runStreams(const Shortcut& shortcut) const;

    void removeStream(const Name& name, const QUuid& identifier);
    void removeStream(const Shortcut& shortcut, const QUuid& identifier);
};

} // namespace KeyboardShortcuts
