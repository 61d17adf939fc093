#pragma once

namespace snapvane {

/// Whether the user wants things to move. Main thread.
class MotionPreference {
public:
    virtual ~MotionPreference() = default;

    /// True when the desktop is set to do without animations; asked anew each time.
    virtual bool isReduced() const = 0;
};

} // namespace snapvane
