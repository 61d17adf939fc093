#include "app/QXMenuSymbol.h"

#include "base/Symbols.h"
#include "base/Translation.h"

namespace snapvane::QXMenuSymbol {

namespace {

constexpr int placeholderPoints = 16;

} // namespace

QString symbolName(Symbol symbol) {
    switch (symbol) {
    case Symbol::captureArea:
        return QStringLiteral("viewfinder");
    case Symbol::crosshairLines:
        return QStringLiteral("plus.viewfinder");
    case Symbol::settings:
        return QStringLiteral("gearshape");
    case Symbol::about:
        return QStringLiteral("info.circle");
    case Symbol::quit:
        return QStringLiteral("power");
    }
    return {};
}

QString accessibilityDescription(Symbol symbol) {
    switch (symbol) {
    case Symbol::captureArea:
        return translated("Capture Area");
    case Symbol::crosshairLines:
        return translated("Show crosshair lines while capturing");
    case Symbol::settings:
        return translated("Settings");
    case Symbol::about:
        return translated("About");
    case Symbol::quit:
        return translated("Quit");
    }
    return {};
}

std::optional<QIcon> makeImage(Symbol symbol) {
    return makeImage(symbolName(symbol));
}

std::optional<QIcon> makeImage(const QString& symbolName) {
    return Symbols::icon(symbolName, Symbols::Use::MenuItem);
}

QIcon imageOrPlaceholder(const QString& symbolName) {
    return makeImage(symbolName).value_or(Symbols::placeholderIcon(placeholderPoints));
}

bool needsPreferredImageVisibility(const std::optional<QVersionNumber>& systemVersion) {
    return systemVersion && *systemVersion >= QVersionNumber(27);
}

} // namespace snapvane::QXMenuSymbol
