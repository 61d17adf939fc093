#include "choice/PostCaptureChoiceSymbol.h"

namespace snapvane {

QString rawValue(PostCaptureChoiceSymbol symbol) {
    switch (symbol) {
    case PostCaptureChoiceSymbol::clipboard:
        return QStringLiteral("doc.on.clipboard");
    case PostCaptureChoiceSymbol::upload:
        return QStringLiteral("arrow.up.doc");
    case PostCaptureChoiceSymbol::folder:
        return QStringLiteral("folder");
    case PostCaptureChoiceSymbol::savedDefaults:
        return QStringLiteral("square.stack.3d.up");
    case PostCaptureChoiceSymbol::cancel:
        return QStringLiteral("xmark.circle");
    }
    return {};
}

std::optional<PostCaptureChoiceSymbol> postCaptureChoiceSymbol(const QString& name) {
    for (const PostCaptureChoiceSymbol symbol : allPostCaptureChoiceSymbols) {
        if (rawValue(symbol) == name) {
            return symbol;
        }
    }
    return std::nullopt;
}

} // namespace snapvane
