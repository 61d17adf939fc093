#pragma once

#include "capture/CaptureResult.h"

#include <QCoroTask>

/// Decides what happens to a finished capture and does it.
namespace snapvane::CapturePostActionExecutor {

/// Saves the capture into the folder of the preferences. Failures are logged; never throws. Main
/// thread.
QCoro::Task<> runConfiguredAction(CaptureResult result);

} // namespace snapvane::CapturePostActionExecutor
