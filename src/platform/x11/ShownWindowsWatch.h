#pragma once

#include "platform/x11/SubwindowRedirection.h"

#include <QObject>

#include <optional>
#include <set>

class QWindow;

namespace snapvane::x11 {

/// Has other programs' windows keep their pixels for as long as a window of this program is shown:
/// without a compositor, what lies beneath ours could not be told otherwise. Qt announces a window
/// before it maps it, so that nothing is covered yet by then. Owned by the capturer; main thread.
class ShownWindowsWatch : public QObject {
public:
    ShownWindowsWatch();

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void note(const QWindow& window);
    void forget(const QObject* window);

    // Only compared, never looked into.
    std::set<const QObject*> m_shown;
    std::optional<SubwindowRedirection> m_redirection;
};

} // namespace snapvane::x11
