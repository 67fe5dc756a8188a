#include "app/state.h"
#include "e2e/application.h"
#include "mainwindow/lists/image_list.h"
#include "video/gr_view.h"
#include "video/video_thread.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QImage>
#include <QImageReader>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

TEST(FirstStart, FindsTheCameraAndCapturesTheWholeFrame)
{
    Application app;
    ASSERT_TRUE(app.waitForPicture({3264, 2448})) << app.log().constData();

    QFile ini(app.documents() + "/scanner.ini");
    ASSERT_TRUE(ini.open(QIODevice::ReadOnly));
    const QByteArray written = ini.readAll();
    for (const char *line : {"[Set]", "colorMode=0", "cutMode=0", "NameType=0", "Imgformat=0",
                             "Recformat=mov", "ImgQuality=80", "Language=0"})
        EXPECT_TRUE(written.contains(line)) << line;
    EXPECT_TRUE(written.contains("SaveFolderPath=" + app.images().toUtf8()));

    const auto *sizes = app.find<QComboBox>("resolutionComBox");
    EXPECT_EQ(sizes->currentText(), "3264x2448");
    EXPECT_EQ(sizes->findText("640x480"), -1) << "too small";
    EXPECT_EQ(sizes->findText("3264x1836"), -1) << "dropped on purpose";
    EXPECT_GE(sizes->findText("1280x720"), 0);
    EXPECT_EQ(app.find<QComboBox>("deviceComBox")->count(), 1);

    app.click("bt_captrue");
    app.click("bt_captrue");
    EXPECT_EQ(app.files(), QStringList({"0.jpg", "1.jpg"}));
    QImageReader reader(app.images() + "/0.jpg");
    EXPECT_EQ(reader.size(), QSize(3264, 2448));
    EXPECT_EQ(reader.format(), "jpeg");
    const QImage saved =
        reader.read().scaled(64, 48, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    int darkest = 255, brightest = 0;
    for (int y = 0; y < 48; ++y)
        for (int x = 0; x < 64; ++x) {
            darkest = std::min(darkest, qGray(saved.pixel(x, y)));
            brightest = std::max(brightest, qGray(saved.pixel(x, y)));
        }
    EXPECT_LT(darkest, 90) << "the desk";
    EXPECT_GT(brightest, 180) << "the sheet";
    EXPECT_EQ(app.find<QListWidget>("listWidget1")->count(), 2);

    const QByteArray log = app.log();
    int at = 0;
    for (const char *line :
         {"start scanner", "getCameraCount start", "myDevCount:1", "getResolutionCount start",
          "scanner run ...", "ToGetResCountResult start", "openCamera start", "run start"})
    {
        at = log.indexOf(line, at);
        EXPECT_GE(at, 0) << line << " is missing or too early in\n" << log.constData();
    }
}

TEST(Unplugging, ThePictureComesBackEachTime)
{
    Application app({{"--assist"}, {}, {"unplug assist"}});
    ASSERT_TRUE(app.waitForPicture());
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(app.stand().command("unplug main"));
        ASSERT_TRUE(waitFor([] { return !isOpenCamera; })) << "round " << round;
        app.click("bt_captrue");
        EXPECT_TRUE(app.files().isEmpty()) << "an old picture must not be saved";
        ASSERT_TRUE(waitFor([] { return allCameraCount == 0; }));
        EXPECT_FALSE(app.find<QWidget>("Bt_Focus")->isEnabled());
        ASSERT_TRUE(app.stand().command("plug main"));
        ASSERT_TRUE(app.waitForPicture({3264, 2448}, 5000)) << "round " << round;
    }
    app.choose("resolutionComBox", app.find<QComboBox>("resolutionComBox")->findText("1920x1080"));
    app.click("Bt_RightRotate");
    app.click("Bt_ZoomIn");
    const auto *view = app.find<Gr_View>("graphicsView");
    const QRectF shown = view->shownPicture().rect;
    // So fast that the number of cameras never seems to change; then for a camera beside it.
    for (const QStringList &commands :
         {QStringList{"unplug main", "plug main"}, QStringList{"plug assist"}})
    {
        for (const QString &command : commands)
            ASSERT_TRUE(app.stand().command(command));
        ASSERT_TRUE(waitFor([] { return !isOpenCamera; }));
        ASSERT_TRUE(app.waitForPicture({1080, 1920})) << "as the user had chosen for this camera";
        EXPECT_EQ(view->shownPicture().rect, shown);
    }
    EXPECT_EQ(app.find<QComboBox>("resolutionComBox")->currentText(), "1920x1080");
    app.click("bt_captrue");
    EXPECT_EQ(app.files().size(), 1);
}

