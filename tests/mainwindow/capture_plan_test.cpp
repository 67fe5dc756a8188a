#include "app/state.h"
#include "mainwindow/capture/capture_plan.h"

#include <gtest/gtest.h>

namespace {

enum Assist { Off, Beside, Combined };

struct Row
{
    int mode, format, nameType, crop;
    Assist assist;
    const char *step;       ///< as described below
    const char *assistStep; ///< null: no separate assist picture
};

const Row kRows[] = {
    {DocumentMode, 0, NameByNumber, NoCrop, Off, "page12.jpg enlarged extra", nullptr},
    {DocumentMode, 2, NameByTime, ManualCrop, Off, "#.png cut enlarged extra", nullptr},
    {DocumentMode, -1, NameCustom, AutomaticCrop, Off, "page.jpg enlarged extra", nullptr},
    {DocumentMode, 4, NameAsFolder, MultiGraphCrop, Off, "page/#.pdf extra", nullptr},
    {RecordMode, 1, NameByBarcode, NoCrop, Off, "#.bmp code enlarged extra", nullptr},
    {DocumentMode, 0, NameByBarcode, NoCrop, Combined, "#.jpg combined code enlarged", nullptr},
    {MultipdfMode, 1, NameCustom, NoCrop, Off, "#.jpg enlarged extra page", nullptr},
    {MultipdfMode, 4, NameByBarcode, NoCrop, Off, "#.jpg extra page", nullptr},
    {MultipdfMode, 0, NameAsFolder, NoCrop, Beside, "page/#.jpg enlarged extra page",
     "#.jpg assist page"},
    {DocumentMode, 3, NameByNumber, NoCrop, Beside, "page12.tif enlarged extra",
     "page13.tif assist"},
    {DocumentMode, 0, NameCustom, NoCrop, Beside, "page.jpg enlarged extra",
     "page_assist.jpg assist"},
    {DocumentMode, 0, NameByBarcode, NoCrop, Beside, "#.jpg code enlarged extra",
     "#_assist.jpg assist"},
};

// The path below the output folder, # for the time stamp, and what is done with the picture.
std::string described(const CaptureStep &step)
{
    EXPECT_EQ(step.name, step.path.section('/', -1));
    QString text = step.path;
    text.replace("20310409070503021", "#").replace("/out/", "");
    text += step.picture == CapturePicture::Combined ? " combined" : "";
    text += step.picture == CapturePicture::Assist ? " assist" : "";
    text += step.needsManualRect ? " cut" : "";
    text += step.readsCode ? " code" : "";
    text += step.enlarges ? " enlarged" : "";
    text += step.addsExtraFiles ? " extra" : "";
    text += step.list == CaptureList::PdfPages ? " page" : "";
    return text.toStdString();
}

} // namespace

TEST(CapturePlan, LeadsWhereTheSettingsSay)
{
    for (const Row &row : kRows) {
        SCOPED_TRACE(row.step);
        CaptureSettings settings;
        settings.mode = row.mode;
        settings.imageFormat = row.format;
        settings.nameType = row.nameType;
        settings.cropMode = row.crop;
        settings.isAssistOpen = row.assist != Off;
        settings.combinesAssist = row.assist == Combined;
        settings.folder = QStringLiteral("/out");
        settings.fields = {QStringLiteral("page"), QStringLiteral("12")};
        int counter = 0;
        FileNaming naming(counter, [] { return QDateTime({2031, 4, 9}, {7, 5, 3, 21}); });
        const CaptureStep step = planMainCapture(settings, naming);
        EXPECT_EQ(described(step), row.step);
        EXPECT_EQ(step.folder, row.nameType == NameAsFolder ? "/out/page" : QString());

        const QString shown = naming.advance(row.nameType);
        if (!shown.isNull())
            settings.fields.number = shown;
        const auto assist = planAssistCapture(settings, naming, step.path);
        ASSERT_EQ(assist.has_value(), row.assistStep != nullptr);
        if (assist) {
            EXPECT_EQ(described(*assist), row.assistStep);
        }
    }
}

TEST(CaptureRefusal, NamesWhatIsWrongBeforeAnythingIsWritten)
{
    const auto isRefused = [](const char *folder, int mode, int nameType, const char *custom) {
        CaptureSettings settings;
        settings.folder = folder;
        settings.mode = mode;
        settings.nameType = nameType;
        settings.fields = {custom, "1"};
        return !captureRefusal(settings).isEmpty();
    };
    EXPECT_TRUE(isRefused("", DocumentMode, NameCustom, "books"));
    EXPECT_TRUE(isRefused("/out", DocumentMode, NameCustom, "a/b"));
    EXPECT_FALSE(isRefused("/out", MultipdfMode, NameCustom, "a/b")) << "not used for pages";
    EXPECT_TRUE(isRefused("/out", MultipdfMode, NameAsFolder, "a/b")) << "the folder is";
    EXPECT_FALSE(isRefused("/out", MultipdfMode, NameAsFolder, "books"));
}
