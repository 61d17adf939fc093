#pragma once

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QStringList>
#include <QVariantMap>

namespace snapvane {

class AppDelegate;

/// The program on the session bus: one instance a session, and the interface through which
/// desktops, desktop files and scripts reach it. Owned by the entry; main thread.
class ApplicationService {
public:
    enum class Claim { First, AlreadyRunning, NoBus };

    explicit ApplicationService(AppDelegate& delegate);
    ~ApplicationService();
    ApplicationService(const ApplicationService&) = delete;
    ApplicationService& operator=(const ApplicationService&) = delete;

    /// Takes the program's name. When another instance has it, that one is asked to show its
    /// settings.
    Claim claim();

private:
    QDBusConnection m_bus;
    bool m_hasName = false;
    QObject m_object;
};

/// org.freedesktop.Application, the standard interface of programs on the bus.
class FreedesktopApplication : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public:
    FreedesktopApplication(QObject* parent, AppDelegate& delegate);

public Q_SLOTS:
    // The names are the interface's.
    // NOLINTBEGIN(readability-identifier-naming)
    /// Shows the settings.
    void Activate(const QVariantMap& platformData);
    /// There is nothing that this program opens; shows the settings as well.
    void Open(const QStringList& uris, const QVariantMap& platformData);
    /// "capture-area" (through the same gate as the menu), "settings", "about", "quit"; other names
    /// are logged.
    void ActivateAction(const QString& name, const QVariantList& parameter,
                        const QVariantMap& platformData);
    // NOLINTEND(readability-identifier-naming)

private:
    AppDelegate& m_delegate;
};

} // namespace snapvane