TEST(Unplugging, DuringTheProbe)
{
    Application app;
    ASSERT_TRUE(app.stand().command("unplug main")); // the probe has just been started
    ASSERT_TRUE(app.stand().command("plug main"));   // before the cameras are counted again
    EXPECT_TRUE(app.waitForPicture({3264, 2448}));
}

TEST(NoCamera, TheBoxClosesItselfAndAPluggedCameraIsFound)
{
    bool boxSeen = false;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        for (QWidget *widget : QApplication::topLevelWidgets())
            if (const auto *box = qobject_cast<QMessageBox *>(widget))
                if (box->isVisible() && box->text() == "No camera!") {
                    boxSeen = true;
                    EXPECT_TRUE(pMainWin->isVisible()) << "the window shows first";
                }
    });
    watch.start(50);
    QElapsedTimer clock;
    clock.start();
    // An assist camera alone does not count.
    Application app({{"--assist"}, {}, {"unplug main"}});
    EXPECT_TRUE(waitFor([&] { return boxSeen && !QApplication::activeModalWidget(); }));
    EXPECT_LT(clock.elapsed(), 6000);
    EXPECT_EQ(app.find<QComboBox>("deviceComBox")->count(), 0);
    ASSERT_TRUE(app.stand().command("plug main"));
    EXPECT_TRUE(app.waitForPicture());
    EXPECT_EQ(app.find<QComboBox>("deviceComBox")->count(), 2);
}

TEST(BadStream, SilenceIsToldAndNothingIsCaptured)
{
    Application app;
    ASSERT_TRUE(app.waitForPicture({3264, 2448}));
    ASSERT_TRUE(app.stand().command("stall main on"));
    ASSERT_TRUE(waitFor([] { return !videoThread->currentFrame(); }));
    EXPECT_TRUE(videoThread->lastFrame());
    app.click("bt_captrue");
    EXPECT_TRUE(app.files().isEmpty()) << "a picture of the page before must not be saved";
    const auto *hint = app.find<QLabel>("hintLabel");
    EXPECT_TRUE(waitFor([&] { return hint->text().contains("sends no picture"); }));
    ASSERT_TRUE(app.stand().command("stall main off"));
    EXPECT_TRUE(app.waitForPicture({3264, 2448}));
    EXPECT_TRUE(waitFor([&] { return hint->isHidden(); }));
}

