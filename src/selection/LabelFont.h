#pragma once

#include <QFont>

namespace snapvane {

/// The desktop's fixed-width font of the moment, `points` high, for the labels of a selection. Main
/// thread.
QFont labelFont(int points);

} // namespace snapvane
