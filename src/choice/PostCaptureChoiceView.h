#pragma once

#include "actions/PostCaptureMenuAction.h"
#include "base/SoftShadow.h"
#include "capture/CaptureResult.h"

#include <QWidget>

#include <functional>
#include <vector>

namespace snapvane {

class ChoiceActionRow;
class ChoiceThumbnail;

/// The card on which the user chooses what happens to a capture: a heading, the capture in small,
/// and a row for each thing to do. Keeps no state but which row the pointer is over. Owned by the
/// panel's views.
class PostCaptureChoiceView : public QWidget {
    Q_OBJECT

public:
    struct Contents {
        PlatformImage thumbnail;
        /// As CapturePreferences gives it.
        QString savedDefaultsTitle;
        /// A row was clicked. The card may go within the call.
        std::function<void(PostCaptureMenuAction)> onSelect;
        /// The row that discards was clicked.
        std::function<void()> onCancel;
    };

    explicit PostCaptureChoiceView(Contents contents);

    /// Shrinks the thumbnail, and leaves it out at last, as far as the card needs it to be at most
    /// that high (points).
    void limitHeight(int height);

    /// From top to bottom.
    const std::vector<ChoiceActionRow*>& rows() const { return m_rows; }
    const ChoiceThumbnail& thumbnail() const { return *m_thumbnail; }

    /// What the row of the saved defaults says below its title.
    static QString savedDefaultsSubtitle(const QString& savedDefaultsTitle);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void addRows(QWidget& parent);

    Contents m_contents;
    ChoiceThumbnail* m_thumbnail;
    std::vector<ChoiceActionRow*> m_rows;
    CachedShadow m_thumbnailShadow;
};

} // namespace snapvane
