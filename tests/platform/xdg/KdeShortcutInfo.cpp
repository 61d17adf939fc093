#include "platform/xdg/KdeShortcutInfo.h"

#include <QDBusMetaType>

namespace snapvane::testing {

QDBusArgument& operator<<(QDBusArgument& argument, const KdeShortcutInfo& info) {
    argument.beginStructure();
    for (const QString& name : info.names) {
        argument << name;
    }
    argument << info.keys << info.defaultKeys;
    argument.endStructure();
    return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, KdeShortcutInfo& info) {
    argument.beginStructure();
    for (QString& name : info.names) {
        argument >> name;
    }
    argument >> info.keys >> info.defaultKeys;
    argument.endStructure();
    return argument;
}

void registerKdeTypes() {
    qDBusRegisterMetaType<KdeShortcutInfo>();
    qDBusRegisterMetaType<KdeShortcutInfos>();
}

} // namespace snapvane::testing
