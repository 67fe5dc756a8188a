#include "mainwindow/look/about_text.h"

#include "app/paths.h"
#include "mainwindow/look/window_text.h"

extern "C" {
#include <libavutil/avutil.h>
}

#include <QDir>

#include <hpdf.h>
#include <opencv2/core/utility.hpp>
#include <zbar.h>

#include <ZXVersion.h>

namespace {

QString zbarVersion()
{
    unsigned major = 0, minor = 0, patch = 0;
    zbar::zbar_version(&major, &minor, &patch);
    return QStringLiteral("%1.%2.%3").arg(major).arg(minor).arg(patch);
}

QString row(const QString &name, const QString &value)
{
    return QStringLiteral("<tr><td><b>%1</b>&nbsp;&nbsp;</td><td>%2</td></tr>")
        .arg(name.toHtmlEscaped(), value.toHtmlEscaped().replace('\n', QStringLiteral("<br>")));
}

} // namespace

QStringList libraryVersions()
{
    return {QStringLiteral("Qt ") + QLatin1String(qVersion()),
            QStringLiteral("OpenCV ") + QString::fromStdString(cv::getVersionString()),
            QStringLiteral("FFmpeg ") + QLatin1String(av_version_info()),
            QStringLiteral("zbar ") + zbarVersion(),
            QStringLiteral("zxing-cpp %1.%2.%3")
                .arg(ZXING_VERSION_MAJOR)
                .arg(ZXING_VERSION_MINOR)
                .arg(ZXING_VERSION_PATCH),
            QStringLiteral("libharu ") + QLatin1String(HPDF_GetVersion())};
}

QString aboutText()
{
    return QStringLiteral("<h3>Pictor %1</h3><p>%2</p><table>%3%4%5</table>")
        .arg(QStringLiteral(PICTOR_VERSION),
             WindowText::tr("Captures documents with a USB document camera.").toHtmlEscaped(),
             row(WindowText::tr("Libraries"), libraryVersions().join('\n')),
             row(WindowText::tr("Log"),
                 QDir::toNativeSeparators(documentsPath() + QStringLiteral("/scanerlog"))),
             row(WindowText::tr("Settings"), QDir::toNativeSeparators(settingsPath())));
}
