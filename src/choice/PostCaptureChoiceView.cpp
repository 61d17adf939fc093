#include "choice/PostCaptureChoiceView.h"

#include "base/Style.h"
#include "base/Translation.h"
#include "choice/ChoiceActionRow.h"
#include "choice/ChoicePanelColors.h"
#include "choice/ChoiceThumbnail.h"

#include <QLabel>
#include <QPainter>
#include <QVBoxLayout>

namespace snapvane {

namespace {

// Points.
constexpr int cardWidth = 420;
constexpr int cardPadding = 22;
constexpr int cardSpacing = 18;
constexpr int rowSpacing = 10;
constexpr int headingSize = 15;
constexpr double thumbnailShadowReach = 4;
constexpr double thumbnailShadowDrop = 1;
constexpr double thumbnailShadowOpacity = 0.22;

/// Painted by itself, since colours that a label is given do not follow the desktop's palette.
class Heading : public QLabel {
public:
    explicit Heading(const QString& text) : QLabel(text) {
        setFont(Style::font(headingSize, QFont::DemiBold));
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setPen(Style::secondary());
        painter.drawText(rect(), Qt::AlignCenter | Qt::TextSingleLine, text());
    }
};

struct RowDescription {
    ChoiceActionRowContents contents;
    PostCaptureMenuAction action;
};

std::vector<RowDescription> rowDescriptions(const QString& savedDefaultsTitle) {
    using Symbol = PostCaptureChoiceSymbol;
    using Action = PostCaptureMenuAction;
    return {{{Symbol::clipboard, translated("Copy"), translated("Image to clipboard"),
              QStringLiteral("1"), translated("Copy image to clipboard"), false},
             Action::copyToClipboard},
            {{Symbol::upload, translated("Upload to Ferrybox"), translated("Copy public link"),
              QStringLiteral("2"), translated("Upload PNG and copy link to clipboard"), false},
             Action::uploadFerrybox},
            {{Symbol::folder, translated("Save PNG"), translated("To chosen folder"),
              QStringLiteral("3"), translated("Save PNG to the folder in Settings"), false},
             Action::saveToFolder},
            {{Symbol::savedDefaults, translated("Saved defaults"),
              PostCaptureChoiceView::savedDefaultsSubtitle(savedDefaultsTitle),
              QStringLiteral("4 \u00b7 \u21a9"), savedDefaultsTitle, false},
             Action::runSavedDefaults},
            {{Symbol::cancel, translated("Cancel"), translated("Discard this prompt"),
              translated("Esc"), translated("Close without running an action"), true},
             Action::cancel}};
}

} // namespace

PostCaptureChoiceView::PostCaptureChoiceView(Contents contents) : m_contents(std::move(contents)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(cardPadding, cardPadding, cardPadding, cardPadding);
    column->setSpacing(cardSpacing);
    column->addWidget(new Heading(translated("After capture")));
    m_thumbnail = new ChoiceThumbnail(m_contents.thumbnail);
    column->addWidget(m_thumbnail, 0, Qt::AlignHCenter);
    auto* rows = new QWidget;
    addRows(*rows);
    column->addWidget(rows);
    setFixedWidth(cardWidth);
    adjustSize();
}

void PostCaptureChoiceView::addRows(QWidget& parent) {
    auto* column = new QVBoxLayout(&parent);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(rowSpacing);
    for (const RowDescription& description : rowDescriptions(m_contents.savedDefaultsTitle)) {
        auto* row = new ChoiceActionRow(description.contents);
        connect(row, &ChoiceActionRow::clicked, this, [this, action = description.action] {
            if (action == PostCaptureMenuAction::cancel) {
                m_contents.onCancel();
            } else {
                m_contents.onSelect(action);
            }
        });
        column->addWidget(row);
        m_rows.push_back(row);
    }
}

void PostCaptureChoiceView::limitHeight(int height) {
    const int excess = sizeHint().height() - height;
    if (excess <= 0) {
        return;
    }
    const int room = m_thumbnail->sizeHint().height() - excess;
    m_thumbnail->setMaximumImageHeight(std::max(room, 1));
    m_thumbnail->setVisible(room > 0);
    layout()->activate();
    adjustSize();
}

QString PostCaptureChoiceView::savedDefaultsSubtitle(const QString& savedDefaultsTitle) {
    const QString prefix = translated("Saved defaults (");
    if (!savedDefaultsTitle.startsWith(prefix)) {
        return translated("None selected in Settings");
    }
    // Without the closing parenthesis.
    return savedDefaultsTitle.mid(prefix.size())
        .chopped(savedDefaultsTitle.size() > prefix.size() ? 1 : 0);
}

void PostCaptureChoiceView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ChoicePanelColors::surface());
    painter.drawRoundedRect(Style::crisp(painter, rect()), Style::cardRadius, Style::cardRadius);
    if (m_thumbnail->isHidden()) {
        return;
    }
    const SoftShadow shadow = {Style::withOpacity(Qt::black, thumbnailShadowOpacity),
                               thumbnailShadowReach, thumbnailShadowDrop};
    const QRectF around = QRectF(m_thumbnail->geometry().marginsAdded(shadow.margins()));
    painter.drawImage(around.topLeft(),
                      m_thumbnailShadow.of(shadow, m_thumbnail->size(), Style::largeRadius,
                                           painter.deviceTransform().m11()));
}

} // namespace snapvane
