#include "mainwindow/look/themed_icon.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

// The resources of a static library are only linked in when somebody asks for them by name.
static void initPictorResources()
{
    Q_INIT_RESOURCE(pictor);
}

namespace {

constexpr char kStrokeInFile[] = "#000000"; // the one colour of the outlines that follows the theme
constexpr qreal kDisabledOpacity = 0.38;

class ThemedIconEngine : public QIconEngine
{
public:
    ThemedIconEngine(const QString &name, const QColor &fixedColor)
        : m_name(name)
        , m_fixedColor(fixedColor)
    {
        QFile file(QStringLiteral(":/icon/icon/%1.svg").arg(name));
        if (file.open(QIODevice::ReadOnly))
            m_outline = file.readAll();
    }

    void paint(QPainter *painter, const QRect &rect, QIcon::Mode mode, QIcon::State) override
    {
        QByteArray drawing = m_outline;
        drawing.replace(kStrokeInFile, colorFor(mode).name().toLatin1());
        QSvgRenderer renderer(drawing);
        renderer.setAspectRatioMode(Qt::KeepAspectRatio);
        painter->save();
        if (mode == QIcon::Disabled)
            painter->setOpacity(painter->opacity() * kDisabledOpacity);
        renderer.render(painter, rect);
        painter->restore();
    }

    QPixmap pixmap(const QSize &size, QIcon::Mode mode, QIcon::State state) override
    {
        const QString key = QStringLiteral("pictor-%1-%2-%3x%4-%5")
                                .arg(m_name, colorFor(mode).name())
                                .arg(size.width())
                                .arg(size.height())
                                .arg(mode);
        QPixmap drawn;
        if (QPixmapCache::find(key, &drawn))
            return drawn;
        drawn = QPixmap(size);
        drawn.fill(Qt::transparent);
        QPainter painter(&drawn);
        painter.setRenderHint(QPainter::Antialiasing);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        painter.end();
        QPixmapCache::insert(key, drawn);
        return drawn;
    }

    QIconEngine *clone() const override { return new ThemedIconEngine(*this); }

private:
    QColor colorFor(QIcon::Mode mode) const
    {
        if (m_fixedColor.isValid())
            return m_fixedColor;
        const QPalette palette = QGuiApplication::palette();
        return mode == QIcon::Selected ? palette.color(QPalette::HighlightedText)
                                       : palette.color(QPalette::Active, QPalette::ButtonText);
    }

    QString m_name;
    QColor m_fixedColor;
    QByteArray m_outline;
};

} // namespace

QIcon themedIcon(const QString &name, const QColor &fixedColor)
{
    initPictorResources();
    return QIcon(new ThemedIconEngine(name, fixedColor));
}
