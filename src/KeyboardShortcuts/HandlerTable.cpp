#include "KeyboardShortcuts/HandlerTable.h"

#include <algorithm>

namespace KeyboardShortcuts {

namespace {

template <typename Owner>
void runAll(const std::unordered_map<Owner, StreamHandlers>& streams, const Owner& owner) {
    const auto found = streams.find(owner);
    const StreamHandlers now = found == streams.end() ? StreamHandlers() : found->second;
    for (const auto& handler : now) {
        handler.second();
    }
}

template <typename Map> std::vector<Name> keysOf(const Map& map) {
    std::vector<Name> names;
    names.reserve(map.size());
    for (const auto& entry : map) {
        names.push_back(entry.first);
    }
    return names;
}

template <typename Owner>
void removeFrom(std::unordered_map<Owner, StreamHandlers>& streams, const Owner& owner,
                const QUuid& identifier) {
    const auto found = streams.find(owner);
    if (found == streams.end()) {
        return;
    }
    std::erase_if(found->second,
                  [&identifier](const auto& handler) { return handler.first == identifier; });
    if (found->second.empty()) {
        streams.erase(found);
    }
}

} // namespace

bool HandlerTable::hasHandlers(const Name& name) const {
    const auto found = actions.find(name);
    return (found != actions.end() && !found->second.empty()) || streamsByName.contains(name);
}

std::vector<Name> HandlerTable::namesWithActions() const {
    return keysOf(actions);
}

std::vector<Name> HandlerTable::namesWithStreams() const {
    return keysOf(streamsByName);
}

void HandlerTable::runActions(const Name& name) const {
    const auto found = actions.find(name);
    const auto now = found == actions.end() ? std::vector<Action>() : found->second;
    for (const Action& action : now) {
        action();
    }
}

void HandlerTable::runStreams(const Name& name) const {
    runAll(streamsByName, name);
}

void HandlerTable::runStreams(const Shortcut& shortcut) const {
    runAll(streamsByShortcut, shortcut);
}

void HandlerTable::removeStream(const Name& name, const QUuid& identifier) {
    removeFrom(streamsByName, name, identifier);
}

void HandlerTable::removeStream(const Shortcut& shortcut, const QUuid& identifier) {
    removeFrom(streamsByShortcut, shortcut, identifier);
}

} // namespace KeyboardShortcuts
