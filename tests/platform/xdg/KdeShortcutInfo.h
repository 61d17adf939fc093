#pragma once

#include <QDBusArgument>
#include <QList>
#include <QMetaType>
#include <QStringList>

namespace snapvane::testing {

/// A shortcut as KDE's service describes it on the bus: (ssssssaiai).
struct KdeShortcutInfo {
    QStringList names = QStringList(6, QStringLiteral("name"));
    QList<int> keys;
    QList<int> defaultKeys;
};

using KdeShortcutInfos = QList<KdeShortcutInfo>;

QDBusArgument& operator<<(QDBusArgument& argument, const KdeShortcutInfo& info);
const QDBusArgument& operator>>(const QDBusArgument& argument, KdeShortcutInfo& info);

/// Makes the bus library know the types above.
void registerKdeTypes();

} // namespace snapvane::testing
