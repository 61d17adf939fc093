#pragma once

#include "ChildProcess.h"
#include "VirtualDesktop.h"

#include <QDBusConnection>
#include <QString>
#include <QStringList>

namespace snapvane::testing {

/// Reads what programs say as a screen reader does: from the desktop's accessibility bus, which it
/// starts and ends. Programs that are to be read start later, with `switchVariable` set to "1".
/// Throws std::runtime_error when the bus does not come up. Test thread only.
class NoticeText {
public:
    /// Makes a Qt program tell without being asked by the desktop.
    static constexpr char switchVariable[] = "QT_LINUX_ACCESSIBILITY_ALWAYS_ON";

    explicit NoticeText(const VirtualDesktop& desktop);
    ~NoticeText();
    NoticeText(const NoticeText&) = delete;
    NoticeText& operator=(const NoticeText&) = delete;

    /// The names of all windows that programs on the desktop show at the moment.
    [[nodiscard]] QStringList shown() const;

private:
    ChildProcess m_launcher;
    QDBusConnection m_bus;
};

} // namespace snapvane::testing
