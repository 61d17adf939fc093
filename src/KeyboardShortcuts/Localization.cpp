#include "KeyboardShortcuts/Localization.h"

#include "base/ProgramError.h"

#include <QCoreApplication>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

// Outside of any namespace, as the resource compiler's own functions are.
static void loadTexts() {
    Q_INIT_RESOURCE(KeyboardShortcuts);
}

namespace KeyboardShortcuts {

namespace {

QJsonObject readTable() {
    // A library's resources are left out by the linker unless something names them.
    loadTexts();
    QFile file(QStringLiteral(":/KeyboardShortcuts/en.json"));
    if (!file.open(QIODevice::ReadOnly)) {
        snapvane::programError("the texts of KeyboardShortcuts are missing");
    }
    return QJsonDocument::fromJson(file.readAll()).object();
}

} // namespace

QString localized(const QString& key) {
    static const QJsonObject table = readTable();
    const auto entry = table.constFind(key);
    if (entry == table.constEnd()) {
        return key;
    }
    return QCoreApplication::translate("KeyboardShortcuts", entry->toString().toUtf8().constData());
}

} // namespace KeyboardShortcuts
