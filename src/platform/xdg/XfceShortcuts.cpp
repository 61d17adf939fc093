#include "platform/xdg/XfceShortcuts.h"

#include <QVariantMap>

namespace snapvane::xdg {

namespace {

const QString service = QStringLiteral("org.xfce.Xfconf");
const QString servicePath = QStringLiteral("/org/xfce/Xfconf");
const QString channel = QStringLiteral("xfce4-keyboard-shortcuts");

/// The properties in a folder of the channel that stand for something to do. Their names are the
/// accelerators. A property further down says more about the shortcut that it belongs to; its name
/// is no accelerator, since no key's name has a slash.
QStringList acceleratorsBelow(const QString& folder, const QVariantMap& properties) {
    QStringList accelerators;
    for (auto property = properties.lowerBound(folder);
         property != properties.end() && property.key().startsWith(folder); ++property) {
        const QVariant& action = property.value();
        if (action.typeId() == QMetaType::QString && !action.toString().isEmpty()) {
            accelerators.append(property.key().mid(folder.size()));
        }
    }
    return accelerators;
}

/// The accelerators of a section: the user's own and, unless those are to stand alone, the ones
/// that it came with.
QStringList acceleratorsOf(const QString& section, const QVariantMap& properties) {
    const QString custom = section + QStringLiteral("/custom/");
    QStringList accelerators = acceleratorsBelow(custom, properties);
    const QVariant override = properties.value(custom + QStringLiteral("override"));
    if (override.typeId() != QMetaType::Bool || !override.toBool()) {
        accelerators.append(acceleratorsBelow(section + QStringLiteral("/default/"), properties));
    }
    return accelerators;
}

QVariantMap channelProperties(const BusQuestions& questions) {
    const auto answer =
        BusQuestions::answer(questions.ask(servicePath, service, QStringLiteral("GetAllProperties"),
                                           {channel, QStringLiteral("/")}),
                             QLatin1String("a{sv}"));
    return answer ? qdbus_cast<QVariantMap>(*answer) : QVariantMap();
}

} // namespace

std::vector<SymbolicHotKey> xfceShortcuts(const KeyOfSymbol& keyOfSymbol, QDeadlineTimer deadline) {
    const BusQuestions questions(service, deadline);
    if (!questions.isServiceRunning()) {
        return {};
    }
    const QVariantMap properties = channelProperties(questions);
    const QStringList accelerators = acceleratorsOf(QStringLiteral("/commands"), properties) +
                                     acceleratorsOf(QStringLiteral("/xfwm4"), properties);
    std::vector<SymbolicHotKey> shortcuts;
    for (const QString& accelerator : accelerators) {
        if (const auto shortcut = parseAccelerator(accelerator, keyOfSymbol)) {
            shortcuts.push_back(*shortcut);
        }
    }
    return shortcuts;
}

} // namespace snapvane::xdg
