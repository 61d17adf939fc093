#include "KeyboardShortcuts/KeySequence.h"

#include <QList>

namespace KeyboardShortcuts {

namespace {

std::optional<Qt::Key> keyOf(const Shortcut& shortcut, const snapvane::KeyboardLayout& layout) {
    if (const auto special = shortcut.specialKey()) {
        return qtKey(*special);
    }
    const auto character = shortcut.nsMenuItemKeyEquivalent(layout);
    if (!character) {
        return std::nullopt;
    }
    const auto codePoints = character->toUcs4();
    if (codePoints.size() != 1) {
        return std::nullopt;
    }
    // Qt's names for keys that type something are the characters, letters in upper case.
    return static_cast<Qt::Key>(QChar::toUpper(char32_t{codePoints.constFirst()}));
}

Qt::KeyboardModifiers qtModifiers(ModifierFlags modifiers) {
    Qt::KeyboardModifiers result;
    result.setFlag(Qt::ControlModifier, modifiers.contains(ModifierFlags::control));
    result.setFlag(Qt::AltModifier, modifiers.contains(ModifierFlags::option));
    result.setFlag(Qt::ShiftModifier, modifiers.contains(ModifierFlags::shift));
    result.setFlag(Qt::MetaModifier, modifiers.contains(ModifierFlags::command));
    return result;
}

} // namespace

QKeySequence keySequence(const Shortcut& shortcut, const snapvane::KeyboardLayout& layout) {
    const auto key = keyOf(shortcut, layout);
    if (!key || shortcut.modifiers().contains(ModifierFlags::function)) {
        return {};
    }
    return QKeySequence(QKeyCombination(qtModifiers(shortcut.modifiers()), *key));
}

} // namespace KeyboardShortcuts
