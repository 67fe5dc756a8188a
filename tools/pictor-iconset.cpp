// pictor-iconset SVG FOLDER: draws an icon in the sizes and with the names that macOS packs into
// one icon file.
#include <QDir>
#include <QGuiApplication>
#include <QImage>
#include <QPainter>
#include <QSvgRenderer>

#include <cstdio>

namespace {

bool draw(QSvgRenderer &drawing, int pixels, const QString &path)
{
    QImage icon(pixels, pixels, QImage::Format_ARGB32);
    icon.fill(Qt::transparent);
    QPainter painter(&icon);
    drawing.render(&painter);
    painter.end();
    return icon.save(path);
}

} // namespace

int main(int argc, char **argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    QSvgRenderer drawing(arguments.value(1));
    if (arguments.size() != 3 || !drawing.isValid() || !QDir().mkpath(arguments[2])) {
        std::fputs("usage: pictor-iconset SVG FOLDER\n", stderr);
        return 2;
    }
    for (const int size : {16, 32, 128, 256, 512}) {
        const QString name = QStringLiteral("%1/icon_%2x%2").arg(arguments[2]).arg(size);
        if (!draw(drawing, size, name + QStringLiteral(".png")) ||
            !draw(drawing, 2 * size, name + QStringLiteral("@2x.png")))
            return 1;
    }
    return 0;
}
