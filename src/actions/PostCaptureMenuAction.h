#pragma once

namespace snapvane {

/// What the user chooses for one capture when asked.
enum class PostCaptureMenuAction {
    runSavedDefaults,
    uploadFerrybox,
    saveToFolder,
    copyToClipboard,
    cancel
};

} // namespace snapvane
