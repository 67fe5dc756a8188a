#include "app/state.h"
#include "mainwindow/capture_plan.h"

#include <gtest/gtest.h>

#include <ostream>

namespace {

const QDateTime kNow(QDate(2031, 4, 9), QTime(7, 5, 3, 21));
const QString kStamp = QStringLiteral("20310409070503021");

enum Assist { Off, Beside, Combined };

struct Row
{
    const char *what;
    int mode, format, nameType, crop;
    Assist assist;
    const char *path; ///< below the output folder "/out"; # stands for the time stamp
    CapturePicture picture;
    bool manualRect, code, enlarges, extra;
    CaptureList list;
    const char *assistPath; ///< null: no separate assist picture
};

std::ostream &operator<<(std::ostream &out, const Row &row)
{
    return out << row.what;
}

CaptureSettings settingsOf(const Row &row)
{
    CaptureSettings settings;
    settings.mode = row.mode;
    settings.imageFormat = row.format;
    settings.nameType = row.nameType;
    settings.cropMode = row.crop;
    settings.isAssistOpen = row.assist != Off;
    settings.combinesAssist = row.assist == Combined;
    settings.folder = QStringLiteral("/out");
    settings.fields = {QStringLiteral("page"), QStringLiteral("12")};
    return settings;
}

QString expected(const char *path)
{
    return QStringLiteral("/out/") + QString::fromUtf8(path).replace(QLatin1Char('#'), kStamp);
}

constexpr auto Main = CapturePicture::Main;
constexpr auto Joined = CapturePicture::Combined;
constexpr auto Files = CaptureList::CapturedFiles;
constexpr auto Pages = CaptureList::PdfPages;

const Row kRows[] = {
    {"number with prefix", DocumentMode, 0, NameByNumber, NoCrop, Off, "page12.jpg", Main, false,
     false, true, true, Files, nullptr},
    {"time, png, manual crop", DocumentMode, 2, NameByTime, ManualCrop, Off, "#.png", Main, true,
     false, true, true, Files, nullptr},
    {"own name, unknown format", DocumentMode, -1, NameCustom, AutomaticCrop, Off, "page.jpg", Main,
     false, false, true, true, Files, nullptr},
    {"own folder, pdf is never enlarged", DocumentMode, 4, NameAsFolder, MultiGraphCrop, Off,
     "page/#.pdf", Main, false, false, false, true, Files, nullptr},
    {"barcode", RecordMode, 1, NameByBarcode, NoCrop, Off, "#.bmp", Main, false, true, true, true,
     Files, nullptr},
    {"barcode from the combined picture", DocumentMode, 0, NameByBarcode, NoCrop, Combined, "#.jpg",
     Joined, false, true, true, false, Files, nullptr},
    {"pages for a PDF are JPEG named by time", MultipdfMode, 1, NameCustom, NoCrop, Off, "#.jpg",
     Main, false, false, true, true, Pages, nullptr},
    {"no code is read for a page", MultipdfMode, 4, NameByBarcode, NoCrop, Off, "#.jpg", Main,
     false, false, false, true, Pages, nullptr},
    {"a page in the own folder, assist page not", MultipdfMode, 0, NameAsFolder, NoCrop, Beside,
     "page/#.jpg", Main, false, false, true, true, Pages, "#.jpg"},
    {"assist beside takes the next number", DocumentMode, 3, NameByNumber, NoCrop, Beside,
     "page12.tif", Main, false, false, true, true, Files, "page13.tif"},
    {"assist beside an own name does not replace it", DocumentMode, 0, NameCustom, NoCrop, Beside,
     "page.jpg", Main, false, false, true, true, Files, "page_assist.jpg"},
    {"assist beside a barcode has a name by time of its own", DocumentMode, 0, NameByBarcode,
     NoCrop, Beside, "#.jpg", Main, false, true, true, true, Files, "#_assist.jpg"},
};

class CapturePlan : public testing::TestWithParam<Row>
{
};

} // namespace

TEST_P(CapturePlan, LeadsWhereTheSettingsSay)
{
    const Row &row = GetParam();
    int counter = 0;
    FileNaming naming(counter, [] { return kNow; });
    CaptureSettings settings = settingsOf(row);
    const CaptureStep step = planMainCapture(settings, naming);

    EXPECT_EQ(step.path.toStdString(), expected(row.path).toStdString());
    EXPECT_EQ(step.name, step.path.mid(step.path.lastIndexOf(QLatin1Char('/')) + 1));
    EXPECT_EQ(step.folder, row.nameType == NameAsFolder ? QStringLiteral("/out/page") : QString());
    EXPECT_EQ(step.picture, row.picture);
    EXPECT_EQ(step.needsManualRect, row.manualRect);
    EXPECT_EQ(step.readsCode, row.code);
    EXPECT_EQ(step.enlarges, row.enlarges);
    EXPECT_EQ(step.addsExtraFiles, row.extra);
    EXPECT_EQ(step.list, row.list);

    const QString shown = naming.advance(row.nameType);
    if (!shown.isNull())
        settings.fields.number = shown;
    const auto assist = planAssistCapture(settings, naming, step.path);
    ASSERT_EQ(assist.has_value(), row.assistPath != nullptr);
    if (!assist)
        return;
    EXPECT_EQ(assist->path.toStdString(), expected(row.assistPath).toStdString());
    EXPECT_EQ(assist->picture, CapturePicture::Assist);
    EXPECT_EQ(assist->list, row.list);
    EXPECT_FALSE(assist->readsCode || assist->enlarges || assist->addsExtraFiles);
}

INSTANTIATE_TEST_SUITE_P(Table, CapturePlan, testing::ValuesIn(kRows));

TEST(CaptureRefusal, NamesWhatIsWrongBeforeAnythingIsWritten)
{
    CaptureSettings settings;
    settings.fields = {QStringLiteral("a/b"), QStringLiteral("1")};
    settings.nameType = NameCustom;
    EXPECT_FALSE(captureRefusal(settings).isEmpty()) << "no output folder";
    settings.folder = QStringLiteral("/out");
    EXPECT_FALSE(captureRefusal(settings).isEmpty()) << "a name with a separator";
    settings.mode = MultipdfMode;
    EXPECT_TRUE(captureRefusal(settings).isEmpty()) << "the name is not used for pages";
    settings.nameType = NameAsFolder;
    EXPECT_FALSE(captureRefusal(settings).isEmpty()) << "the folder is";
    settings.fields.custom = QStringLiteral("books");
    EXPECT_TRUE(captureRefusal(settings).isEmpty());
}
