#include "AgentProcess.h"

#include "AgentLog.h"
#include "Injector.h"
#include "InputGrabs.h"
#include "Wait.h"
#include "X11Probe.h"

#include <gtest/gtest.h>

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDir>
#include <QFile>
#include <QRegularExpression>

#include <csignal>
#include <stdexcept>
#include <sys/resource.h>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

constexpr char busName[] = "app.snapvane.Snapvane";
const QString overlayName = u"Snapvane Selection"_s;

QString uniqueName(const QString& prefix) {
    static int count = 0;
    return u"%1-%2"_s.arg(prefix).arg(++count);
}

ChildProcess::Spec specFor(const VirtualDesktop& desktop, const AgentOptions& options,
                           const QString& logFile) {
    ChildProcess::Spec spec;
    spec.program = options.program.isEmpty() ? QStringLiteral(SNAPVANE_PROGRAM) : options.program;
    spec.environment = desktop.environment();
    for (const auto& [name, value] : options.variables) {
        if (value.isEmpty()) {
            spec.environment.remove(name);
        } else {
            spec.environment.insert(name, value);
        }
    }
    spec.outputFile = logFile;
    spec.withoutFileOverrides = options.withoutFileOverrides;
    spec.tinyDiskOn = options.tinyDiskOn;
    return spec;
}

} // namespace

AgentProcess::AgentProcess(const VirtualDesktop& desktop, const AgentOptions& options)
    : m_desktop(desktop), m_logFile(desktop.folders().log(uniqueName(u"agent"_s))),
      m_busConnection(uniqueName(u"test-bus"_s)), m_process(specFor(desktop, options, m_logFile)) {
    if (options.waitUntilReady) {
        waitForBusName();
    }
}

AgentProcess::~AgentProcess() {
    QDBusConnection::disconnectFromBus(m_busConnection);
    const bool wasRunning = m_process.isRunning();
    const ChildProcess::Exit exit = m_process.end(std::chrono::seconds(5));
    if (!m_endExpected) {
        EXPECT_TRUE(wasRunning) << "the agent ended on its own:\n" << tail(log());
        EXPECT_EQ(exit.signal, 0) << "the agent died of a signal:\n" << tail(log());
        EXPECT_EQ(exit.code, 0) << "the agent's exit status:\n" << tail(log());
    }
    EXPECT_FALSE(hasSanitizerReport(log())) << log().toStdString();
    if (::testing::Test::HasFailure()) {
        keepLog(m_logFile);
    }
}

void AgentProcess::killHard() {
    m_endExpected = true;
    m_process.sendSignal(SIGKILL);
    m_process.waitForExit(std::chrono::seconds(5));
}

ChildProcess::Exit AgentProcess::terminate() {
    m_endExpected = true;
    return m_process.end(std::chrono::seconds(5));
}

std::optional<ChildProcess::Exit> AgentProcess::waitForEnd(std::chrono::milliseconds limit) {
    m_endExpected = true;
    return m_process.waitForExit(limit);
}

void AgentProcess::limitFileSize(qint64 bytes) {
    const rlimit limit = {static_cast<rlim_t>(bytes), RLIM_INFINITY};
    if (prlimit(id(), RLIMIT_FSIZE, &limit, nullptr) != 0) {
        throw std::runtime_error("the file size limit was refused");
    }
}

void AgentProcess::waitForBusName() {
    QDBusConnection bus = QDBusConnection::connectToBus(m_desktop.busAddress(), m_busConnection);
    const bool found = waitUntil(
        [&] { return bus.interface()->isServiceRegistered(QLatin1String(busName)).value(); },
        std::chrono::seconds(10));
    if (!found) {
        throw std::runtime_error("the agent is not on the session bus; its log ends:\n" +
                                 tail(log()));
    }
}

