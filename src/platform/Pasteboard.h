#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>
#include <QUrl>

#include <optional>

namespace snapvane {

/// Everything that one clipboard write offers together.
struct PasteboardContents {
    /// The encoded picture, handed to readers byte for byte.
    std::optional<QByteArray> png;
    /// The same picture, for a clipboard that does not take encoded ones; left out where it does.
    std::optional<QImage> image;
    std::optional<QString> text;
    std::optional<QUrl> url;
};

/// The desktop's clipboard. Main thread.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;

    /// Replaces what is there, also by nothing.
    virtual void write(const PasteboardContents& contents) = 0;
};

} // namespace snapvane
