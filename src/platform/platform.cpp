#include "platform/platform.h"

#include <QCoreApplication>
#include <QtGlobal>

#if defined(Q_OS_MACOS)
#include "platform/avfoundation_platform.h"
#elif defined(Q_OS_LINUX)
#include "platform/joined_platform.h"
#include "platform/stand_platform.h"
#include "platform/v4l2_platform.h"
#else
#include "platform/stand_platform.h"
#endif

#include <algorithm>

namespace {

std::unique_ptr<Platform> systemPlatform()
{
#if defined(Q_OS_MACOS)
    return std::make_unique<AvfoundationPlatform>();
#elif defined(Q_OS_LINUX)
    std::vector<std::unique_ptr<Platform>> parts;
    parts.push_back(std::make_unique<V4l2Platform>());
    parts.push_back(std::make_unique<StandPlatform>());
    return std::make_unique<JoinedPlatform>(std::move(parts));
#else
    return std::make_unique<StandPlatform>();
#endif
}

std::unique_ptr<Platform> &installed()
{
    static std::unique_ptr<Platform> current = systemPlatform();
    return current;
}

} // namespace

bool Platform::isButtonAdapter(const SerialPortEntry &port) const
{
    return port.name.contains(QLatin1String("tty.")) &&
           port.name.contains(QLatin1String("usbserial"));
}

QStringList Platform::deviceFolders() const
{
    return {};
}

SoundInput Platform::soundInput(int) const
{
    return {};
}

int Platform::microphoneOf(int) const
{
    return -1;
}

bool Platform::canFocus(int) const
{
    return false;
}

bool Platform::focus(int)
{
    return false;
}

QList<CameraControl> Platform::controls(int) const
{
    return {};
}

bool Platform::setControl(int, CameraControl::Kind, int)
{
    return false;
}

OpenProblem Platform::openProblem(int) const
{
    return {};
}

Platform &platform()
{
    return *installed();
}

void setPlatform(std::unique_ptr<Platform> replacement)
{
    installed() = replacement ? std::move(replacement) : systemPlatform();
}

QString quotedArgument(const QString &text)
{
    const bool splits = text.isEmpty() || std::any_of(text.begin(), text.end(), [](QChar c) {
                            return c.isSpace() || c == QLatin1Char('"');
                        });
    if (!splits)
        return text;
    // Inside quotes three of them in a row stand for one.
    QString escaped = text;
    escaped.replace(QLatin1Char('"'), QLatin1String("\"\"\""));
    return QLatin1Char('"') + escaped + QLatin1Char('"');
}

QString pictorProbeCommand(int index)
{
    const QString probe = QCoreApplication::applicationDirPath() + QStringLiteral("/pictor-probe");
    return quotedArgument(probe) + QStringLiteral(" %1").arg(index);
}
