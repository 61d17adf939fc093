#pragma once

#include <QImage>
#include <QString>

#include <vector>

class QWidget;

/// Pictures of the card as it is to look.
namespace snapvane::testing {

/// What one picture shows.
struct ChoicePicture {
    enum class Look { Light, Dark };
    enum class Thumbnail { Wide, Tall, Tiny };

    Look look = Look::Light;
    Thumbnail thumbnail = Thumbnail::Wide;
    double scale = 1;
    /// The row that the pointer is over; −1 for none.
    int hoveredRow = -1;

    QString name() const;
};

/// All that are kept for comparison.
std::vector<ChoicePicture> choicePictures();

/// The card over a grey desktop, dimmed, with some of it around.
QImage render(const ChoicePicture& picture);

/// Runs the event loop until all thumbnails in the widget are as they are to be; false when that
/// takes too long.
bool finishThumbnails(QWidget& widget);

/// A picture of the widget on white, at that many pixels to the point, with its thumbnails as they
/// are to be.
QImage renderFinished(QWidget& widget, double scale);

/// How far two pictures are from each other.
struct Difference {
    /// Of all colour levels, 0 to 255.
    double mean = 0;
    /// The largest mean of a tile of 16 × 16 pixels.
    double worstTile = 0;
};

/// Pictures of different sizes differ in all.
Difference compare(const QImage& expected, const QImage& actual);

} // namespace snapvane::testing
