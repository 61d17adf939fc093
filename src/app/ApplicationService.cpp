#include "app/ApplicationService.h"

#include "app/AppDelegate.h"
#include "base/AppIdentity.h"
#include "base/Log.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusReply>

namespace snapvane {

namespace {

const QString applicationInterface = QStringLiteral("org.freedesktop.Application");

const Log& serviceLog() {
    static const Log log("ApplicationService");
    return log;
}

} // namespace

ApplicationService::ApplicationService(AppDelegate& delegate)
    : m_bus(QDBusConnection::sessionBus()) {
    new FreedesktopApplication(&m_object, delegate);
}

ApplicationService::~ApplicationService() {
    // What follows may take seconds: a program that is started meanwhile must not find a name that
    // nobody answers to any more.
    if (m_hasName) {
        m_bus.interface()->unregisterService(QLatin1String(applicationIdentifier));
    }
    m_bus.unregisterObject(QLatin1String(applicationObjectPath));
}

ApplicationService::Claim ApplicationService::claim() {
    if (!m_bus.isConnected()) {
        return Claim::NoBus;
    }
    // The object first: a bus that has started the program delivers its message with the name.
    m_bus.registerObject(QLatin1String(applicationObjectPath), &m_object);
    const QDBusReply<QDBusConnectionInterface::RegisterServiceReply> reply =
        m_bus.interface()->registerService(QLatin1String(applicationIdentifier),
                                           QDBusConnectionInterface::DontQueueService,
                                           QDBusConnectionInterface::DontAllowReplacement);
    if (!reply.isValid()) {
        return Claim::NoBus;
    }
    if (reply.value() == QDBusConnectionInterface::ServiceRegistered) {
        m_hasName = true;
        return Claim::First;
    }
    QDBusMessage activate = QDBusMessage::createMethodCall(
        QLatin1String(applicationIdentifier), QLatin1String(applicationObjectPath),
        applicationInterface, QStringLiteral("Activate"));
    activate << QVariantMap();
    m_bus.call(activate, QDBus::Block, 1000);
    return Claim::AlreadyRunning;
}

FreedesktopApplication::FreedesktopApplication(QObject* parent, AppDelegate& delegate)
    : QDBusAbstractAdaptor(parent), m_delegate(delegate) {}

void FreedesktopApplication::Activate(const QVariantMap&) {
    m_delegate.openSettings();
}

void FreedesktopApplication::Open(const QStringList&, const QVariantMap&) {
    m_delegate.openSettings();
}

void FreedesktopApplication::ActivateAction(const QString& name, const QVariantList&,
                                            const QVariantMap&) {
    if (name == QLatin1String("capture-area")) {
        // From a dock's or launcher's menu as likely as from a key binding.
        m_delegate.beginCapture(CaptureTrigger::Menu);
    } else if (name == QLatin1String("settings")) {
        m_delegate.openSettings();
    } else if (name == QLatin1String("about")) {
        m_delegate.openAbout();
    } else if (name == QLatin1String("quit")) {
        m_delegate.quit();
    } else {
        serviceLog().error(QStringLiteral("There is no action \"%1\".").arg(name));
    }
}

} // namespace snapvane
