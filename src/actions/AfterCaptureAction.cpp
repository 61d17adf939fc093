#include "actions/AfterCaptureAction.h"

#include "base/ProgramError.h"
#include "base/Translation.h"

namespace snapvane {

namespace {

struct Row {
    AfterCaptureAction action;
    const char* rawValue;
    const char* word;
    const char* label;
};

constexpr Row rows[] = {
    {AfterCaptureAction::copyToClipboard, "copyToClipboard", "copy", "Copy image to clipboard"},
    {AfterCaptureAction::uploadFerrybox, "uploadFerrybox", "upload",
     "Upload to Ferrybox (copy link)"},
    {AfterCaptureAction::saveToFolder, "saveToFolder", "save", "Save PNG to folder"}};

const Row& rowOf(AfterCaptureAction action) {
    for (const Row& row : rows) {
        if (row.action == action) {
            return row;
        }
    }
    programError("no such action after a capture");
}

} // namespace

QString rawValue(AfterCaptureAction action) {
    return QLatin1String(rowOf(action).rawValue);
}

std::optional<AfterCaptureAction> afterCaptureActionOfRawValue(const QString& rawValue) {
    for (const Row& row : rows) {
        if (rawValue == QLatin1String(row.rawValue)) {
            return row.action;
        }
    }
    return std::nullopt;
}

QString titleWord(AfterCaptureAction action) {
    return translated(rowOf(action).word);
}

QString settingsLabel(AfterCaptureAction action) {
    return translated(rowOf(action).label);
}

} // namespace snapvane
