#include "AfterCaptureSuite.h"

#include "AgentLog.h"
#include "Wait.h"

#include <QDir>
#include <QFile>
#include <QSettings>

#include <stdexcept>

using namespace Qt::StringLiterals;

namespace snapvane::testing {

namespace {

const QString noticeName = u"Snapvane Notice"_s;
const QString preferencesPath = u"config/Snapvane/Snapvane.conf"_s;

} // namespace

std::unique_ptr<VirtualDesktop> AfterCaptureSuite::s_desktop;

void AfterCaptureSuite::startDesktop(const DesktopOptions& options) {
    s_desktop = std::make_unique<VirtualDesktop>(options);
}

void AfterCaptureSuite::TearDownTestSuite() {
    s_desktop.reset();
}

void AfterCaptureSuite::SetUp() {
    ASSERT_TRUE(s_desktop) << "the suite has no desktop";
    clearHome();
}

void AfterCaptureSuite::TearDown() {
    m_agent.reset();
}

void AfterCaptureSuite::clearHome() {
    const QString folder = s_desktop->folders().pictures() + u"/Snapvane"_s;
    QFile::remove(folder);
    QDir(folder).removeRecursively();
    QFile::remove(s_desktop->folders().path(preferencesPath));
}

void AfterCaptureSuite::writePreferences(const QByteArray& lines) {
    s_desktop->folders().write(preferencesPath, "[General]\n" + lines);
}

void AfterCaptureSuite::startAgent(const QByteArray& preferences, const AgentOptions& options) {
    writePreferences(preferences);
    m_agent = std::make_unique<AgentProcess>(*s_desktop, options);
}

QVariantMap AfterCaptureSuite::storedPreferences() {
    const QSettings file(s_desktop->folders().path(preferencesPath), QSettings::IniFormat);
    QVariantMap values;
    for (const QString& key : file.allKeys()) {
        if (!key.startsWith(u"KeyboardShortcuts_"_s)) {
            values.insert(key, file.value(key));
        }
    }
    return values;
}

void AfterCaptureSuite::select(const QRect& rect) {
    agent().activateAction(u"capture-area"_s);
    agent().waitForOverlay();
    injector().drag(rect.topLeft(), rect.bottomRight() + QPoint(1, 1));
    if (!agent().waitForOverlayGone()) {
        throw std::runtime_error("the selection stays; the agent's log ends:\n" +
                                 tail(agent().log()));
    }
}

QString AfterCaptureSuite::waitForPicture(const QStringList& known) {
    QString found;
    const auto isNew = [&](const QString& path) { return !known.contains(path); };
    const bool saved = waitUntil(
        [&] {
            const QStringList all = agent().savedPictures();
            const auto picture = std::ranges::find_if(all, isNew);
            found = picture == all.end() ? QString() : *picture;
            return !found.isEmpty();
        },
        std::chrono::seconds(10), std::chrono::milliseconds(2));
    if (!saved) {
        throw std::runtime_error("no picture was saved; the agent's log ends:\n" +
                                 tail(agent().log()));
    }
    return found;
}

WindowInfo AfterCaptureSuite::waitForNotice() {
    std::optional<WindowInfo> notice;
    require("a notice", [&] {
        notice = probe().viewableWindowNamed(noticeName);
        return notice.has_value();
    });
    return notice.value_or(WindowInfo());
}

bool AfterCaptureSuite::noticeIsShown() {
    return probe().viewableWindowNamed(noticeName).has_value();
}

void AfterCaptureSuite::waitForNoNotice() {
    require("the notice to go", [] { return !noticeIsShown(); });
}

QByteArray AfterCaptureSuite::contentsOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QByteArray actionsPreference(const QByteArray& actions) {
    return "showSelectionMagnifier=false\nshowCrosshairLinesWhileCapturing=false\n"
           "afterCaptureEnabledActions=" +
           actions + '\n';
}

} // namespace snapvane::testing
