#include "app/state.h"
#include "e2e/application.h"
#include "video/gr_view.h"
#include "video/video_thread.h"

#include <QElapsedTimer>
#include <QSerialPort>
#include <QSignalSpy>

#include <gtest/gtest.h>

#include <random>

namespace {

const QByteArray kCapture = "ffaac581e41b4c", kFit = "ffaac581e8174c", kRestart = "ffaac581e6194c",
                 kZoomIn = "ffaac581e01f4c";

const Application::Setup kSmall{{"--modes", "1280x720@30"}, {}, {}};

class HardwareButtons : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_app.waitForPicture()) << m_app.log().constData();
        ASSERT_TRUE(serial && serial->isOpen());
        m_view = m_app.find<Gr_View>("graphicsView");
    }

    bool press(const QString &button) { return m_app.stand().command("press " + button); }

    /// Sends bytes in one write and waits until the window has read something.
    bool send(const QByteArray &hex)
    {
        QSignalSpy read(serial, &QSerialPort::readyRead);
        return m_app.stand().command("bytes " + hex) && waitFor([&] { return !read.isEmpty(); });
    }

    bool waitForAngle(int angle)
    {
        const QSize size = angle % 180 == 0 ? QSize(1280, 720) : QSize(720, 1280);
        return waitFor([&] { return m_view->rotateAngle() == angle; }) &&
               m_app.waitForPicture(size);
    }

    bool waitForZoom(double zoom)
    {
        return waitFor([&] { return qAbs(m_view->zoomFactor() - zoom) < 1e-9; });
    }

    Application m_app{kSmall};
    Gr_View *m_view = nullptr;
};

TEST_F(HardwareButtons, EachDoesItsWork)
{
    ASSERT_TRUE(press("rotate-left"));
    EXPECT_TRUE(waitForAngle(270));
    ASSERT_TRUE(press("rotate-right"));
    EXPECT_TRUE(waitForAngle(0));
    const double before = m_view->zoomFactor();
    ASSERT_TRUE(press("zoom-in"));
    EXPECT_TRUE(waitForZoom(before + 0.05));
    ASSERT_TRUE(press("true-size"));
    EXPECT_TRUE(waitFor([&] { return m_view->shownPicture().rect.width() == 1280; }));
    ASSERT_TRUE(press("fit"));
    EXPECT_TRUE(waitForZoom(1));
    ASSERT_TRUE(press("zoom-out"));
    EXPECT_TRUE(waitForZoom(0.95));
    ASSERT_TRUE(press("capture"));
    EXPECT_TRUE(waitFor([&] { return m_app.files() == QStringList("0.jpg"); }));

    const auto openings = [&] { return m_app.log().count("openCamera start"); };
    const int openedBefore = openings();
    ASSERT_TRUE(press("restart"));
    EXPECT_TRUE(waitFor([&] { return openings() == openedBefore + 1; }));
    EXPECT_TRUE(m_app.waitForPicture({1280, 720}));
}

TEST_F(HardwareButtons, FramesOfOneReadActInFixedOrderAndBrokenOnesNever)
{
    ASSERT_TRUE(send(kFit + kZoomIn + kZoomIn)); // the other way round the zoom would stay
    EXPECT_TRUE(waitForZoom(1));
    ASSERT_TRUE(send(kRestart + kCapture)); // the other way round there would be no picture
    ASSERT_TRUE(m_app.waitForCaptures());
    EXPECT_EQ(m_app.files(), QStringList("0.jpg"));
    ASSERT_TRUE(m_app.waitForPicture());

    ASSERT_TRUE(send("ffaac581e41c4c")); // wrong check byte
    ASSERT_TRUE(send(kCapture.left(8)));
    ASSERT_TRUE(send(kCapture.mid(8)));
    std::minstd_rand random(7);
    QByteArray noise;
    for (int i = 0; i < 1 << 20; ++i)
        noise.append(char(random() >> 8));
    ASSERT_TRUE(send(noise.toHex()));
    // A button that arrives behind the noise may be cut by a read: press until it acts.
    for (int i = 0; i < 50 && m_view->zoomFactor() < 1.01; ++i) {
        ASSERT_TRUE(press("zoom-in"));
        waitForZoom(1.05);
    }
    EXPECT_EQ(m_view->rotateAngle(), 0);
    EXPECT_EQ(m_app.files(), QStringList("0.jpg"));
    EXPECT_TRUE(isOpenCamera);
}

TEST_F(HardwareButtons, AnAdapterThatComesBackIsFound)
{
    for (int round = 0; round < 2; ++round) {
        ASSERT_TRUE(m_app.stand().command("unplug buttons"));
        ASSERT_TRUE(waitFor([] { return !serial || !serial->isOpen(); }));
        EXPECT_FALSE(press("capture"));
        ASSERT_TRUE(m_app.stand().command("plug buttons"));
        QElapsedTimer clock;
        clock.start();
        ASSERT_TRUE(waitFor([] { return serial && serial->isOpen(); }));
        EXPECT_LT(clock.elapsed(), 3500);
        ASSERT_TRUE(press("capture"));
        EXPECT_TRUE(waitFor([&] { return m_app.files().size() == round + 1; }));
    }
}

TEST(HardwareButtonsWithAssist, MovingTheMainPictureRestsWhileTheOtherLiesOverIt)
{
    Application app({{"--modes", "1280x720@30", "--assist"}, {}, {}});
    ASSERT_TRUE(app.waitForPicture());
    app.click("bt_assistcam");
    app.click("bt_cam2_on");
    ASSERT_TRUE(waitFor([] { return isOpenCameraTwo.load(); }, 10000)) << app.log().constData();
    for (const char *button : {"rotate-left", "rotate-right", "zoom-in", "zoom-out", "true-size"})
        ASSERT_TRUE(app.stand().command(QString("press %1").arg(button)));
    ASSERT_TRUE(app.stand().command("press capture"));
    EXPECT_TRUE(waitFor([&] { return app.files().size() == 2; })) << "main and assist picture";
    const auto *view = app.find<Gr_View>("graphicsView");
    EXPECT_EQ(view->rotateAngle(), 0);
    EXPECT_EQ(view->zoomFactor(), 1);
    for (const char *name :
         {"Bt_LeftRotate", "Bt_RightRotate", "Bt_ZoomIn", "Bt_ZoomOut", "Bt_TrueSize"})
        EXPECT_FALSE(app.find<QWidget>(name)->isEnabled()) << name;
}

} // namespace
