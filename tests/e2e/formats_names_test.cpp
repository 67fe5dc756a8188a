#include "app/state.h"
#include "e2e/application.h"
#include "support/file_size_limit.h"
#include "support/files.h"
#include "support/sheet_images.h"
#include "video/video_thread.h"

#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QLineEdit>

#include <gtest/gtest.h>
#include <opencv2/imgcodecs.hpp>

namespace {

const QStringList kEndings{"jpg", "bmp", "png", "tif", "pdf"};

Application::Setup small(const QStringList &more = {})
{
    return {QStringList{"--modes", "1280x720@30"} + more, {}, {}};
}

QSize sizeOf(const QString &path)
{
    const cv::Mat image = cv::imread(path.toStdString());
    return {image.cols, image.rows};
}

TEST(Formats, EachFileOpensAtTheFramesSize)
{
    Application app(small());
    ASSERT_TRUE(app.waitForPicture());
    for (int format = 0; format < kEndings.size(); ++format) {
        app.choose("formatComBox", format);
        app.click("bt_captrue");
    }
    EXPECT_EQ(app.listed(), QStringList({"0.jpg", "1.bmp", "2.png", "3.tif", "4.pdf"}));
    const QByteArray beginnings[] = {"\xff\xd8\xff", "BM", "\x89PNG", "II*"};
    for (int format = 0; format < 4; ++format) {
        const QString path = app.images() + '/' + app.listed().at(format);
        EXPECT_TRUE(readFile(path).startsWith(beginnings[format])) << qPrintable(path);
        EXPECT_EQ(sizeOf(path), QSize(1280, 720)) << qPrintable(path);
    }
    QByteArray report;
    EXPECT_EQ(run("qpdf", {"--check", app.images() + "/4.pdf"}, &report), 0) << report.constData();
    EXPECT_EQ(run("pdfinfo", {app.images() + "/4.pdf"}, &report), 0);
    EXPECT_TRUE(report.contains("1280 x 720 pts")) << report.constData();
    EXPECT_EQ(app.files(app.documents()), QStringList({"scanerlog", "scanner.ini"}))
        << "no temporary picture is left";
}

TEST(Names, AreTheTypedOnesAndReplaceRefuseOrMakeFolders)
{
    Application app(small());
    ASSERT_TRUE(app.waitForPicture());
    const auto captured = [&] {
        app.click("bt_captrue");
        return app.listed().last();
    };
    app.type("customTextEdit", "page");
    app.type("numTextEdit", "12");
    EXPECT_EQ(captured(), "page12.jpg");

    // A repeated name replaces the file; its entry stays one.
    app.choose("nameComBox", NameCustom);
    app.type("customTextEdit", "same");
    EXPECT_EQ(captured(), "same.jpg");
    const QByteArray first = readFile(app.images() + "/same.jpg");
    app.click("Bt_RightRotate");
    ASSERT_TRUE(app.waitForPicture({720, 1280}));
    EXPECT_EQ(captured(), "same.jpg");
    EXPECT_NE(readFile(app.images() + "/same.jpg"), first);
    EXPECT_EQ(app.listed().count("same.jpg"), 1);

    const QStringList before = app.files();
    for (const char *name : {"a/b", "../up", "c:d"}) {
        app.type("customTextEdit", name);
        app.click("bt_captrue");
        EXPECT_TRUE(app.message().contains("cannot be used")) << app.message().toStdString();
    }
    EXPECT_EQ(app.files(), before);

    app.choose("nameComBox", NameAsFolder);
    app.type("customTextEdit", "books");
    EXPECT_TRUE(QRegExp("\\d{17}\\.jpg").exactMatch(captured()));
    EXPECT_EQ(app.files(app.images() + "/books"), QStringList(app.listed().last()));
}

TEST(Names, NumbersGoOnWhereTheFolderEndsAndNothingIsReplacedWithoutATrace)
{
    Application app(small());
    app.close();
    for (const char *name : {"7.jpg", "page3_1.png", "20261123090000123.jpg", "5.txt"}) {
        QFile file(app.images() + '/' + name);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write("yesterday") > 0);
    }
    app.open();
    ASSERT_TRUE(app.waitForPicture());
    const auto *number = app.find<QLineEdit>("numTextEdit");
    EXPECT_EQ(number->text(), "8");
    ASSERT_TRUE(QDir(app.images()).mkdir("9.jpg"));
    const auto captured = [&] {
        app.click("bt_captrue");
        return app.listed().last();
    };
    EXPECT_EQ(captured(), "8.jpg");
    EXPECT_EQ(captured(), "10.jpg");
    EXPECT_TRUE(app.message().contains("9.jpg")) << app.message().toStdString();
    app.type("customTextEdit", "page");
    EXPECT_EQ(captured(), "page4.jpg") << "also before the field is left";

