#include "options.h"

#include "app/choices.h"

#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <QSet>

#include <cstdio>
#include <dirent.h>
#include <memory>

namespace {

const char *const kPictureFilters[] = {"*.jpg",  "*.jpeg", "*.png", "*.bmp", "*.tif", "*.tiff",
                                       "*.webp", "*.jfif", "*.jpe", "*.ppm", "*.pgm"};

const Choices &turns()
{
    static const Choices choices{{"", "", "0"}, {"", "", "90"}, {"", "", "180"}, {"", "", "270"}};
    return choices;
}

const Choices &codes()
{
    static const Choices choices{{"", "", "barcode"}, {"", "", "qr"}};
    return choices;
}

// "none|auto|multi".
QString optionsOf(const Choices &choices)
{
    QStringList options;
    for (const Choice &choice : choices)
        if (choice.option)
            options << QString::fromLatin1(choice.option);
    return options.join('|');
}

bool choose(const Choices &choices, const QString &option, int &value)
{
    for (size_t i = 0; i < choices.size(); ++i) {
        if (choices[i].option && option == QLatin1String(choices[i].option)) {
            value = static_cast<int>(i);
            return true;
        }
    }
    return false;
}

void declare(QCommandLineParser &parser)
{
    parser.setApplicationDescription(QStringLiteral(
        "Finds, cuts, cleans and saves the documents in still pictures, as captures from a camera "
        "would be. Prints one JSON object per picture."));
    parser.addOptions({
        {"crop",
         "Crop: none, auto (the largest document), multi (up to eight documents), smart (each "
         "sheet in perspective; the whole picture when none is seen clearly) or a rectangle in "
         "pixels of the turned picture.",
         optionsOf(cropChoices()) + "|manual=X,Y,W,H", "none"},
        {"colour", "Colour effect.", optionsOf(effectChoices()), "original"},
        {"trim", "Whiten dark margins."},
        {"quality", "JPEG quality, 1 to 100.", "N", "80"},
        {"rotate", "Turn each picture clockwise first.", optionsOf(turns()), "0"},
        {"code", "Name files after the code read from them.", optionsOf(codes())},
        {"format", "Kind of file.", optionsOf(pictureFormats()), "jpg"},
        {{"o", "output"}, "Folder for the files; it is made when missing.", "DIR"},
        {{"h", "help"}, "Show this text."},
    });
    parser.addPositionalArgument("image", "Pictures, or folders of pictures.", "IMAGE...");
}

bool parseCrop(const QString &text, CaptureOptions &capture)
{
    const QString manual = QStringLiteral("manual=");
    if (!text.startsWith(manual))
        return choose(cropChoices(), text, capture.cropMode);
    const QStringList parts = text.mid(manual.size()).split(QLatin1Char(','));
    int values[4] = {};
    bool good = parts.size() == 4;
    for (int i = 0; good && i < 4; ++i)
        values[i] = parts[i].toInt(&good);
    capture.cropMode = ManualCrop;
    capture.manualRect = {values[0], values[1], values[2], values[3]};
    return good && values[2] > 0 && values[3] > 0;
}

// Names in `folder` that are no UTF-8, which QDir passes over, as near as they can be shown.
QStringList unreadableNames(const QString &folder)
{
    QStringList names;
    const std::unique_ptr<DIR, int (*)(DIR *)> opened(opendir(QFile::encodeName(folder)), closedir);
    const dirent *entry = nullptr;
    while (opened && (entry = readdir(opened.get()))) {
        const QString name = QString::fromUtf8(entry->d_name);
        if (name.contains(QChar::ReplacementCharacter))
            names << name;
    }
    return names;
}

void leaveOut(const char *why, const QString &path)
{
    std::fprintf(stderr, "pictor-batch: left out, %s: %s\n", why, path.toLocal8Bit().constData());
}

QStringList picturesInFolder(const QDir &folder)
{
    QStringList filters, pictures;
    for (const char *filter : kPictureFilters)
        filters << QString::fromLatin1(filter);
    for (const QString &name :
         folder.entryList(QDir::Files, QDir::Name) + unreadableNames(folder.path()))
    {
        if (QDir::match(filters, name))
            pictures << folder.filePath(name);
        else
            leaveOut("no picture that can be read", folder.filePath(name));
    }
    return pictures;
}

QStringList picturesIn(const QStringList &arguments)
{
    QStringList pictures;
    QSet<QString> known;
    for (const QString &argument : arguments) {
        const bool isFolder = QFileInfo(argument).isDir();
        for (const QString &picture : isFolder ? picturesInFolder(argument) : QStringList{argument})
        {
            const QString path = QDir::cleanPath(QFileInfo(picture).absoluteFilePath());
            if (known.contains(path))
                leaveOut("named before", picture);
            else
                pictures << picture;
            known.insert(path);
        }
    }
    return pictures;
}

} // namespace

QString batchHelp()
{
    QCommandLineParser parser;
    declare(parser);
    return parser.helpText();
}

bool wantsBatchHelp(const QStringList &arguments)
{
    return arguments.contains(QStringLiteral("-h")) || arguments.contains(QStringLiteral("--help"));
}

QString parseBatchOptions(const QStringList &arguments, BatchOptions &options)
{
    QCommandLineParser parser;
    declare(parser);
    if (!parser.parse(arguments))
        return parser.errorText();
    const auto refused = [&parser](const char *option) {
        return QStringLiteral("--%1 does not take \"%2\"").arg(option, parser.value(option));
    };
    CaptureOptions &capture = options.capture;
    if (!parseCrop(parser.value("crop"), capture))
        return refused("crop");
    if (!choose(effectChoices(), parser.value("colour"), capture.save.colorMode))
        return refused("colour");
    int quarters = 0, unused = 0;
    if (!choose(turns(), parser.value("rotate"), quarters))
        return refused("rotate");
    options.rotate = 90 * quarters;
    options.format = parser.value("format");
    if (!choose(pictureFormats(), options.format, unused))
        return refused("format");
    capture.nameByCode = parser.isSet("code");
    if (capture.nameByCode && !choose(codes(), parser.value("code"), capture.codeType))
        return refused("code");
    bool isNumber = false;
    capture.save.quality = parser.value("quality").toInt(&isNumber);
    if (!isNumber || capture.save.quality < 1 || capture.save.quality > 100)
        return refused("quality");
    capture.save.trim = parser.isSet("trim");
    options.folder = parser.value("o");
    if (options.folder.isEmpty())
        return QStringLiteral("-o DIR is missing");
    options.images = picturesIn(parser.positionalArguments());
    return options.images.isEmpty() ? QStringLiteral("there are no pictures") : QString();
}
