#include "stand/scene.h"

#include "stand/art.h"

#include <QDir>
#include <QFileInfo>
#include <QImageReader>

#include <algorithm>

namespace {

// A picture laid on the desk fills this part of it at most.
const QSizeF kLargestPicture(360, 297);

const QSizeF kA4(210, 297), kReceipt(80, 190), kCard(86, 54), kPostcard(150, 105), kBook(300, 210),
    kLabel(180, 120);

constexpr int kBookOpenings = 40;

Sheet::Art numbered(QImage (*draw)(double, int), int seed)
{
    return [draw, seed](double pixelsPerMm) { return draw(pixelsPerMm, seed); };
}

std::vector<Sheet> threeDocuments()
{
    return {{numbered(drawReceipt, 1), kReceipt, {-155, -25}, -5},
            {numbered(drawPostcard, 2), kPostcard, {20, -85}, 4},
            {numbered(drawCard, 3), kCard, {60, 85}, -12, 1}};
}

std::vector<Sheet> nineCards()
{
    std::vector<Sheet> sheets;
    for (int i = 0; i < 9; ++i) {
        const int row = i / 3, column = i % 3;
        const QPointF centre(140.0 * (column - 1), 105.0 * (row - 1));
        sheets.push_back({numbered(drawCard, i + 1), kCard, centre, (i * 37 % 40) - 20.0, 1});
    }
    return sheets;
}

Scene bookOpenAt(int opening)
{
    return {QStringLiteral("book"), {{numbered(drawBook, opening), kBook, {0, 0}, 1.5, 9}}};
}

std::vector<Scene> wholeBook()
{
    std::vector<Scene> openings;
    for (int opening = 1; opening <= kBookOpenings; ++opening)
        openings.push_back(bookOpenAt(opening));
    return openings;
}

std::vector<Scene> builtInScenes()
{
    return {{QStringLiteral("page"), {{numbered(drawTextPage, 1), kA4, {-4, 2}, 6.5}}},
            {QStringLiteral("three"), threeDocuments()},
            {QStringLiteral("nine"), nineCards()},
            {QStringLiteral("receipt"), {{numbered(drawReceipt, 4), kReceipt, {10, 0}, -9}}},
            {QStringLiteral("card"), {{numbered(drawCard, 5), kCard, {-12, 8}, 14, 1}}},
            {QStringLiteral("postcard"), {{numbered(drawPostcard, 1), kPostcard, {8, 0}, -6, 1}}},
            {QStringLiteral("barcode"), {{drawEanSheet, kLabel, {0, 0}, 4}}},
            {QStringLiteral("code128"), {{drawCode128Sheet, kLabel, {0, 0}, -3}}},
            {QStringLiteral("qr"), {{drawQrSheet, kLabel, {0, 0}, 8}}},
            bookOpenAt(1),
            {QStringLiteral("white"), {{drawPalePage, kA4, {0, 0}, -3}}, Scene::Desk::White},
            {QStringLiteral("dark"),
             {{numbered(drawTextPage, 1), kA4, {-4, 2}, 6.5}},
             Scene::Desk::Dark,
             0.06},
            {QStringLiteral("empty"), {}}};
}

// The file is read when it is drawn, so that a folder of thousands costs no memory.
QImage drawPicture(const QString &path, QSizeF size, double pixelsPerMm)
{
    QImageReader reader(path);
    reader.setAutoTransform(true);
    const QImage picture = reader.read();
    if (picture.isNull())
        return QImage(); // it was removed or damaged since
    return picture.scaled((size * pixelsPerMm).toSize().expandedTo({1, 1}), Qt::IgnoreAspectRatio,
                          Qt::SmoothTransformation);
}

bool sceneFromFile(const QString &path, Scene &scene)
{
    const QImageReader reader(path);
    QSize pixels = reader.size();
    if (pixels.isEmpty())
        return false;
    if (reader.transformation() & QImageIOHandler::TransformationRotate90)
        pixels.transpose();
    const QSizeF size = QSizeF(pixels).scaled(kLargestPicture, Qt::KeepAspectRatio);
    const Sheet::Art art = [path, size](double ppm) { return drawPicture(path, size, ppm); };
    scene = {QFileInfo(path).fileName(), {{art, size, {0, 0}, 3}}};
    return true;
}

} // namespace

QStringList sceneNames()
{
    QStringList names;
    for (const Scene &scene : builtInScenes())
        names << scene.name;
    return names;
}

std::vector<Scene> findScenes(const QString &nameOrPath, QString *why)
{
    if (nameOrPath == QLatin1String("book"))
        return wholeBook();
    for (const Scene &scene : builtInScenes()) {
        if (scene.name == nameOrPath)
            return {scene};
    }
    std::vector<Scene> scenes;
    Scene scene;
    const QFileInfo info(nameOrPath);
    if (info.isDir()) {
        const QStringList files = QDir(nameOrPath).entryList(QDir::Files, QDir::Name);
        for (const QString &file : files) {
            if (sceneFromFile(nameOrPath + QLatin1Char('/') + file, scene))
                scenes.push_back(scene);
        }
    } else if (info.exists() && sceneFromFile(nameOrPath, scene)) {
        scenes.push_back(scene);
    }
    if (scenes.empty() && why)
        *why = info.exists() ? QStringLiteral("no picture in %1").arg(nameOrPath)
                             : QStringLiteral("no scene or file is called %1").arg(nameOrPath);
    return scenes;
}
