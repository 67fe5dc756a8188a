#include "stand/scene.h"

#include "stand/art.h"

#include <QDir>
#include <QFileInfo>
#include <QImageReader>

#include <algorithm>

namespace {

// A picture laid on the desk fills this part of it at most.
const QSizeF kLargestPicture(360, 297);

Scene pageScene()
{
    const Sheet page{[](double ppm) { return drawTextPage(ppm, 1); }, {210, 297}, {-4, 2}, 6.5};
    return {QStringLiteral("page"), {page}};
}

Scene emptyScene()
{
    return {QStringLiteral("empty"), {}};
}

struct BuiltIn
{
    const char *name;
    Scene (*make)();
};

const BuiltIn kBuiltIn[] = {{"page", pageScene}, {"empty", emptyScene}};

// The file is read when it is drawn, so that a folder of thousands costs no memory.
QImage drawPicture(const QString &path, QSizeF size, double pixelsPerMm)
{
    QImageReader reader(path);
    reader.setAutoTransform(true);
    const QImage picture = reader.read();
    if (picture.isNull())
        return blankSheet(size, pixelsPerMm, Qt::gray);
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
    for (const BuiltIn &entry : kBuiltIn)
        names << QLatin1String(entry.name);
    return names;
}

std::vector<Scene> findScenes(const QString &nameOrPath, QString *why)
{
    const auto entry = std::find_if(std::begin(kBuiltIn), std::end(kBuiltIn), [&](const auto &one) {
        return nameOrPath == QLatin1String(one.name);
    });
    if (entry != std::end(kBuiltIn))
        return {entry->make()};
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
