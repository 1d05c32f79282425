#include "Platform/Desktop/TrayImage.h"

#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QSvgRenderer>

#include <cmath>
#include <memory>

using namespace Qt::StringLiterals;

namespace
{
class SvgImageEngine : public QIconEngine
{
public:
    explicit SvgImageEngine(std::shared_ptr<QSvgRenderer> renderer) : m_renderer(std::move(renderer)) {}

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode, QIcon::State) override
    {
        const QSizeF size = QSizeF(m_renderer->defaultSize()).scaled(rect.size(), Qt::KeepAspectRatio);
        QRectF target(QPointF(), size);
        target.moveCenter(QRectF(rect).center());
        // On whole pixels, or every edge of the drawing would be a grey one.
        target.moveTo(std::floor(target.x()), std::floor(target.y()));
        m_renderer->render(painter, target);
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        const auto known = m_rendered.constFind(size.width() << 16 | size.height());
        if (known != m_rendered.cend())
            return *known;
        QPixmap rendered(size);
        rendered.fill(Qt::transparent);
        QPainter painter(&rendered);
        paint(&painter, QRect(QPoint(), size), mode, state);
        painter.end();
        m_rendered.insert(size.width() << 16 | size.height(), rendered);
        return rendered;
    }

    QSize actualSize(const QSize &size, QIcon::Mode, QIcon::State) override { return size; }

    /// The item's height at one, two and three device pixels a point, and what panels use in between.
    QList<QSize> availableSizes(QIcon::Mode, QIcon::State) override
    {
        return {{20, 20}, {22, 22}, {24, 24}, {32, 32}, {40, 40}, {60, 60}};
    }

    bool isNull() override { return false; }
    [[nodiscard]] QIconEngine *clone() const override { return new SvgImageEngine(*this); }

private:
    std::shared_ptr<QSvgRenderer> m_renderer;
    QHash<int, QPixmap> m_rendered;
};
} // namespace

QIcon trayImage(const QString &path)
{
    if (!path.endsWith(".svg"_L1)) {
        const QPixmap pixmap(path);
        return pixmap.isNull() ? QIcon() : QIcon(pixmap);
    }
    auto renderer = std::make_shared<QSvgRenderer>(path);
    return renderer->isValid() ? QIcon(new SvgImageEngine(std::move(renderer))) : QIcon();
}
