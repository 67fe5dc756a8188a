#include "app/state.h"
#include "e2e/application.h"
#include "video/camtwo_view.h"
#include "video/gr_cam_item.h"
#include "video/gr_view.h"
#include "video/video_thread.h"
#include "video/video_two_thread.h"

#include <QComboBox>
#include <QFile>

#include <gtest/gtest.h>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

namespace {

constexpr int kJpg = 0, kBmp = 1;
const QStringList kBothCameras{"--modes", "1600x1200@20,1280x720@20", "--assist"};

class AssistCamera : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_app.waitForPicture({1600, 1200}));
        m_app.choose("formatComBox", kBmp);
        m_app.click("bt_assistcam");
        m_app.click("bt_cam2_on");
        ASSERT_TRUE(waitForAssist());
        m_view = m_app.find<CamTwo_View>("camTwoLabel");
    }

    static bool waitForAssist()
    {
        return waitFor([] { return videoTwoThread && videoTwoThread->lastFrame(); }, 10000);
    }

    /// The displayed main picture, in the coordinates of the assist view.
    QRect shown() const
    {
        const auto items = m_app.find<Gr_View>("graphicsView")->scene()->items();
        for (QGraphicsItem *item : items) {
            if (const auto *picture = dynamic_cast<Gr_CamItem *>(item))
                return picture->getShowGeometry();
        }
        return {};
    }

    /// Presses the button and reads the pictures of this capture, main or combined one first.
    std::vector<cv::Mat> capture()
    {
        const QStringList before = m_app.files();
        m_app.click("bt_captrue");
        std::vector<cv::Mat> pictures;
        for (const QString &name : m_app.files()) {
            const QString path = m_app.images() + '/' + name;
            if (!before.contains(name))
                pictures.push_back(cv::imread(path.toStdString()));
            if (!before.contains(name))
                QFile::remove(path);
        }
        return pictures;
    }

    /// Where the combined picture has to hold the assist picture, by the size and place of the view
    /// in the shown picture.
    cv::Rect expectedPlace(int position, cv::Size frame) const
    {
        const QRect picture = shown(), view = m_view->geometry();
        const double kx = frame.width / double(picture.width());
        const double ky = frame.height / double(picture.height());
        const int restX = picture.width() - view.width();
        const int restY = picture.height() - view.height();
        const QPoint places[] = {view.topLeft() - picture.topLeft(),
                                 {0, 0},
                                 {restX, 0},
                                 {restX / 2, restY / 2},
                                 {0, restY},
                                 {restX, restY}};
        const QPoint place = places[position];
        return {int(place.x() * kx), int(place.y() * ky), int(view.width() * kx),
                int(view.height() * ky)};
    }

    /// `tolerance`: mean difference of the bytes.
    void expectCombined(const cv::Mat &main, const cv::Mat &assist, int position,
                        double tolerance = 0)
    {
        m_app.choose("positionComBox", position);
        const std::vector<cv::Mat> pictures = capture();
        ASSERT_EQ(pictures.size(), 1U);
        cv::Mat expected = main.clone(), small;
        const cv::Rect place = expectedPlace(position, main.size());
        const cv::Rect visible = place & cv::Rect({}, main.size());
        cv::resize(assist, small, place.size(), 0, 0, cv::INTER_LINEAR);
        small(visible - place.tl()).copyTo(expected(visible));
        ASSERT_EQ(pictures[0].size(), expected.size());
        const double bytes = static_cast<double>(expected.total() * expected.elemSize());
        EXPECT_LE(cv::norm(pictures[0], expected, cv::NORM_L1) / bytes, tolerance)
            << "placement " << position << ", view " << m_view->width();
    }

    Application m_app{{kBothCameras, {}, {}}};
    CamTwo_View *m_view = nullptr;
};

TEST_F(AssistCamera, IsPastedExactlyWhereItsViewLies)
{
    const std::vector<cv::Mat> apart = capture();
    ASSERT_EQ(apart.size(), 2U) << "uncombined, each camera has its file";
    ASSERT_EQ(apart[0].size(), cv::Size(1600, 1200));
    ASSERT_EQ(apart[1].size(), cv::Size(1280, 720));
    m_app.click("checkBox");
    const QPoint start = m_view->geometry().center();
    m_app.drag(m_view->parentWidget(), start, start + QPoint(37, 23));
    for (const int size : {0, m_app.find<QComboBox>("sizeComBox")->count() - 1}) {
        m_app.choose("sizeComBox", size);
        for (int position = 0; position < 6; ++position)
            expectCombined(apart[0], apart[1], position);
    }
    m_app.click("bt_cam2_off"); // while it is on the picture is not turned
    m_app.click("Bt_RightRotate");
    ASSERT_TRUE(m_app.waitForPicture({1200, 1600}));
    m_app.click("bt_cam2_on");
    ASSERT_TRUE(waitForAssist());
    cv::Mat turned;
    cv::rotate(apart[0], turned, cv::ROTATE_90_CLOCKWISE);
    m_app.choose("sizeComBox", 2);
    for (int position = 0; position < 6; ++position)
        expectCombined(turned, apart[1], position);
    m_app.choose("formatComBox", kJpg);
    expectCombined(turned, apart[1], 0, 1.5);
}

