#include "platform/xdg/KdeShortcuts.h"

#include <QDBusObjectPath>

namespace snapvane::xdg {

namespace {

const QString service = QStringLiteral("org.kde.kglobalaccel");
const QString servicePath = QStringLiteral("/kglobalaccel");
const QString serviceInterface = QStringLiteral("org.kde.KGlobalAccel");
const QString componentInterface = QStringLiteral("org.kde.kglobalaccel.Component");

/// Of each shortcut: what it does, for which program, in what context (each with a name to show),
/// the combinations in force, and those that it came with.
constexpr QLatin1String shortcutInfos("a(ssssssaiai)");

/// One after another the programs that have shortcuts.
QList<QDBusObjectPath> components(const BusQuestions& questions) {
    const auto answer = BusQuestions::answer(
        questions.ask(servicePath, serviceInterface, QStringLiteral("allComponents")),
        QLatin1String("ao"));
    return answer ? qdbus_cast<QList<QDBusObjectPath>>(*answer) : QList<QDBusObjectPath>();
}

/// The combinations in force; zeros among them stand for none.
QList<int> combinations(const QVariant& infos) {
    QList<int> result;
    const auto list = infos.value<QDBusArgument>();
    list.beginArray();
    while (!list.atEnd()) {
        list.beginStructure();
        for (int i = 0; i < 6; ++i) {
            QString name;
            list >> name;
        }
        QList<int> inForce;
        QList<int> initial;
        list >> inForce >> initial;
        list.endStructure();
        result.append(inForce);
    }
    list.endArray();
    return result;
}

} // namespace

std::vector<SymbolicHotKey> kdeShortcuts(const KeyOfSymbol& keyOfSymbol, QDeadlineTimer deadline) {
    const BusQuestions questions(service, deadline);
    if (!questions.isServiceRunning()) {
        return {};
    }
    // All of them are asked before the first answer is waited for: there may be dozens.
    QList<QDBusPendingCall> calls;
    for (const QDBusObjectPath& component : components(questions)) {
        calls.append(questions.ask(component.path(), componentInterface,
                                   QStringLiteral("allShortcutInfos")));
    }
    std::vector<SymbolicHotKey> shortcuts;
    for (const QDBusPendingCall& call : std::as_const(calls)) {
        const auto infos = BusQuestions::answer(call, shortcutInfos);
        for (const int combination : infos ? combinations(*infos) : QList<int>()) {
            if (const auto shortcut = fromQtKey(combination, keyOfSymbol)) {
                shortcuts.push_back(*shortcut);
            }
        }
    }
    return shortcuts;
}

} // namespace snapvane::xdg
