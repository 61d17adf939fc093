#pragma once

#include "actions/AfterCaptureAction.h"
#include "actions/AfterCaptureFacilities.h"

#include <QCoroTask>
#include <QStringList>

/// Runs the user's set of actions for one capture: upload, then save, then one write to the
/// clipboard for the picture and the link together, then one notice about all of it.
namespace snapvane::AfterCaptureBatchRunner {

/// Failures are logged and shown, and later steps still run; never throws. Main thread.
QCoro::Task<> run(AfterCaptureActions actions, CaptureResult result,
                  AfterCaptureFacilities facilities);

/// The texts in their order, each only where it comes first.
QStringList dedupeHUDParts(const QStringList& parts);

} // namespace snapvane::AfterCaptureBatchRunner
