#include "base/Symbols.h"

#include "base/SystemColors.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QSvgRenderer>

#include <functional>
#include <utility>

namespace snapvane::Symbols {

namespace {

QString pathOf(const QString& name) {
    return QStringLiteral(":/symbols/%1.svg").arg(name);
}

QImage emptyImage(int pixels) {
    QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

QColor templateColor(QIcon::Mode mode, Use use) {
    const QPalette palette = QGuiApplication::palette();
    const bool highlighted =
        mode == QIcon::Selected || (mode == QIcon::Active && use == Use::MenuItem);
    if (highlighted) {
        return palette.color(QPalette::HighlightedText);
    }
    return palette.color(mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active,
                         QPalette::WindowText);
}

/// Draws a square template in the palette's current colour each time it is asked, so that icons
/// follow a change from light to dark without anybody making them anew.
class TemplateIconEngine : public QIconEngine {
public:
    using Render = std::function<QImage(int pixels, QIcon::Mode mode)>;

    explicit TemplateIconEngine(Render render) : m_render(std::move(render)) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override {
        const int side = std::min(rect.width(), rect.height());
        const double scale = painter->device()->devicePixelRatioF();
        const QRectF target(rect.x() + (rect.width() - side) / 2.0,
                            rect.y() + (rect.height() - side) / 2.0, side, side);
        painter->drawImage(target, m_render(qRound(side * scale), mode));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State) override {
        return QPixmap::fromImage(m_render(std::min(size.width(), size.height()), mode));
    }

    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override {
        // The sizes that tray hosts pick from; drawings have none of their own.
        return {{16, 16}, {22, 22}, {24, 24}, {32, 32}, {48, 48}, {64, 64}};
    }

    QIconEngine* clone() const override { return new TemplateIconEngine(m_render); }

private:
    Render m_render;
};

} // namespace

bool exists(const QString& name) {
    return !name.isEmpty() && QFile::exists(pathOf(name));
}

QImage render(const QString& name, int pixels, const QColor& color) {
    if (!exists(name) || pixels < 1) {
        return {};
    }
    QImage image = emptyImage(pixels);
    QSvgRenderer renderer(pathOf(name));
    QPainter painter(&image);
    renderer.render(&painter);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(image.rect(), color);
    return image;
}

std::optional<QIcon> icon(const QString& name, Use use) {
    if (!exists(name)) {
        return std::nullopt;
    }
    return QIcon(new TemplateIconEngine([name, use](int pixels, QIcon::Mode mode) {
        return render(name, pixels, templateColor(mode, use));
    }));
}

QIcon placeholderIcon(int points) {
    return QIcon(new TemplateIconEngine([points](int pixels, QIcon::Mode) {
        QImage image = emptyImage(std::max(pixels, points));
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(SystemColors::secondaryLabel());
        painter.drawEllipse(image.rect());
        return image;
    }));
}

} // namespace snapvane::Symbols
