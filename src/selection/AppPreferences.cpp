#include "selection/AppPreferences.h"

#include "base/Rounding.h"
#include "base/UserDefaults.h"

namespace snapvane {

namespace {

const QString crosshairLinesKey = QStringLiteral("showCrosshairLinesWhileCapturing");
const QString magnifierKey = QStringLiteral("showSelectionMagnifier");
const QString dimAmountKey = QStringLiteral("selectionDimAmount");

constexpr double defaultDimAmount = 0.18;

/// The key has had other names, which are only ever read: the newest that is there counts.
bool storedCrosshairLines(const UserDefaults& defaults) {
    for (const QString& key : {crosshairLinesKey, QStringLiteral("showCenterLinesWhileCapturing"),
                               QStringLiteral("showScreenCenter")}) {
        if (defaults.contains(key)) {
            return defaults.boolean(key);
        }
    }
    return false;
}

} // namespace

AppPreferences::AppPreferences(UserDefaults& defaults)
    : m_defaults(defaults), m_showCrosshairLines(storedCrosshairLines(defaults)),
      m_showMagnifier(!defaults.contains(magnifierKey) || defaults.boolean(magnifierKey)),
      m_dimAmount(defaults.contains(dimAmountKey) ? defaults.number(dimAmountKey)
                                                  : defaultDimAmount) {}

AppPreferences& AppPreferences::shared() {
    static AppPreferences preferences(UserDefaults::standard());
    return preferences;
}

void AppPreferences::setShowCrosshairLinesWhileCapturing(bool show) {
    Q_EMIT objectWillChange();
    m_showCrosshairLines = show;
    m_defaults.set(crosshairLinesKey, show);
}

void AppPreferences::setShowSelectionMagnifier(bool show) {
    Q_EMIT objectWillChange();
    m_showMagnifier = show;
    m_defaults.set(magnifierKey, show);
}

void AppPreferences::setSelectionDimAmount(double amount) {
    Q_EMIT objectWillChange();
    m_dimAmount = amount;
    m_defaults.set(dimAmountKey, amount);
}

std::int64_t AppPreferences::selectionDimPercent() const {
    return roundedInteger(m_dimAmount * 100);
}

} // namespace snapvane
