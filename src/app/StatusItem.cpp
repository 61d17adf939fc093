#include "app/StatusItem.h"

#include "base/Log.h"
#include "base/Symbols.h"
#include "base/Translation.h"
#include "platform/TrayHost.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPalette>

namespace snapvane {

namespace {

const Log& statusLog() {
    static const Log log("StatusItem");
    return log;
}

/// A title instead of an image, for trays, which show nothing but images.
QIcon titleImage(const QString& title) {
    QIcon icon;
    for (const int side : {16, 22, 24, 32, 48}) {
        QPixmap pixmap(side, side);
        pixmap.fill(Qt::transparent);
        QPainter painter(&pixmap);
        painter.setPen(QGuiApplication::palette().color(QPalette::WindowText));
        QFont font = painter.font();
        font.setPixelSize(side * 5 / 8);
        font.setBold(true);
        painter.setFont(font);
        painter.drawText(pixmap.rect(), Qt::AlignCenter, title);
        icon.addPixmap(pixmap);
    }
    return icon;
}

} // namespace

StatusItem::StatusItem(TrayHost& host, StatusMenu::Handler handler)
    : m_host(host), m_menu(std::move(handler)) {
    connect(&m_host, &TrayHost::appeared, this, &StatusItem::makeIcon);
    connect(&m_host, &TrayHost::disappeared, this, [this] {
        m_icon.reset();
        if (m_host.isPresent()) {
            makeIcon(); // There is another one, of the other kind.
        }
    });
    if (m_host.isPresent()) {
        makeIcon();
    } else {
        statusLog().notice(
            QStringLiteral("There is no tray yet; the icon comes when there is one."));
    }
}

StatusItem::~StatusItem() = default;

QIcon StatusItem::buttonImage(const QString& symbolName) {
    return Symbols::icon(symbolName, Symbols::Use::Plain)
        .value_or(titleImage(QStringLiteral("SV")));
}

void StatusItem::makeIcon() {
    m_icon = std::make_unique<QSystemTrayIcon>();
    m_icon->setIcon(buttonImage(QStringLiteral("camera.viewfinder")));
    m_icon->setToolTip(translated("Snapvane"));
    m_icon->setContextMenu(&m_menu.menu());
    connect(m_icon.get(), &QSystemTrayIcon::activated, this, &StatusItem::handleActivation);
    m_icon->show();
}

void StatusItem::handleActivation(QSystemTrayIcon::ActivationReason reason) {
    // Trays open the menu by themselves only for the secondary button; here every click means it.
    if (reason == QSystemTrayIcon::Trigger) {
        m_menu.menu().popup(QCursor::pos());
    }
}

} // namespace snapvane
