#pragma once

#include "capture/CaptureResult.h"

#include <QString>

#include <optional>

namespace snapvane {

class Pasteboard;

/// Puts captures and their links on the clipboard.
namespace AfterCapturePasteboard {

/// Replaces what is on the clipboard, in one write, by the picture, if it is wanted, and the link,
/// if there is one: as text and, where it is one, as a URL. Main thread.
void write(Pasteboard& pasteboard, const CaptureResult& result, bool includeImage,
           const std::optional<QString>& link);

} // namespace AfterCapturePasteboard

} // namespace snapvane
