#pragma once

#include <QString>

namespace snapvane {

/// What the user reads of the exception that is being handled; never empty. To be called in a catch
/// clause.
QString currentErrorText();

} // namespace snapvane
