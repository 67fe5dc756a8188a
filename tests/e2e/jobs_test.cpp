#include "app/state.h"
#include "e2e/application.h"
#include "mainwindow/capture/capture_queue.h"
#include "video/video_thread.h"

#include <QAbstractButton>
#include <QDir>
#include <QLineEdit>
#include <QMessageBox>
#include <QTimer>

#include <gtest/gtest.h>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <future>

// Captures are written beside the window, as they were pressed, whatever happens meanwhile.

namespace {

const Application::Setup kSmall{{"--modes", "1280x720@30"}, {}, {}};

class Jobs : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_app.waitForPicture()) << m_app.log().constData();
        m_queue = m_app.find<CaptureQueue>("");
    }

    void TearDown() override { letGo(); }

    // Nothing is written from now on, as on a disk that does not answer.
    void hold()
    {
        m_queue->add(
            0,
            [held = m_held.get_future().share()] {
                held.wait();
                return CaptureOutcome();
            },
            [](const CaptureOutcome &) {});
    }

    void letGo()
    {
        if (!m_isLetGo)
            m_held.set_value();
        m_isLetGo = true;
    }

    // With a picture that no press before had.
    FramePtr press()
    {
        const uint64_t before = m_sequence;
        EXPECT_TRUE(waitFor([&] { return videoThread->lastFrame()->sequence > before; }));
        const FramePtr frame = videoThread->lastFrame();
        m_sequence = frame->sequence;
        m_app.find<QAbstractButton>("bt_captrue")->click();
        return frame;
    }

    Application m_app{kSmall};
    CaptureQueue *m_queue = nullptr;
    std::promise<void> m_held;
    bool m_isLetGo = false;
    uint64_t m_sequence = 0;
};

TEST_F(Jobs, FivePressesAreFiveFilesOfFiveFramesWhateverHappensMeanwhile)
{
    m_app.choose("formatComBox", 2);
    hold();
    std::vector<FramePtr> frames;
    frames.reserve(5);
    for (int i = 0; i < 5; ++i)
        frames.push_back(press());
    EXPECT_EQ(m_app.listed(), QStringList({"0.png", "1.png", "2.png", "3.png", "4.png"}));
    EXPECT_TRUE(m_app.files().isEmpty());

    m_app.choose("colorComBox", ColorGray);
    m_app.choose("formatComBox", 1);
    m_app.choose("cropComBox", SmartCrop);
    m_app.choose("languageComBox", 1);
    m_app.type("customTextEdit", "later");
    m_app.click("Bt_RightRotate");
    m_app.click("bt_multipdf");
    ASSERT_TRUE(m_app.stand().command("unplug main"));
    ASSERT_TRUE(waitFor([] { return !isOpenCamera; }));
    letGo();
    ASSERT_TRUE(m_app.waitForCaptures());
    EXPECT_EQ(m_app.files(), QStringList({"0.png", "1.png", "2.png", "3.png", "4.png"}));
    for (int i = 0; i < 5; ++i) {
        const QString file = QStringLiteral("%1/%2.png").arg(m_app.images()).arg(i);
        cv::Mat expected;
        const FramePtr whole = CameraThread::wholeFrame(frames[size_t(i)], 0);
        cv::cvtColor(whole->pixels, expected, cv::COLOR_RGB2BGR);
        const cv::Mat saved = cv::imread(file.toStdString());
        ASSERT_EQ(saved.size(), expected.size());
        EXPECT_EQ(cv::norm(saved, expected, cv::NORM_INF), 0) << i;
    }
    m_app.choose("languageComBox", 0);
}

TEST_F(Jobs, AFullQueueRefusesWithAWordAndTakesNoNumber)
{
    hold();
    for (int i = 0; i < CaptureQueue::kFramesMax; ++i)
        press();
    EXPECT_EQ(m_app.message(), "");
    press();
    EXPECT_TRUE(m_app.message().contains("still being written")) << qPrintable(m_app.message());
    letGo();
    ASSERT_TRUE(m_app.waitForCaptures());
    EXPECT_EQ(m_app.files().size(), CaptureQueue::kFramesMax);
    m_app.click("bt_captrue");
    EXPECT_EQ(m_app.files().size(), CaptureQueue::kFramesMax + 1);
    EXPECT_TRUE(m_app.files().contains("8.jpg"));
}

TEST_F(Jobs, FailedCapturesSaySoAndLeaveNoHole)
{
    m_app.click("bt_captrue");
    hold();
    press();
    press();
    const QString away = m_app.images() + ".away";
    ASSERT_TRUE(QDir().rename(m_app.images(), away));
    letGo();
    ASSERT_TRUE(m_app.waitForCaptures());
    EXPECT_TRUE(m_app.message().contains("Not captured")) << qPrintable(m_app.message());
    EXPECT_EQ(m_app.find<QLineEdit>("numTextEdit")->text(), "0");
    ASSERT_TRUE(QDir().rename(away, m_app.images()));
    m_app.click("bt_captrue");
    EXPECT_EQ(m_app.files(), QStringList({"0.jpg", "1.jpg"}));
}

TEST_F(Jobs, AMergeIsMadeAsItsLastPageWasPressed)
{
    m_app.click("bt_merge");
    m_app.type("customTextEdit", "old");
    hold();
    press();
    press();
    m_app.type("customTextEdit", "new");
    m_app.choose("formatComBox", 2);
    m_app.choose("colorComBox", ColorGray);
    m_app.click("horizontalRadioBt");
    letGo();
    ASSERT_TRUE(m_app.waitForCaptures());
    EXPECT_EQ(m_app.files(), QStringList("old0.jpg"));
    const cv::Mat merged = cv::imread((m_app.images() + "/old0.jpg").toStdString());
    ASSERT_EQ(merged.size(), cv::Size(1280 + 20, 2 * 720 + 30)) << "one below the other";
    cv::Mat channels[3];
    cv::split(merged, channels);
    EXPECT_GT(cv::norm(channels[0], channels[2], cv::NORM_INF), 30) << "in colour";
    m_app.click("verticalRadioBt");
}

TEST_F(Jobs, APageOfAMergeThatIsLostWhilePagesAreTurnedIsListedAsLost)
{
    m_app.click("bt_merge");
    hold();
    m_app.window().wiseCaptrueEvent(true);
    ASSERT_TRUE(waitFor([&] { return !m_queue->isIdle() && m_queue->count() == 2; }));
    const QString away = m_app.images() + ".away";
    ASSERT_TRUE(QDir().rename(m_app.images(), away));
    letGo();
    ASSERT_TRUE(m_app.waitForCaptures());
    ASSERT_EQ(m_app.listed().size(), 1);
    EXPECT_TRUE(m_app.listed().front().startsWith("Not captured, "));
}

TEST_F(Jobs, ClosingFinishesThemAndASecondCloseAsks)
{
    hold();
    press();
    EXPECT_FALSE(m_app.window().close());
    EXPECT_TRUE(m_app.message().contains("still being written")) << qPrintable(m_app.message());
    QTimer::singleShot(0, [this] {
        const auto boxes = m_app.window().findChildren<QMessageBox *>();
        ASSERT_EQ(boxes.size(), 1);
        boxes.front()->button(QMessageBox::Cancel)->click();
    });
    EXPECT_FALSE(m_app.window().close());
    press();
    EXPECT_TRUE(m_app.message().contains("about to end")) << qPrintable(m_app.message());
    letGo();
    EXPECT_TRUE(waitFor([&] { return !m_app.window().isVisible(); }));
    EXPECT_EQ(m_app.files(), QStringList("0.jpg"));
}

} // namespace
