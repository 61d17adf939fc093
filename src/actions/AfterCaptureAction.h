#pragma once

#include <QString>

#include <array>
#include <optional>
#include <set>

namespace snapvane {

/// What the user can have done with every capture.
enum class AfterCaptureAction { copyToClipboard, uploadFerrybox, saveToFolder };

using AfterCaptureActions = std::set<AfterCaptureAction>;

/// All of them, in the order in which they are listed everywhere.
inline constexpr std::array allAfterCaptureActions = {AfterCaptureAction::copyToClipboard,
                                                      AfterCaptureAction::uploadFerrybox,
                                                      AfterCaptureAction::saveToFolder};

/// The name that the preferences store.
QString rawValue(AfterCaptureAction action);

/// Nothing for a name that is none of them.
std::optional<AfterCaptureAction> afterCaptureActionOfRawValue(const QString& rawValue);

/// The one word that stands for the action in a list of them, for the user.
QString titleWord(AfterCaptureAction action);

/// The action as a choice of its own, for the user.
QString settingsLabel(AfterCaptureAction action);

} // namespace snapvane
