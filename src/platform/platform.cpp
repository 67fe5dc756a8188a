#include "platform/platform.h"

#include <QtGlobal>

#ifdef Q_OS_MACOS
#include "platform/avfoundation_platform.h"
using SystemPlatform = AvfoundationPlatform;
#else
#include "platform/stand_platform.h"
using SystemPlatform = StandPlatform;
#endif

#include <algorithm>

namespace {

std::unique_ptr<Platform> &installed()
{
    static std::unique_ptr<Platform> current = std::make_unique<SystemPlatform>();
    return current;
}

} // namespace

bool Platform::isButtonAdapter(const SerialPortEntry &port) const
{
    return port.name.contains(QLatin1String("tty.")) &&
           port.name.contains(QLatin1String("usbserial"));
}

bool Platform::canFocus(int) const
{
    return false;
}

bool Platform::focus(int)
{
    return false;
}

Platform &platform()
{
    return *installed();
}

void setPlatform(std::unique_ptr<Platform> replacement)
{
    installed() = replacement ? std::move(replacement) : std::make_unique<SystemPlatform>();
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
