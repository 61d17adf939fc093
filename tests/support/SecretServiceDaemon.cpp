#include "SecretServiceDaemon.h"

#include "Wait.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QFile>

#include <csignal>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

const QString password = u"keyring password"_s;
const QString service = u"org.freedesktop.secrets"_s;

QString uniqueName(const QString& prefix) {
    static int count = 0;
    return u"%1-%2"_s.arg(prefix).arg(++count);
}

QStringList prompterArguments(KeyringUser user) {
    switch (user) {
    case KeyringUser::Unlocks:
        return {u"accept"_s, password};
    case KeyringUser::Refuses:
        return {u"refuse"_s};
    case KeyringUser::Absent:
    case KeyringUser::Ignores:
        break;
    }
    return {u"ignore"_s};
}

/// The finished lines.
QByteArrayList linesOf(const QString& path) {
    QFile file(path);
    QByteArrayList lines =
        file.open(QIODevice::ReadOnly) ? file.readAll().split('\n') : QByteArrayList();
    if (!lines.isEmpty()) {
        lines.removeLast();
    }
    return lines;
}

} // namespace

SecretServiceDaemon::SecretServiceDaemon(const QProcessEnvironment& environment,
                                         const DesktopFolders& folders, KeyringUser user)
    : m_environment(environment), m_folders(folders) {
    // The real password window must not open on the desktop of a test.
    m_environment.remove(u"DISPLAY"_s);
    if (user != KeyringUser::Absent) {
        startPrompter(user);
    }
    startKeyring();
}

SecretServiceDaemon::~SecretServiceDaemon() {
    thaw();
}

void SecretServiceDaemon::startPrompter(KeyringUser user) {
    ChildProcess::Spec spec;
    spec.program = QStringLiteral(SNAPVANE_TEST_PROMPTER);
    spec.arguments = prompterArguments(user);
    spec.environment = m_environment;
    spec.outputFile = m_folders.log(uniqueName(u"prompter"_s));
    m_prompter = std::make_unique<ChildProcess>(spec);
    m_prompterOutput = spec.outputFile;
    require("the password window", [this] { return !linesOf(m_prompterOutput).isEmpty(); });
    m_environment.insert(u"GNOME_KEYRING_TEST_PROMPTER"_s,
                         QString::fromLatin1(linesOf(m_prompterOutput).first()));
}

void SecretServiceDaemon::startKeyring() {
    m_folders.write(u"keyring-password"_s, password.toUtf8());
    ChildProcess::Spec spec;
    // It reads the password from its standard input.
    spec.program = u"sh"_s;
    spec.arguments = {
        u"-c"_s, u"exec gnome-keyring-daemon --foreground --unlock --components=secrets < \"$0\""_s,
        m_folders.path(u"keyring-password"_s)};
    spec.environment = m_environment;
    spec.outputFile = m_folders.log(uniqueName(u"keyring"_s));
    m_keyring = std::make_unique<ChildProcess>(spec);
    const QString connection = uniqueName(u"keyring-watch"_s);
    {
        const QDBusConnection bus = QDBusConnection::connectToBus(
            m_environment.value(u"DBUS_SESSION_BUS_ADDRESS"_s), connection);
        require("the keyring",
                [&bus] { return bus.interface()->isServiceRegistered(service).value(); });
    }
    QDBusConnection::disconnectFromBus(connection);
}

bool SecretServiceDaemon::isAsking() const {
    const QByteArrayList lines = linesOf(m_prompterOutput);
    return !lines.isEmpty() && lines.last() == "open";
}

void SecretServiceDaemon::kill() {
    m_keyring->sendSignal(SIGKILL);
    m_keyring->end();
}

void SecretServiceDaemon::freeze() {
    m_keyring->sendSignal(SIGSTOP);
}

void SecretServiceDaemon::thaw() {
    m_keyring->sendSignal(SIGCONT);
}

} // namespace snapvane::testing
