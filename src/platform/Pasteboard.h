#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace snapvane {

/// Everything that one clipboard write offers together.
struct PasteboardContents {
    /// The encoded picture, handed to readers byte for byte.
    std::optional<QByteArray> png;
    std::optional<QString> text;
    /// An absolute URL.
    std::optional<QString> url;
};

/// The desktop's clipboard. Main thread.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    /// Replaces what is there, also by nothing.
    virtual void write(const PasteboardContents& contents) = 0;
};

} // namespace snapvane
