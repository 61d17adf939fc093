#pragma once

#include <QObject>

#include <cstdint>

namespace snapvane {

class UserDefaults;

/// The user's settings of the selection overlay. Read once from the store when the object is made;
/// each change is announced, then stored here and written to the store at once, also when the value
/// is the same. Nothing is clamped. Main thread.
class AppPreferences : public QObject {
    Q_OBJECT

public:
    explicit AppPreferences(UserDefaults& defaults);

    static AppPreferences& shared();

    bool showCrosshairLinesWhileCapturing() const { return m_showCrosshairLines; }
    void setShowCrosshairLinesWhileCapturing(bool show);

    bool showSelectionMagnifier() const { return m_showMagnifier; }
    void setShowSelectionMagnifier(bool show);

    /// Opacity of the black veil outside the selection, 0 … 1.
    double selectionDimAmount() const { return m_dimAmount; }
    void setSelectionDimAmount(double amount);

    /// The dim amount in percent, halves away from zero. An amount that is not finite is a program
    /// error.
    std::int64_t selectionDimPercent() const;

Q_SIGNALS:
    /// A property is about to change; it still has its old value.
    void objectWillChange();

private:
    UserDefaults& m_defaults;
    bool m_showCrosshairLines;
    bool m_showMagnifier;
    double m_dimAmount;
};

} // namespace snapvane
