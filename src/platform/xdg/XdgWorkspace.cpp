#include "platform/xdg/XdgWorkspace.h"

#include <QApplication>
#include <QDesktopServices>
#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>

namespace snapvane::xdg {

namespace {

/// The files in which desktops note which program opens what.
QStringList associationFiles() {
    QStringList files;
    const auto configuration =
        QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation);
    for (const QString& folder : configuration) {
        files.append(folder + QStringLiteral("/mimeapps.list"));
    }
    const auto applications =
        QStandardPaths::standardLocations(QStandardPaths::ApplicationsLocation);
    for (const QString& folder : applications) {
        files.append(folder + QStringLiteral("/mimeapps.list"));
        files.append(folder + QStringLiteral("/mimeinfo.cache"));
    }
    return files;
}

/// True when the desktop has a program for links of that scheme. A link without one is not opened
/// at all: openers fall back to a web browser, which helps nobody.
bool hasHandler(const QString& scheme) {
    const QByteArray association = "x-scheme-handler/" + scheme.toUtf8() + '=';
    const auto files = associationFiles();
    return std::any_of(files.begin(), files.end(), [&association](const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) &&
               ('\n' + file.readAll()).contains('\n' + association);
    });
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
