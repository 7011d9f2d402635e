#include "shell/forms/paletteicon.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

// The resources stand in a static library, whose initialisers nothing else would pull in.
// The macro must stand outside a namespace.
static void initIcons()
{
    Q_INIT_RESOURCE(icons);
}

namespace shell {

namespace {

QColor lineColor(QIcon::Mode mode)
{
    const QPalette palette = QGuiApplication::palette();
    switch (mode) {
    case QIcon::Disabled:
        return palette.color(QPalette::Disabled, QPalette::ButtonText);
    case QIcon::Selected:
        return palette.color(QPalette::Active, QPalette::HighlightedText);
    default:
        return palette.color(QPalette::Active, QPalette::ButtonText);
    }
}

class PaletteIconEngine final : public QIconEngine
{
public:
    explicit PaletteIconEngine(const QString& name)
        : m_name(name)
    {
        QFile file(QStringLiteral(":/icons/%1.svg").arg(name));
        if (file.open(QIODevice::ReadOnly)) {
            m_svg = file.readAll();
        }
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        QByteArray svg = m_svg;
        svg.replace("currentColor", lineColor(mode).name().toLatin1());
        QSvgRenderer renderer(svg);
        renderer.setAspectRatioMode(Qt::KeepAspectRatio);
        renderer.render(painter, rect);
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        const QString key = QStringLiteral("icon/%1/%2x%3/%4")
                                .arg(m_name)
                                .arg(size.width())
                                .arg(size.height())
                                .arg(lineColor(mode).name());
        QPixmap pixmap;
        if (!QPixmapCache::find(key, &pixmap)) {
            pixmap = QPixmap(size);
            pixmap.fill(Qt::transparent);
            QPainter painter(&pixmap);
            paint(&painter, QRect(QPoint(0, 0), size), mode, state);
            painter.end();
            QPixmapCache::insert(key, pixmap);
        }
        return pixmap;
    }

    QIconEngine* clone() const override { return new PaletteIconEngine(*this); }
    QString key() const override { return QStringLiteral("palette"); }
    bool isNull() override { return m_svg.isEmpty(); }

private:
    QString m_name;
    QByteArray m_svg;
};

} // namespace

QIcon paletteIcon(const QString& name)
{
    initIcons();
    return QIcon(new PaletteIconEngine(name));
}

} // namespace shell