    app.choose("nameComBox", NameCustom);
    app.type("customTextEdit", "7");
    EXPECT_EQ(captured(), "7.jpg");
    EXPECT_EQ(app.message(), "The earlier 7.jpg is in the trash.");
    EXPECT_EQ(readFile(app.home() + "/.local/share/Trash/files/7.jpg"), "yesterday");
    EXPECT_EQ(sizeOf(app.images() + "/7.jpg"), QSize(1280, 720));
}

TEST(NamesByCode, FollowTheCodeAndNeverLeaveTheFolder)
{
    Application app({{"--modes", "1920x1080@30", "--scene", "barcode"}, {}, {}});
    const QString hostile = app.home() + "/hostile.png";
    const cv::Mat code = sheets::barcode(sheets::Code::Code128, "../../x/y", 6, 300);
    ASSERT_TRUE(cv::imwrite(hostile.toStdString(),
                            sheets::pageWith(code, {code.cols + 200, code.rows + 500})));
    ASSERT_TRUE(app.waitForPicture());
    app.choose("nameComBox", NameByBarcode);
    app.click("bt_captrue");
    ASSERT_EQ(app.files().size(), 1);
    EXPECT_TRUE(QRegExp("200417000028\\d\\.jpg").exactMatch(app.files().first()))
        << qPrintable(app.files().first());
    EXPECT_EQ(app.listed(), app.files());

    ASSERT_TRUE(app.showScene("scene " + hostile));
    app.click("bt_captrue");
    ASSERT_EQ(app.files().size(), 2) << app.message().toStdString();
    EXPECT_FALSE(QFile::exists(app.home() + "/x"));
    EXPECT_TRUE(app.message().contains("../../x/y")) << "the name that was changed is told";

    ASSERT_TRUE(app.showScene("scene page"));
    app.click("bt_captrue");
    ASSERT_EQ(app.listed().size(), 3);
    EXPECT_TRUE(QRegExp("\\d{17}\\.jpg").exactMatch(app.listed().last())) << "no code, the time";

    ASSERT_TRUE(app.showScene("scene qr"));
    app.click("qrcodeRadioBt");
    app.click("bt_captrue");
    ASSERT_EQ(app.listed().size(), 4);
    EXPECT_FALSE(QRegExp("\\d{17}\\.jpg").exactMatch(app.listed().last()));
    EXPECT_EQ(app.files().size(), 4);
}

struct Model
{
    const char *id, *size;
};

class EnlargedSizes : public testing::TestWithParam<Model>
{
};

