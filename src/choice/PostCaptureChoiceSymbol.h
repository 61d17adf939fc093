#pragma once

#include <QString>

#include <array>
#include <optional>

namespace snapvane {

/// The icons of the card's rows.
enum class PostCaptureChoiceSymbol { clipboard, upload, folder, savedDefaults, cancel };

inline constexpr std::array allPostCaptureChoiceSymbols = {
    PostCaptureChoiceSymbol::clipboard, PostCaptureChoiceSymbol::upload,
    PostCaptureChoiceSymbol::folder, PostCaptureChoiceSymbol::savedDefaults,
    PostCaptureChoiceSymbol::cancel};

/// The name of the drawing that shows the symbol.
QString rawValue(PostCaptureChoiceSymbol symbol);
/// The symbol of that name; nothing for any other name.
std::optional<PostCaptureChoiceSymbol> postCaptureChoiceSymbol(const QString& name);

} // namespace snapvane
