#pragma once

#include "actions/AfterCaptureFacilities.h"
#include "actions/PostCaptureMenuAction.h"

#include <QCoroTask>

/// Decides what happens to a finished capture and has it done. Keeps nothing between calls, so that
/// several captures may be under way. Nothing throws. Main thread.
namespace snapvane::CapturePostActionExecutor {

/// Asks the user, when that is what the user wants, and returns at once; else runs the enabled
/// actions.
QCoro::Task<> runConfiguredAction(CaptureResult result, AfterCaptureFacilities facilities);

/// Does what the user has chosen for the capture.
QCoro::Task<> run(PostCaptureMenuAction menuAction, CaptureResult result,
                  AfterCaptureFacilities facilities);

} // namespace snapvane::CapturePostActionExecutor
