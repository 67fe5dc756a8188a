#include "camera/probe_output.h"

bool isModeLine(const QString &line)
{
    return line.contains(QLatin1String("fps"));
}

ModeLine parseModeLine(const QString &line)
{
    const int tagEnd = line.indexOf(QLatin1Char(']'));
    const int at = line.lastIndexOf(QLatin1Char('@'));
    const int open = line.lastIndexOf(QLatin1Char('['));
    const int close = line.lastIndexOf(QLatin1Char(']'));
    const QString rates = line.mid(open + 1, close - open - 1);
    return {line.mid(tagEnd + 1, at - tagEnd - 1).trimmed(),
            rates.section(QLatin1Char(' '), 0, 0).section(QLatin1Char('.'), 0, 0)};
}