void AgentProcess::activateAction(const QString& name) {
    QDBusConnection bus = QDBusConnection::connectToBus(m_desktop.busAddress(), m_busConnection);
    QDBusMessage call =
        QDBusMessage::createMethodCall(QLatin1String(busName), u"/app/snapvane/Snapvane"_s,
                                       u"org.freedesktop.Application"_s, u"ActivateAction"_s);
    call << name << QVariantList() << QVariantMap();
    const QDBusMessage answer = bus.call(call, QDBus::Block, 5000 * slowness());
    if (answer.type() != QDBusMessage::ReplyMessage) {
        throw std::runtime_error("ActivateAction failed: " + answer.errorMessage().toStdString() +
                                 "\nthe agent's log ends:\n" + tail(log()));
    }
}

QString AgentProcess::log(qsizetype since) const {
    QFile file(m_logFile);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    return QString::fromUtf8(file.readAll()).mid(since);
}

bool AgentProcess::waitForLogLine(const QString& regularExpression, qsizetype since,
                                  std::chrono::milliseconds limit) const {
    const QRegularExpression expression(regularExpression,
                                        QRegularExpression::CaseInsensitiveOption);
    return waitUntil([&] { return log(since).contains(expression); }, limit);
}

bool AgentProcess::loggedError(qsizetype since) const {
    return log(since).contains(u"] error: "_s);
}

void AgentProcess::waitForOverlay() {
    const XcbConnection& connection = m_desktop.connection();
    const X11Probe probe(connection);
    const auto expected = static_cast<qsizetype>(probe.monitorCount());
    const bool shown = waitUntil(
        [&] {
            const auto found = probe.windowsNamed(overlayName);
            return std::ranges::count_if(found, &WindowInfo::viewable) == expected;
        },
        std::chrono::seconds(5));
    const bool holdsInput =
        shown &&
        waitUntil([&] { return isKeyboardGrabbed(connection) && isPointerGrabbed(connection); },
                  std::chrono::seconds(2));
    if (!holdsInput) {
        throw std::runtime_error(
            std::string(shown ? "the overlay has no input grab" : "the overlay does not show") +
            "; the agent's log ends:\n" + tail(log()));
    }
}

bool AgentProcess::waitForOverlayGone(std::chrono::milliseconds limit) {
    return waitUntil([&] { return overlayCount() == 0; }, limit);
}

int AgentProcess::overlayCount() const {
    return static_cast<int>(X11Probe(m_desktop.connection()).windowsNamed(overlayName).size());
}

QString AgentProcess::pictureFolder() const {
    return m_desktop.folders().pictures() + u"/Snapvane"_s;
}

QStringList AgentProcess::savedPictures() const {
    static const QRegularExpression finished(
        uR"(^Snapvane \d{4}-\d\d-\d\d \d\d\.\d\d\.\d\d\.png$)"_s);
    QStringList paths;
    for (const QString& name : filesInPictureFolder().filter(finished)) {
        paths << pictureFolder() + u'/' + name;
    }
    return paths;
}

QStringList AgentProcess::filesInPictureFolder() const {
    return QDir(pictureFolder())
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot, QDir::Name);
}

void AgentProcess::clearPictures() const {
    for (const QString& name : filesInPictureFolder()) {
        QFile::remove(pictureFolder() + u'/' + name);
    }
}

QString AgentProcess::waitForPicture() {
    QStringList found;
    const bool saved = waitUntil(
        [&] {
            found = savedPictures();
            return !found.isEmpty();
        },
        std::chrono::seconds(10), std::chrono::milliseconds(2));
    if (!saved) {
        throw std::runtime_error("no picture was saved; the agent's log ends:\n" + tail(log()));
    }
    return found.front();
}

QImage AgentProcess::capture(const QPoint& from, const QPoint& to, int steps) {
    clearPictures();
    activateAction(u"capture-area"_s);
    waitForOverlay();
    Injector(m_desktop.connection()).drag(from, to, steps);
    return QImage(waitForPicture());
}

qint64 AgentProcess::privateMemoryKiB() const {
    return numberAfter(u"/proc/%1/smaps_rollup"_s.arg(id()), "Private_Dirty:");
}

int AgentProcess::threadCount() const {
    return static_cast<int>(numberAfter(u"/proc/%1/status"_s.arg(id()), "Threads:"));
}

} // namespace snapvane::testing
