#include "app/state.h"
#include "e2e/application.h"
#include "video/gr_view.h"
#include "video/video_thread.h"

#include <QComboBox>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QLabel>
#include <QSlider>
#include <QStackedWidget>

#include <gtest/gtest.h>

namespace {

const QStringList kTwoSizes{"--modes", "1280x720@30,1600x1200@20"};

TEST(Preview, FollowsMouseButtonsAndKeysExactly)
{
    Application app({kTwoSizes, {}, {}});
    ASSERT_TRUE(app.waitForPicture({1600, 1200}));
    auto *view = app.find<Gr_View>("graphicsView");
    const auto shown = [view] { return view->shownPicture().rect; };
    const auto *area = app.find<QWidget>("displayWidget");
    ASSERT_TRUE(waitFor([&] { return view->size() == area->size(); })) << "laid out";
    app.click("Bt_BestSize");
    const QRectF fitted = shown();
    EXPECT_TRUE(fitted.width() == view->width() || fitted.height() == view->height());
    EXPECT_NEAR(fitted.width() / fitted.height(), 4.0 / 3, 0.01);

    app.drag(view, view->rect().center(), view->rect().center() + QPoint(40, -24));
    EXPECT_EQ(shown(), fitted.translated(40, -24)) << "nothing lies over it";

    const QSizeF before = shown().size();
    app.click("Bt_LeftRotate");
    EXPECT_NEAR(shown().width(), before.height(), 1e-6);
    EXPECT_NEAR(shown().height(), before.width(), 1e-6);
    EXPECT_TRUE(app.waitForPicture({1200, 1600}));
    app.click("Bt_TrueSize");
    EXPECT_EQ(shown().height(), 1600);
    EXPECT_NEAR(shown().width(), 1200, 3.1) << "the fitted size has whole pixels, of three each";
    QTest::keyClick(&app.window(), Qt::Key_R, Qt::ControlModifier);
    EXPECT_TRUE(app.waitForPicture({1600, 1200}));
    QTest::keyClick(&app.window(), Qt::Key_0, Qt::ControlModifier);
    EXPECT_EQ(shown(), fitted);
}

TEST(Setting, ResolutionAndDeviceBoxesReopenTheCamera)
{
    Application app({kTwoSizes + QStringList("--assist"), {}, {}});
    ASSERT_TRUE(app.waitForPicture({1600, 1200}));
    auto *sizes = app.find<QComboBox>("resolutionComBox");
    app.click("bt_set");
    EXPECT_EQ(app.find<QStackedWidget>("stackedWidget")->currentIndex(), SettingMode);
    app.choose("resolutionComBox", sizes->findText("1280x720"));
    EXPECT_TRUE(app.waitForPicture({1280, 720}));
    app.click("Bt_RightRotate");
    app.choose("resolutionComBox", sizes->findText("1600x1200"));
    EXPECT_TRUE(app.waitForPicture({1200, 1600})) << "the new stream is turned like the old one";

    for (const int device : {1, 0}) {
        const int probes = app.log().count("getResolutionCount start");
        app.choose("deviceComBox", device);
        EXPECT_TRUE(waitFor([&] { return !isOpenCamera; }, 1500)) << "closed at once";
        EXPECT_TRUE(app.waitForPicture({1200, 1600})) << device;
        EXPECT_EQ(app.log().count("getResolutionCount start"), probes + 1);
        EXPECT_EQ(sizes->currentText(), "1600x1200");
    }
    app.click("bt_captrue");
    EXPECT_EQ(app.files(), QStringList("0.jpg"));
}

TEST(Setting, OutlivesARestartAndQualityChangesTheFiles)
{
    Application app({{"--modes", "1280x720@30"}, {}, {}});
    ASSERT_TRUE(app.waitForPicture());
    auto *slider = app.find<QSlider>("qualitySlider");
    QTest::keyClick(slider, Qt::Key_End);
    EXPECT_EQ(app.find<QLabel>("jpgQualityLabel")->text(), "100%");
    app.click("bt_captrue");
    QTest::keyClick(slider, Qt::Key_Home);
    app.click("bt_captrue");
    const auto bytes = [&](const char *name) { return QFileInfo(app.images() + name).size(); };
    EXPECT_GT(bytes("/0.jpg"), 4 * bytes("/1.jpg"));
    slider->setValue(37);
    app.choose("formatComBox", 2);
    app.choose("cropComBox", ManualCrop);
    app.choose("languageComBox", 1);
    app.choose("v_formatComBox", 2);
    app.close();
    app.open();
    EXPECT_EQ(app.find<QSlider>("qualitySlider")->value(), 37);
    EXPECT_EQ(app.find<QComboBox>("formatComBox")->currentIndex(), 2);
    EXPECT_EQ(app.find<QComboBox>("cropComBox")->currentIndex(), int(ManualCrop));
    EXPECT_EQ(app.find<QComboBox>("languageComBox")->currentIndex(), 1);
    EXPECT_EQ(fRecformat, "mp4");
    EXPECT_TRUE(waitFor([&] { return app.find<QLabel>("manualCutLabel")->isVisible(); }));
    ASSERT_TRUE(app.waitForPicture());
    app.click("bt_captrue");
    EXPECT_EQ(app.listed(), QStringList("2.png")) << "the number goes on within the process";
    app.choose("languageComBox", 0);
    app.close();
}

int children()
{
    QFile file(QString("/proc/self/task/%1/children").arg(getpid()));
    return file.open(QIODevice::ReadOnly) ? file.readAll().split(' ').size() : -1;
}

TEST(Closing, IsQuickAndLeavesNothingRunning)
{
    Application app({kTwoSizes + QStringList("--assist"), {}, {}});
    ASSERT_TRUE(app.waitForPicture());
    app.choose("cropComBox", AutomaticCrop);
    const auto isSearching = [] {
        const FramePtr frame = videoThread->lastFrame();
        return frame && frame->sequence > 5 && !frame->outlines.empty();
    };
    ASSERT_TRUE(waitFor(isSearching, 30000)) << "the search for documents has its workers";
    app.choose("cropComBox", NoCrop);
    app.close(); // what the libraries keep for good exists from now on
    const int threadsBefore = runningThreads(), socketsBefore = openSockets(),
              childrenBefore = children();
    const auto closeAndLook = [&](const char *when) {
        QElapsedTimer clock;
        clock.start();
        app.close();
        EXPECT_LT(clock.elapsed(), 3000) << when;
        EXPECT_TRUE(waitFor([&] { return runningThreads() <= threadsBefore; })) << when;
        EXPECT_EQ(openSockets(), socketsBefore) << when;
        EXPECT_EQ(children(), childrenBefore) << when;
        EXPECT_FALSE(isOpenCamera) << when;
    };
    app.open();
    closeAndLook("while the modes are asked for");
    app.open();
    ASSERT_TRUE(app.waitForPicture());
    app.click("bt_assistcam");
    app.click("bt_cam2_on");
    ASSERT_TRUE(waitFor([] { return isOpenCameraTwo.load(); }, 30000));
    app.choose("cropComBox", MultiGraphCrop);
    app.click("bt_wiseCaptrue");
    closeAndLook("with both cameras, outlines and page turning");
    isOpenAssistCam = false;
    app.open();
    ASSERT_TRUE(app.waitForPicture());
    ASSERT_TRUE(app.stand().command("stall main on"));
    closeAndLook("with a silent camera");
}

TEST(Unplugged, NoPictureStaysInSight)
{
    Application app({{"--modes", "1280x720@30", "--scene", "white"}, {}, {}});
    ASSERT_TRUE(app.waitForPicture());
    auto *view = app.find<Gr_View>("graphicsView");
    const auto brightest = [view] {
        const QImage seen = view->grab().toImage().scaled(40, 30);
        int most = 0;
        for (int y = 4; y < 26; ++y)
            for (int x = 0; x < 40; ++x)
                most = qMax(most, qGray(seen.pixel(x, y)));
        return most;
    };
    ASSERT_TRUE(waitFor([&] { return brightest() > 150; }));
    ASSERT_TRUE(app.stand().command("unplug main"));
    EXPECT_TRUE(waitFor([&] { return brightest() < 80; })) << "the old picture is not live";
    EXPECT_TRUE(app.find<QLabel>("hintLabel")->isVisible());
    EXPECT_TRUE(app.find<QLabel>("cameraStatusLabel")->text().isEmpty());
}

} // namespace