TEST_F(AssistCamera, IsNamedByItsTimeWhereItIsAPageOfAPdf)
{
    ASSERT_TRUE(m_app.showScene("scene code128"));
    m_app.choose("nameComBox", NameByBarcode);
    m_app.click("checkBox");
    m_app.click("bt_captrue");
    ASSERT_EQ(m_app.listed().size(), 1);
    ASSERT_FALSE(QRegExp("\\d{17}\\..*").exactMatch(m_app.listed().first())) << "by its code";
    m_app.click("bt_multipdf");
    m_app.click("bt_captrue");
    ASSERT_EQ(m_app.listed("pdflistWidget").size(), 1);
    const QString page = m_app.listed("pdflistWidget").first();
    EXPECT_TRUE(QRegExp("\\d{17}\\..*").exactMatch(page) && m_app.files().contains(page));
}

TEST_F(AssistCamera, StaysOverThePicture)
{
    const auto dragTo = [&](QPoint target) {
        m_app.drag(m_view->parentWidget(), m_view->geometry().center(), target);
    };
    const QRect picture = shown();
    dragTo({picture.right() - 1, picture.bottom() - 1});
    m_app.window().resize(860, 660);
    EXPECT_TRUE(waitFor([&] { return shown().contains(m_view->geometry()); }));
    m_app.choose("resolutionComBox",
                 m_app.find<QComboBox>("resolutionComBox")->findText("1280x720"));
    ASSERT_TRUE(m_app.waitForPicture({1280, 720}));
    EXPECT_TRUE(waitFor([&] { return shown().contains(m_view->geometry()); }));
    EXPECT_TRUE(m_view->isVisible());
}

TEST_F(AssistCamera, SaysThatItIsSilentAndKeepsItsPlace)
{
    const auto drag = [&](QPoint to) {
        QTest::mousePress(m_view, Qt::LeftButton, Qt::NoModifier, {5, 5});
        QMouseEvent move(QEvent::MouseMove, to + QPoint(5, 5), Qt::LeftButton, Qt::LeftButton,
                         Qt::NoModifier);
        QApplication::sendEvent(m_view, &move);
        QTest::mouseRelease(m_view, Qt::LeftButton, Qt::NoModifier, {5, 5});
    };
    drag({5000, 40});
    const QPoint place = m_view->pos() - shown().topLeft();
    EXPECT_EQ(m_view->geometry().right(), shown().right());
    m_app.choose("languageComBox", 1);
    EXPECT_TRUE(waitFor([&] { return m_view->pos() - shown().topLeft() == place; }, 2000));
    m_app.window().resize(m_app.window().size() + QSize(80, 60));
    EXPECT_TRUE(waitFor([&] { return m_view->geometry().right() == shown().right(); }, 2000));
    m_app.choose("languageComBox", 0);

    const auto *turn = m_app.find<QWidget>("Bt_LeftRotate");
    EXPECT_FALSE(turn->isEnabled());
    EXPECT_EQ(turn->toolTip(), "Not while the assist camera is open");
    ASSERT_TRUE(m_app.stand().command("stall assist on"));
    const auto isSilent = [&] { return m_view->text().endsWith("sends no picture."); };
    EXPECT_TRUE(waitFor(isSilent, 10000));
    ASSERT_TRUE(m_app.stand().command("stall assist off"));
    EXPECT_TRUE(waitFor([&] { return m_view->text().isEmpty(); }, 10000));
    m_app.click("bt_cam2_off");
    EXPECT_TRUE(turn->isEnabled());
    EXPECT_TRUE(turn->toolTip().startsWith("Turn the picture"));
}

TEST_F(AssistCamera, IsSwitchedOnAndOffWithoutLeavingAnythingBehind)
{
    const auto switchOver = [&] {
        m_app.click("bt_cam2_off");
        EXPECT_FALSE(isOpenCameraTwo);
        EXPECT_FALSE(m_view->isVisible());
        m_app.click("bt_cam2_on");
        ASSERT_TRUE(waitForAssist());
    };
    switchOver(); // what the libraries keep for good exists from now on
    const int threads = runningThreads(), sockets = openSockets();
    const double memory = residentMegabytes();
    for (int i = 0; i < 10; ++i)
        switchOver();
    EXPECT_TRUE(waitFor([&] { return runningThreads() <= threads; }));
    EXPECT_LE(openSockets(), sockets);
#ifndef __SANITIZE_ADDRESS__ // keeps freed memory and tells leaks itself
    EXPECT_LT(residentMegabytes(), memory + 50) << "half of what ten leaked streams would hold";
#endif
}

TEST_F(AssistCamera, ComesBackAfterEitherCameraWasUnplugged)
{
    ASSERT_TRUE(m_app.stand().command("unplug main"));
    EXPECT_TRUE(waitFor([] { return !isOpenCamera && !isOpenCameraTwo; }));
    EXPECT_TRUE(waitFor([&] { return m_view->text() == "No camera!"; }));
    ASSERT_TRUE(m_app.stand().command("plug main"));
    ASSERT_TRUE(m_app.waitForPicture({1600, 1200}));
    EXPECT_TRUE(waitForAssist());
    EXPECT_EQ(capture().size(), 2U);

    ASSERT_TRUE(m_app.stand().command("unplug assist"));
    EXPECT_TRUE(waitFor([] { return !isOpenCameraTwo; }));
    ASSERT_TRUE(m_app.waitForPicture({1600, 1200}));
    EXPECT_EQ(capture().size(), 1U) << "the main picture goes on";
    ASSERT_TRUE(m_app.stand().command("plug assist")); // before the cameras are counted again
    EXPECT_TRUE(waitForAssist());
    EXPECT_EQ(capture().size(), 2U);

    ASSERT_TRUE(m_app.stand().command("unplug assist"));
    EXPECT_TRUE(waitFor([] { return allCameraCount == 1; }));
    ASSERT_TRUE(m_app.stand().command("plug assist"));
    EXPECT_TRUE(waitForAssist());
}

} // namespace
