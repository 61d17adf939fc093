#include "BareBus.h"

#include "BusConfiguration.h"
#include "Wait.h"

#include <QFile>

#include <csignal>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

const QString announcements = u"bare-bus"_s;

QString socketPath(const DesktopFolders& folders) {
    return folders.runtime() + u"/bare-bus"_s;
}

ChildProcess::Spec specFor(const DesktopFolders& folders) {
    folders.write(u"bare-bus.conf"_s, busConfiguration(socketPath(folders)));
    QFile::remove(folders.log(announcements));
    ChildProcess::Spec spec;
    spec.program = u"dbus-daemon"_s;
    spec.arguments = {u"--config-file="_s + folders.path(u"bare-bus.conf"_s), u"--nofork"_s,
                      u"--print-address"_s};
    spec.environment = folders.environment();
    spec.outputFile = folders.log(announcements);
    return spec;
}

} // namespace

BareBus::BareBus(const DesktopFolders& folders) : m_folders(folders), m_daemon(specFor(folders)) {
    require("the bus", [&folders] {
        QFile file(folders.log(announcements));
        return file.open(QIODevice::ReadOnly) && file.readLine().endsWith('\n');
    });
}

QString BareBus::address() const {
    return u"unix:path="_s + socketPath(m_folders);
}

QProcessEnvironment BareBus::environment() const {
    QProcessEnvironment environment = m_folders.environment();
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, address());
    return environment;
}

void BareBus::stop() {
    m_daemon.sendSignal(SIGKILL);
    m_daemon.end();
}

} // namespace snapvane::testing
