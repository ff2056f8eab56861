#include "ui/look/symbols.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPaintDevice>
#include <QPixmap>
#include <QPixmapCache>
#include <QSvgRenderer>

#include <array>

namespace sorvik {
namespace {

constexpr std::array fileNames{
    "convert", "compress", "drop",  "clear",  "add",  "again", "preferences", "done", "reveal",       "info",
    "none",    "general",  "files", "output", "plus", "minus", "arrow_right", "stop", "chevron_down", "warning",
};
static_assert(fileNames.size() == static_cast<std::size_t>(Symbol::warning) + 1);

QByteArray sourceOf(Symbol symbol) {
    QFile file(QStringLiteral(":/symbols/%1.svg").arg(QLatin1StringView(fileNames[static_cast<std::size_t>(symbol)])));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QPixmap render(Symbol symbol, const QSize& pixels, const QColor& colour) {
    QSvgRenderer renderer(sourceOf(symbol).replace("currentColor", colour.name().toLatin1()));
    renderer.setAspectRatioMode(Qt::KeepAspectRatio);
    QPixmap pixmap(pixels);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    renderer.render(&painter);
    return pixmap;
}

/// `pixels` are device pixels.
QPixmap symbolPixmap(Symbol symbol, const QSize& pixels, const QColor& colour) {
    const QString key = QStringLiteral("symbol-%1-%2x%3-%4")
                            .arg(static_cast<int>(symbol))
                            .arg(pixels.width())
                            .arg(pixels.height())
                            .arg(colour.rgba());
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        pixmap = render(symbol, pixels, colour);
        QPixmapCache::insert(key, pixmap);
    }
    return pixmap;
}

class SymbolIconEngine final : public QIconEngine {
public:
    SymbolIconEngine(Symbol symbol, QPalette::ColorRole role) : symbol_(symbol), role_(role) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) override {
        drawSymbol(*painter, symbol_, rect, colour(mode));
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State /*state*/) override {
        return symbolPixmap(symbol_, size, colour(mode));
    }

    QPixmap scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state, qreal scale) override {
        QPixmap scaled = pixmap(size, mode, state);
        scaled.setDevicePixelRatio(scale);
        return scaled;
    }

    [[nodiscard]] QIconEngine* clone() const override { return new SymbolIconEngine(*this); }

private:
    [[nodiscard]] QColor colour(QIcon::Mode mode) const {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        return QGuiApplication::palette().color(group, mode == QIcon::Selected ? QPalette::HighlightedText : role_);
    }

    Symbol symbol_;
    QPalette::ColorRole role_;
};

}  // namespace

void drawSymbol(QPainter& painter, Symbol symbol, const QRectF& box, const QColor& colour) {
    const qreal scale = painter.device()->devicePixelRatioF();
    const QSize pixels = (box.size() * scale).toSize();
    if (pixels.isEmpty()) {
        return;
    }
    QPixmap pixmap = symbolPixmap(symbol, pixels, colour);
    pixmap.setDevicePixelRatio(scale);
    painter.drawPixmap(box.topLeft(), pixmap);
}

QIcon symbolIcon(Symbol symbol, QPalette::ColorRole role) { return QIcon(new SymbolIconEngine(symbol, role)); }

}  // namespace sorvik
