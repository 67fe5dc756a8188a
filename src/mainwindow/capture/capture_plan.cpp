#include "mainwindow/capture/capture_plan.h"

#include "app/state.h"
#include "mainwindow/look/window_text.h"

namespace {

QString fileNameFor(const CaptureSettings &settings, FileNaming &naming)
{
    const QString name = naming.nameFor(settings.nameType, settings.fields);
    if (settings.mode == MultipdfMode)
        return naming.nameFor(NameByTime, settings.fields) + QStringLiteral(".jpg");
    return name + extensionFor(settings.imageFormat);
}

CaptureList listFor(const CaptureSettings &settings)
{
    return settings.mode == MultipdfMode ? CaptureList::PdfPages : CaptureList::CapturedFiles;
}

} // namespace

CaptureStep planMainCapture(const CaptureSettings &settings, FileNaming &naming)
{
    CaptureStep step;
    step.name = fileNameFor(settings, naming);
    QString folder = settings.folder;
    if (settings.nameType == NameAsFolder) {
        folder = nameFolder(settings.folder, settings.fields.custom);
        if (folder != settings.folder)
            step.folder = folder;
    }
    step.path = folder + QLatin1Char('/') + step.name;
    step.picture = settings.combinesAssist && settings.isAssistOpen ? CapturePicture::Combined
                                                                    : CapturePicture::Main;
    step.needsManualRect = settings.cropMode == ManualCrop;
    step.readsCode = settings.nameType == NameByBarcode && settings.mode != MultipdfMode;
    step.enlarges = extensionFor(settings.imageFormat) != QLatin1String(".pdf");
    step.addsExtraFiles = step.picture == CapturePicture::Main;
    step.list = listFor(settings);
    return step;
}

std::optional<CaptureStep> planAssistCapture(const CaptureSettings &settings, FileNaming &naming,
                                             const QString &mainPath)
{
    if (!settings.isAssistOpen || settings.combinesAssist)
        return std::nullopt;
    CaptureStep step;
    step.picture = CapturePicture::Assist;
    step.name = fileNameFor(settings, naming);
    const QString folder = settings.folder + QLatin1Char('/');
    if (folder + step.name == mainPath)
        step.name.insert(step.name.lastIndexOf(QLatin1Char('.')), QStringLiteral("_assist"));
    step.path = folder + step.name;
    step.list = listFor(settings);
    return step;
}

QString captureRefusal(const CaptureSettings &settings)
{
    if (settings.folder.isEmpty())
        return WindowText::tr(
            "No folder is chosen for the captures. Choose one under Setting, Save path.");
    if (settings.mode == MultipdfMode && settings.nameType != NameAsFolder)
        return QString();
    return namingProblem(settings.nameType, settings.fields);
}
