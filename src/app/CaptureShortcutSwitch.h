#pragma once

#include <set>

namespace snapvane {

/// Turns the shortcut that starts a capture off for as long as there is a reason to: they come and
/// go in any order. Main thread.
class CaptureShortcutSwitch {
public:
    enum class Reason { MenuIsOpen, CaptureIsAskedAbout, ProgramIsLeaving };

    /// The program's own.
    static CaptureShortcutSwitch& shared();

    /// Turns the shortcut off.
    void hold(Reason reason);
    /// Turns the shortcut on unless there is another reason.
    void release(Reason reason);

private:
    std::set<Reason> m_reasons;
};

} // namespace snapvane
