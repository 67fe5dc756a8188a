#include "stand/options.h"

#include <QCommandLineParser>
#include <QRegularExpression>

namespace {

constexpr int kLargestSide = 16384;

} // namespace

std::vector<CameraMode> standardModes()
{
    return {{{640, 480}, 30},   {{3264, 1836}, 15}, {{1280, 720}, 30},
            {{1920, 1080}, 30}, {{2592, 1944}, 15}, {{3264, 2448}, 15}};
}

std::vector<CameraMode> parseModes(const QString &text)
{
    static const QRegularExpression form(QStringLiteral("^(\\d+)x(\\d+)@(\\d+(?:\\.\\d+)?)$"));
    std::vector<CameraMode> modes;
    const QStringList parts = text.split(QLatin1Char(','));
    for (const QString &part : parts) {
        const QRegularExpressionMatch match = form.match(part.trimmed());
        const QSize size(match.captured(1).toInt(), match.captured(2).toInt());
        const double rate = match.captured(3).toDouble();
        const bool isPossible = size.width() >= 16 && size.height() >= 16 &&
                                size.width() <= kLargestSide && size.height() <= kLargestSide &&
                                rate > 0 && rate <= 240;
        if (!isPossible)
            return {};
        modes.push_back({size, rate});
    }
    return modes;
}

bool parseOptions(const QStringList &arguments, StandOptions &options, QString &fault)
{
    QCommandLineParser parser;
    parser.setApplicationDescription(QStringLiteral("A document camera stand in software."));
    const QCommandLineOption help = parser.addHelpOption();
    const QCommandLineOption scene(
        QStringLiteral("scene"),
        QStringLiteral("What lies under the camera: a built-in scene, a picture or a folder of "
                       "pictures. Given several times, the command next walks through them."),
        QStringLiteral("NAME|PATH"));
    const QCommandLineOption assist(QStringLiteral("assist"),
                                    QStringLiteral("Offers a second camera."));
    const QCommandLineOption assistScene(QStringLiteral("assist-scene"),
                                         QStringLiteral("What the second camera sees."),
                                         QStringLiteral("NAME|PATH"));
    const QCommandLineOption modes(QStringLiteral("modes"),
                                   QStringLiteral("Sizes and rates, e.g. 640x480@30,1920x1080@30."),
                                   QStringLiteral("LIST"));
    const QCommandLineOption id(QStringLiteral("id"),
                                QStringLiteral("Vendor and product ID of the main camera."),
                                QStringLiteral("VVVVPPPP"), options.id);
    const QCommandLineOption headless(QStringLiteral("headless"),
                                      QStringLiteral("Shows no window."));
    const QCommandLineOption die(QStringLiteral("die-with-parent"),
                                 QStringLiteral("Ends when the program that started it ends."));
    parser.addOptions({scene, assist, assistScene, modes, id, headless, die});
    if (!parser.parse(arguments)) {
        fault = parser.errorText();
        return false;
    }
    if (parser.isSet(help)) {
        options.help = parser.helpText();
        return true;
    }
    options.scenes = parser.values(scene);
    options.assistScene = parser.value(assistScene);
    options.id = parser.value(id);
    options.modes = parser.isSet(modes) ? parseModes(parser.value(modes)) : standardModes();
    options.hasAssist = parser.isSet(assist) || parser.isSet(assistScene);
    options.isHeadless = parser.isSet(headless);
    options.diesWithParent = parser.isSet(die);
    static const QRegularExpression idForm(QStringLiteral("^[0-9a-fA-F]{8}$"));
    if (options.modes.empty())
        fault = QStringLiteral("--modes wants a list like 640x480@30,1920x1080@30");
    else if (!idForm.match(options.id).hasMatch())
        fault = QStringLiteral("--id wants eight hexadecimal digits");
    else if (!parser.positionalArguments().isEmpty())
        fault = QStringLiteral("unknown argument %1").arg(parser.positionalArguments().first());
    return fault.isEmpty();
}
