#include "hud/ModalAlertPresenter.h"

#include "base/AppIdentity.h"

#include <QMessageBox>
#include <QPushButton>

namespace snapvane {

namespace {

QMessageBox::Icon iconFor(Alert::Style style) {
    return style == Alert::Style::Warning ? QMessageBox::Warning : QMessageBox::Information;
}

} // namespace

ModalAlertPresenter& ModalAlertPresenter::shared() {
    static ModalAlertPresenter presenter;
    return presenter;
}

int ModalAlertPresenter::present(const Alert& alert) {
    QMessageBox box;
    box.setIcon(iconFor(alert.style));
    box.setWindowTitle(QLatin1String(productName));
    box.setTextFormat(Qt::PlainText);
    box.setText(alert.messageText);
    box.setInformativeText(alert.informativeText);
    QList<QPushButton*> buttons;
    for (const QString& title : alert.buttons) {
        // Only a role that accepts or rejects keeps the desktop's usual order of buttons.
        const auto role = buttons.isEmpty() ? QMessageBox::AcceptRole : QMessageBox::RejectRole;
        buttons.append(box.addButton(title, role));
    }
    if (!buttons.isEmpty()) {
        box.setDefaultButton(buttons.first());
        box.setEscapeButton(buttons.last());
    }
    // It belongs to no window, so that it blocks none: a selection, or the question about a
    // capture, goes on beside it.
    box.setWindowModality(Qt::WindowModal);
    box.setWindowFlag(Qt::WindowStaysOnTopHint);
    box.show();
    box.raise();
    box.activateWindow();
    box.exec();
    return static_cast<int>(buttons.indexOf(qobject_cast<QPushButton*>(box.clickedButton())));
}

} // namespace snapvane