TEST(BadFolders, CapturesAreRefusedWithAReasonAndNothingIsLost)
{
    Application app({{}, "ImgQuality=80\nRecformat=mov\n", {}});
    ASSERT_TRUE(app.waitForPicture());
    app.click("bt_captrue");
    ASSERT_EQ(app.files(), QStringList("0.jpg"));

    ASSERT_TRUE(QDir(app.images()).removeRecursively());
    const auto *list = app.find<ImageListWidget>("listWidget1");
    for (int press = 0; press < 2; ++press) {
        app.click("bt_captrue");
        EXPECT_FALSE(QFile::exists(app.images()));
        EXPECT_FALSE(waitFor([&] { return app.message().isEmpty(); }, 300)) << "time to read it";
        EXPECT_EQ(app.listed(), QStringList({"0.jpg", "1.jpg"}));
        EXPECT_TRUE(list->isMissing(1));
    }
    ASSERT_TRUE(QDir().mkpath(app.images()));
    app.click("bt_captrue");
    EXPECT_EQ(app.listed(), QStringList({"0.jpg", "1.jpg"}));
    EXPECT_FALSE(list->isMissing(1)) << "the same number once it works";

    ASSERT_TRUE(QDir(app.images()).removeRecursively());
    app.close();
    app.open();
    EXPECT_TRUE(QFileInfo(app.images()).isDir()) << "the next start makes it again";
    ASSERT_TRUE(app.waitForPicture());

    SaveFolderPath.clear();
    app.click("bt_captrue");
    EXPECT_TRUE(app.files().isEmpty());
    EXPECT_FALSE(QFile::exists("/0.jpg"));
    EXPECT_FALSE(QFile::exists("/1.jpg"));
}

TEST(Merge, PutsTheCapturedPagesIntoOnePicture)
{
    Application app({{"--modes", "1280x720@30", "--scene", "white"}, {}, {}});
    ASSERT_TRUE(app.waitForPicture());
    app.click("bt_merge");
    EXPECT_TRUE(app.find<QAbstractButton>("twoPageRadioBt")->isChecked());
    EXPECT_EQ(mergePages, 2);
    EXPECT_FALSE(app.find<QWidget>("labelPage3")->isEnabled());
    app.click("threePageRadioBt");
    app.choose("formatComBox", 2);
    const auto shown = [&](const char *label) {
        return !app.find<QLabel>(label)->pixmap(Qt::ReturnByValue).isNull();
    };
    app.click("bt_captrue");
    ASSERT_TRUE(app.showScene("scene dark"));
    app.click("bt_captrue");
    EXPECT_TRUE(shown("labelPage1") && shown("labelPage2") && !shown("labelPage3"));

    ASSERT_TRUE(app.stand().command("unplug main"));
    ASSERT_TRUE(waitFor([] { return !isOpenCamera; }));
    app.click("bt_captrue");
    EXPECT_EQ(mergeCount, 2) << "a page that was not captured does not count";
    EXPECT_FALSE(app.message().isEmpty());
    ASSERT_TRUE(app.stand().command("plug main"));
    ASSERT_TRUE(app.waitForPicture());

    ASSERT_TRUE(app.showScene("scene white"));
    app.click("horizontalRadioBt");
    app.click("bt_captrue");
    ASSERT_TRUE(waitFor([&] { return app.listed() == QStringList("0.png"); }));
    EXPECT_EQ(app.files(), QStringList("0.png")) << "the pages themselves are gone";
    EXPECT_FALSE(shown("labelPage1"));
    const QImage merged(app.images() + "/0.png");
    ASSERT_EQ(merged.size(), QSize(3 * 1280 + 40, 720 + 20));
    const auto middle = [&](int page) { return qGray(merged.pixel(10 + page * 1290 + 640, 370)); };
    EXPECT_GT(middle(0), middle(1) + 60);
    EXPECT_GT(middle(2), middle(1) + 60);
    EXPECT_EQ(merged.pixel(1295, 370), qRgb(255, 255, 255)) << "between the pages";

    app.click("twoPageRadioBt");
    app.choose("nameComBox", NameAsFolder);
    app.type("customTextEdit", "set");
    for (int page = 0; page < 2; ++page)
        app.click("bt_captrue");
    EXPECT_TRUE(waitFor([&] { return app.files(app.images() + "/set").size() == 1; }));

    ASSERT_TRUE(app.showScene("scene three"));
    app.choose("cropComBox", MultiGraphCrop);
    const int before = app.listed().size();
    app.click("bt_captrue");
    EXPECT_EQ(app.listed().size(), before + 2) << "the smaller ones are captures of their own";
}

} // namespace
