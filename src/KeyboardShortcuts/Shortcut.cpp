#include "KeyboardShortcuts/Shortcut.h"

#include "KeyboardShortcuts/MainThread.h"
#include "KeyboardShortcuts/Text.h"
#include "base/ProgramError.h"
#include "platform/KeyboardLayout.h"

#include <QHashFunctions>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextBoundaryFinder>

#include <algorithm>
#include <limits>

namespace KeyboardShortcuts {

namespace {

constexpr QLatin1StringView keyCodeMember("carbonKeyCode");
constexpr QLatin1StringView modifiersMember("carbonModifiers");

constexpr QChar unknownKey = QChar::ReplacementCharacter;

bool isOneCharacter(const QString& text) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    return !text.isEmpty() && finder.toNextBoundary() == text.size();
}

bool hasUpperCase(const QString& text) {
    return std::ranges::any_of(text, [](QChar character) { return character.isUpper(); });
}

std::optional<std::int64_t> wholeNumber(const QJsonObject& object, QLatin1StringView member) {
    const QJsonValue value = object.value(member);
    // A number that is not whole, or too large, is told by the default that it gives way to.
    const std::int64_t number = value.toInteger(0);
    if (!value.isDouble() || number != value.toInteger(1)) {
        return std::nullopt;
    }
    return number;
}

bool fitsSixteenBits(std::int64_t keyCode) {
    return keyCode >= 0 && keyCode <= std::numeric_limits<std::uint16_t>::max();
}

} // namespace

Shortcut::Shortcut(Key key, ModifierFlags modifiers)
    : m_carbonKeyCode(key.rawValue()),
      m_carbonModifiers(normalizedCarbonModifiers(modifiers.carbon())) {}

Shortcut Shortcut::fromCarbon(std::int64_t keyCode, std::int64_t modifiers) {
    Shortcut shortcut;
    shortcut.m_carbonKeyCode = keyCode;
    shortcut.m_carbonModifiers = normalizedCarbonModifiers(modifiers);
    return shortcut;
}

std::optional<Shortcut> Shortcut::fromEvent(const KeyEvent& event) {
    if (event.type != KeyEvent::Type::KeyDown && event.type != KeyEvent::Type::KeyUp) {
        return std::nullopt;
    }
    return Shortcut(Key(event.keyCode), event.modifierFlags.without(ModifierFlags::function));
}

std::optional<SpecialKey> Shortcut::specialKey() const {
    requireMainThread();
    const auto& mapping = keyToSpecialKeyMapping();
    const auto found = mapping.find(m_carbonKeyCode);
    return found == mapping.end() ? std::nullopt : std::optional(found->second);
}

QString Shortcut::presentableDescription(const snapvane::KeyboardLayout& layout) const {
    const QString signs = modifiers().ks_symbolicRepresentation();
    if (const auto special = specialKey()) {
        return signs + KeyboardShortcuts::presentableDescription(*special);
    }
    return signs + capitalized(characterIfAny(layout).value_or(QString(unknownKey)));
}

std::optional<QString> Shortcut::keyToCharacter(const snapvane::KeyboardLayout& layout) const {
    requireMainThread();
    if (!fitsSixteenBits(m_carbonKeyCode)) {
        snapvane::programError("a key code that does not fit 16 bits");
    }
    if (specialKey()) {
        return std::nullopt;
    }
    const auto text = layout.translate(static_cast<std::uint16_t>(m_carbonKeyCode));
    return text && isOneCharacter(*text) ? text : std::nullopt;
}

std::optional<QString>
Shortcut::nsMenuItemKeyEquivalent(const snapvane::KeyboardLayout& layout) const {
    const auto special = specialKey();
    return special ? appKitMenuItemKeyEquivalent(*special) : characterIfAny(layout);
}

std::optional<QString>
Shortcut::swiftUIKeyEquivalent(const snapvane::KeyboardLayout& layout) const {
    const auto special = specialKey();
    return special ? KeyboardShortcuts::swiftUIKeyEquivalent(*special) : characterIfAny(layout);
}

/// For shortcuts that come from outside, where any number may stand for the key.
std::optional<QString> Shortcut::characterIfAny(const snapvane::KeyboardLayout& layout) const {
    return fitsSixteenBits(m_carbonKeyCode) ? keyToCharacter(layout) : std::nullopt;
}

const MenuItem*
Shortcut::menuItemWithMatchingShortcut(const Menu& menu,
                                       const snapvane::KeyboardLayout& layout) const {
    requireMainThread();
    for (const MenuItem& item : menu) {
        if (matches(item, layout)) {
            return &item;
        }
        if (const MenuItem* found = menuItemWithMatchingShortcut(item.submenu, layout)) {
            return found;
        }
    }
    return nullptr;
}

bool Shortcut::matches(const MenuItem& item, const snapvane::KeyboardLayout& layout) const {
    QString text = item.keyEquivalent;
    ModifierFlags mask = item.keyEquivalentModifierMask;
    if (modifiers().contains(ModifierFlags::shift) && hasUpperCase(text)) {
        text = text.toLower();
        mask = mask | ModifierFlags::shift;
    }
    const auto ownText = nsMenuItemKeyEquivalent(layout);
    return ownText && *ownText == text && modifiers() == mask;
}

std::vector<Shortcut> Shortcut::system(std::span<const SystemHotKey> hotKeys) {
    std::vector<Shortcut> shortcuts;
    shortcuts.reserve(hotKeys.size());
    for (const SystemHotKey& hotKey : hotKeys) {
        ModifierFlags modifiers = ModifierFlags::fromCarbon(hotKey.modifiers);
        if (Key(hotKey.keyCode).hasSynthesizedFunctionModifier()) {
            modifiers = modifiers.without(ModifierFlags::function);
        }
        shortcuts.emplace_back(Key(hotKey.keyCode), modifiers);
    }
    return shortcuts;
}

bool Shortcut::isTakenBySystem(std::span<const Shortcut> system) const {
    return !isF12WithoutModifiers() && std::ranges::find(system, *this) != system.end();
}

bool Shortcut::isF12WithoutModifiers() const {
    return *this == Shortcut(Key::f12, ModifierFlags::none);
}

QByteArray Shortcut::encoded() const {
    // The members come out in alphabetical order, which is the stated one.
    const QJsonObject object = {{keyCodeMember, static_cast<qint64>(m_carbonKeyCode)},
                                {modifiersMember, static_cast<qint64>(m_carbonModifiers)}};
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

std::optional<Shortcut> Shortcut::decoded(const QByteArray& json) {
    const QJsonObject object = QJsonDocument::fromJson(json).object();
    const auto keyCode = wholeNumber(object, keyCodeMember);
    const auto modifiers = wholeNumber(object, modifiersMember);
    if (!keyCode || !modifiers) {
        return std::nullopt;
    }
    Shortcut shortcut;
    shortcut.m_carbonKeyCode = *keyCode;
    shortcut.m_carbonModifiers = *modifiers;
    return shortcut;
}

} // namespace KeyboardShortcuts

std::size_t std::hash<KeyboardShortcuts::Shortcut>::operator()(
    const KeyboardShortcuts::Shortcut& shortcut) const noexcept {
    return qHashMulti(0, static_cast<qint64>(shortcut.carbonKeyCode()),
                      static_cast<qint64>(shortcut.carbonModifiers()));
}