TEST_P(EnlargedSizes, AreExactInEveryFormatAndOrientation)
{
    Application app(small({"--id", GetParam().id}));
    ASSERT_TRUE(app.waitForPicture({1280, 720}));
    const auto *sizes = app.find<QComboBox>("resolutionComBox");
    const int entry = sizes->findText(GetParam().size);
    ASSERT_GE(entry, 0);
    app.choose("resolutionComBox", entry);
    ASSERT_TRUE(app.waitForPicture({1280, 720})) << "opened at its own size";
    const QStringList sides = QString(GetParam().size).split('x');
    QSize size(sides[0].toInt(), sides[1].toInt());
    for (int turn = 0; turn < 2; ++turn) {
        for (int format = 0; format < 4; ++format) {
            app.choose("formatComBox", format);
            app.click("bt_captrue");
            const QString name = app.listed().last();
            EXPECT_EQ(sizeOf(app.images() + '/' + name), size) << qPrintable(name);
        }
        if (turn == 0)
            app.click("Bt_LeftRotate");
        ASSERT_TRUE(app.waitForPicture({720, 1280}));
        size.transpose();
    }
    app.choose("cropComBox", AutomaticCrop);
    app.choose("formatComBox", 0);
    app.click("bt_captrue");
    EXPECT_LT(sizeOf(app.images() + '/' + app.listed().last()).width(), 720)
        << "a sheet that was cut out is not enlarged";
    app.choose("cropComBox", NoCrop);
    // A chosen size of its own ends the enlarging.
    app.choose("resolutionComBox", sizes->findText("1280x720"));
    ASSERT_TRUE(app.waitForPicture({720, 1280}));
    app.click("bt_captrue");
    EXPECT_EQ(sizeOf(app.images() + '/' + app.listed().last()), QSize(720, 1280));
}

INSTANTIATE_TEST_SUITE_P(Enlarged, EnlargedSizes,
                         testing::Values(Model{"12090011", "3264x2448"},
                                         Model{"12090021", "3672x2856"}));

TEST(EnlargedSizesOfASecondCamera, AreNotOffered)
{
    Application app(small({"--id", "12090011", "--assist"}));
    ASSERT_TRUE(app.waitForPicture({1280, 720}));
    const auto *sizes = app.find<QComboBox>("resolutionComBox");
    ASSERT_GE(sizes->findText("3264x2448"), 0);
    app.choose("deviceComBox", 1);
    EXPECT_TRUE(waitFor([&] { return sizes->count() > 0 && sizes->findText("3264x2448") < 0; }));
}

TEST(OutputFolder, ThatIsAFileIsNamedInTheMessage)
{
    Application app({{"--modes", "1280x720@30"},
                     "Recformat=mov\nImgQuality=80\nSaveFolderPath=/dev/null\n",
                     {}});
    ASSERT_TRUE(app.waitForPicture());
    app.click("bt_captrue");
    EXPECT_TRUE(app.message().contains("/dev/null")) << app.message().toStdString();
}

TEST(FullDisk, InACaptureLeavesTheEarlierFileAndSaysSo)
{
    Application app(small({"--id", "12090011"}));
    ASSERT_TRUE(app.waitForPicture());
    app.choose("nameComBox", NameCustom);
    app.type("customTextEdit", "same");
    app.choose("formatComBox", 1);
    app.click("bt_captrue");
    const QStringList files("same.bmp");
    ASSERT_EQ(app.files(), files);
    const QByteArray before = readFile(app.images() + "/same.bmp");
    {
        const FileSizeLimit full(50000);
        app.click("bt_captrue");
        EXPECT_TRUE(app.message().contains("Not captured")) << app.message().toStdString();
        EXPECT_TRUE(readFile(app.images() + "/same.bmp") == before);
        EXPECT_EQ(app.files(), files) << "no half file";
    }
    // The frame fits on the disk, but not its enlargement.
    const auto *sizes = app.find<QComboBox>("resolutionComBox");
    app.choose("resolutionComBox", sizes->findText("3264x2448"));
    ASSERT_TRUE(app.waitForPicture());
    const FileSizeLimit full(10'000'000);
    app.click("bt_captrue");
    EXPECT_TRUE(app.message().contains("enlarged")) << app.message().toStdString();
    EXPECT_EQ(sizeOf(app.images() + "/same.bmp"), QSize(1280, 720));
    EXPECT_EQ(app.files(), files);
}

} // namespace
