#include "platform/xdg/TrayHostWatcher.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>

namespace snapvane::xdg {

namespace {

const QString watcherService = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");

} // namespace

TrayHostWatcher::TrayHostWatcher() {
    QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        m_settled = true;
        return;
    }
    m_services.setConnection(bus);
    m_services.addWatchedService(watcherService);
    connect(&m_services, &QDBusServiceWatcher::serviceRegistered, this, &TrayHostWatcher::refresh);
    connect(&m_services, &QDBusServiceWatcher::serviceUnregistered, this,
            [this] { setPresent(false); });
    bus.connect(watcherService, watcherPath, watcherService,
                QStringLiteral("StatusNotifierHostRegistered"), this, SLOT(refresh()));
    refresh();
}

void TrayHostWatcher::refresh() {
    QDBusMessage question = QDBusMessage::createMethodCall(
        watcherService, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"),
        QStringLiteral("Get"));
    question << watcherService << QStringLiteral("IsStatusNotifierHostRegistered");
    // A desktop without trays must not have one started for it.
    question.setAutoStartService(false);
    auto* call =
        new QDBusPendingCallWatcher(QDBusConnection::sessionBus().asyncCall(question), this);
    connect(call, &QDBusPendingCallWatcher::finished, this, [this, call] {
        call->deleteLater();
        const QDBusPendingReply<QDBusVariant> reply = *call;
        setPresent(!reply.isError() && reply.value().variant().toBool());
        settle();
    });
}

void TrayHostWatcher::settle() {
    if (!std::exchange(m_settled, true)) {
        settled();
    }
}

void TrayHostWatcher::setPresent(bool present) {
    if (present == m_present) {
        return;
    }
    m_present = present;
    if (present) {
        Q_EMIT appeared();
    } else {
        Q_EMIT disappeared();
    }
}

} // namespace snapvane::xdg
