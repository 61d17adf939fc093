#pragma once

#include <QString>
#include <QWidget>

namespace snapvane {

/// What a notice looks like: one line of white text on a dark plate with round corners. Its fitting
/// size is `sizeHint`. Owned by the notice's panel.
class HUDContentView : public QWidget {
    Q_OBJECT

public:
    static constexpr double cornerRadius = 10;

    explicit HUDContentView(const QString& message);

    const QString& message() const { return m_message; }
    void setMessage(const QString& message);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QFont textFont() const;

    QString m_message;
};

} // namespace snapvane
