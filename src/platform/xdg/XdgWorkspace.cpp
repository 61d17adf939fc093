#include "platform/xdg/XdgWorkspace.h"

#include <QApplication>
#include <QDesktopServices>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

namespace snapvane::xdg {

namespace {

/// True when the desktop has a program for links of that scheme. A link without one is not opened
/// at all: openers fall back to a web browser, which helps nobody.
bool hasHandler(const QString& scheme) {
    const QString xdgMime = QStandardPaths::findExecutable(QStringLiteral("xdg-mime"));
    if (xdgMime.isEmpty()) {
        return false;
    }
    QProcess query;
    query.start(xdgMime, {QStringLiteral("query"), QStringLiteral("default"),
                          QStringLiteral("x-scheme-handler/%1").arg(scheme)});
    constexpr int patienceInMilliseconds = 1000;
    return query.waitForFinished(patienceInMilliseconds) &&
           !query.readAllStandardOutput().trimmed().isEmpty();
}

bool isWebLink(const QUrl& url) {
    return url.scheme() == QLatin1String("http") || url.scheme() == QLatin1String("https");
}

struct ControlPanel {
    QString program;
    QStringList arguments;
};

/// The privacy or applications panels of the desktops, the likeliest first.
std::vector<ControlPanel> privacyPanels() {
    return {{QStringLiteral("gnome-control-center"), {QStringLiteral("privacy")}},
            {QStringLiteral("systemsettings"), {QStringLiteral("kcm_componentchooser")}},
            {QStringLiteral("systemsettings5"), {QStringLiteral("kcm_componentchooser")}},
            {QStringLiteral("xfce4-settings-manager"), {}}};
}

} // namespace

bool XdgWorkspace::open(const QUrl& url) {
    if (!isWebLink(url) && !hasHandler(url.scheme())) {
        return false;
    }
    return QDesktopServices::openUrl(url);
}

bool XdgWorkspace::openPrivacyPanel() {
    for (const ControlPanel& panel : privacyPanels()) {
        const QString program = QStandardPaths::findExecutable(panel.program);
        if (!program.isEmpty()) {
            return QProcess::startDetached(program, panel.arguments);
        }
    }
    return false;
}

void XdgWorkspace::beep() {
    QApplication::beep();
}

} // namespace snapvane::xdg
