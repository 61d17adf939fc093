#pragma once

#include <QString>
#include <QStringList>

namespace snapvane {

/// What a modal alert says and offers.
struct Alert {
    enum class Style { Warning = 0, Informational = 1 };

    Style style = Style::Warning;
    QString messageText;
    QString informativeText;
    /// Left to right by rank: the first one is the default.
    QStringList buttons;
};

/// Shows alerts. Main thread.
class AlertPresenter {
public:
    virtual ~AlertPresenter() = default;

    /// Shows the alert and returns when the user has answered: the index of the button. Escape
    /// counts as the last one; −1 when the alert went without an answer.
    virtual int present(const Alert& alert) = 0;
};

} // namespace snapvane
