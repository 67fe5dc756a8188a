#include "features/record_path.h"

#include "app/paths.h"

QString recordPath(const RecordNaming &naming)
{
    const QString extension = QLatin1Char('.') + naming.format;
    const QString timeName = naming.time.toString(QStringLiteral("yyyyMMddHHmmsszzz")) + extension;
    const QString folder = naming.folder + QLatin1Char('/');
    if (naming.text.isEmpty())
        return folder + timeName;
    if (naming.nameType == RecordCustom)
        return folder + naming.text + extension;
    if (naming.nameType == RecordAsFolder)
        return folder + naming.text + QLatin1Char('/') + timeName;
    return folder + timeName;
}

QString elapsedTimeText(int seconds)
{
    return SupplyZero(seconds / 3600) + QLatin1Char(':') + SupplyZero(seconds / 60 % 60) +
           QLatin1Char(':') + SupplyZero(seconds % 60);
}
