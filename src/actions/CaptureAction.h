#pragma once

#include "capture/CaptureResult.h"

#include <QCoroTask>
#include <QString>

#include <optional>

namespace snapvane {

/// One thing that can be done with a capture.
class CaptureAction {
public:
    virtual ~CaptureAction() = default;

    /// A stable identifier, lower case with hyphens.
    virtual QString id() const = 0;
    /// Does it. Gives a short message for a notice, or nothing; throws LocalizedError. Called and
    /// resumed on the main thread; the action must outlive the task.
    virtual QCoro::Task<std::optional<QString>> perform(CaptureResult result) = 0;
};

} // namespace snapvane
