#include "app/state.h"
#include "e2e/application.h"
#include "features/wise_captrue_thread.h"
#include "mainwindow/lists/image_list.h"
#include "stand/render.h"
#include "stand/scene.h"
#include "support/media_probe.h"
#include "video/video_thread.h"

#include <QComboBox>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>

#include <gtest/gtest.h>
#include <opencv2/imgcodecs.hpp>

#include <atomic>
#include <memory>
#include <thread>

namespace {

const QByteArray kByNumber("NameType=0\nImgQuality=80\n");

constexpr int kTurnPeriodMs = 4200;
constexpr int kHandBeforeTurnMs = 400;
constexpr int kShotWithinMs = 2500; ///< 2300 for the shot, the rest for writing the file

bool isLongRun()
{
    return qEnvironmentVariableIsSet("PICTOR_LONG_TESTS");
}

// Mean difference in gray levels, apart from the brightness of the light.
double difference(const cv::Mat &a, const cv::Mat &b)
{
    cv::Mat change;
    cv::subtract(a, b, change, cv::noArray(), CV_32FC3);
    change -= cv::mean(change);
    return cv::norm(change, cv::NORM_L1) / static_cast<double>(change.total() * 3);
}

// The files 0.jpg, 1.jpg, ... show the openings of the stand's book in order, each at rest, from
// its beginning again after the last.
void expectBook(const Application &app, int pages, cv::Size size)
{
    std::vector<cv::Mat> openings;
    for (const Scene &scene : findScenes("book"))
        openings.push_back(renderScene(scene, size).bgr);
    for (int i = 0; i < pages; ++i) {
        const QString file = QStringLiteral("%1/%2.jpg").arg(app.images()).arg(i);
        const cv::Mat shot = cv::imread(QFile::encodeName(file).toStdString());
        ASSERT_EQ(shot.size(), size) << qPrintable(file);
        const auto distance = [&](int k) {
            return difference(shot, openings[static_cast<size_t>(k) % openings.size()]);
        };
        for (const int neighbour : {i - 1, i + 1}) {
            if (neighbour >= 0 && neighbour < pages) {
                EXPECT_LT(1.5 * distance(i), distance(neighbour)) << qPrintable(file);
            }
        }
    }
}

// Puts the window into the recording mode, naming the next file `name`.
void prepareRecording(Application &app, const QString &name)
{
    app.click("bt_record");
    app.find<QComboBox>("v_formatComBox")->setCurrentIndex(2);
    app.find<QComboBox>("v_nameComBox")->setCurrentIndex(1);
    app.find<QLineEdit>("v_customTextEdit")->setText(name);
}

bool waitUntilRecording(const QString &path)
{
    return waitFor([&] { return QFileInfo(path).size() > 100 * 1024; }, 15000);
}

QList<QMessageBox *> boxes(const Application &app)
{
    return app.window().findChildren<QMessageBox *>();
}

// How pages are turned under the camera.
struct Turning
{
    QSize size;
    bool withHands; ///< a quick hand over each page that lies still, and light that flickers
    bool isBusy;    ///< other programs take the processor
};

// Short books at a small size; in a long run sixty pages at each size that cameras have.
std::vector<Turning> turnings()
{
    const QSize small(1280, 720), middle(1920, 1080), large(3264, 2448);
    if (!isLongRun())
        return {{small, true, false}, {small, false, false}};
    return {{small, false, false}, {small, true, true},   {middle, false, false},
            {middle, true, true},  {large, false, false}, {large, true, true}};
}

// Keeps one core at work.
class BusyCore
{
public:
    ~BusyCore()
    {
        m_isOver = true;
        m_thread.join();
    }

private:
    std::atomic<bool> m_isOver = false;
    std::thread m_thread{[this] {
        while (!m_isOver) {
        }
    }};
};

// Turns each page when the one before has been shot.
void turnAfterEachShot(Application &app, int pages, bool withHands)
{
    const auto *label = app.find<QLabel>("wiseTimeLabel");
    for (int page = 1; page <= pages; ++page) {
        ASSERT_TRUE(waitFor([&] { return label->isVisible() && label->text() == "3"; }, 15000));
        ASSERT_TRUE(waitFor([&] { return app.files().size() == page; }));
        ASSERT_TRUE(app.waitForCaptures());
        EXPECT_TRUE(waitFor([&] { return label->text() == "Wait for the next page..."; }));
        const uint64_t shot = videoThread->lastFrame()->sequence; // no hand is there sooner
        ASSERT_TRUE(waitFor([&] { return videoThread->lastFrame()->sequence > shot + 20; }));
        if (withHands) { // a quick one is no turned page
            ASSERT_TRUE(app.stand().command("hand"));
        }
        if (page < pages) {
            ASSERT_TRUE(app.stand().command("turn"));
            ASSERT_TRUE(waitFor([&] { return !label->isVisible(); }, 10000));
        }
    }
}

// Turns the pages by the clock, whatever the program makes of it.
void turnByTheClock(Application &app, int pages, bool withHands)
{
    QElapsedTimer clock, sinceChange;
    qint64 slowestMs = 0;
    int shot = 1;
    const auto watching = QObject::connect(wiseCaptrueThread, &wiseCaptrueThr::wiseCaptrueSignal,
                                           &app.window(), [&](bool ready) {
                                               if (!ready && !isTimerDoing)
                                                   sinceChange.start();
                                           });
    const auto countShots = [&] {
        if (app.files().size() > shot) {
            ++shot;
            slowestMs = std::max(slowestMs, sinceChange.elapsed());
        }
        return shot;
    };
    ASSERT_TRUE(waitFor([&] { return app.files().size() == 1; }, 15000));
    clock.start();
    for (int turned = 1; turned < pages; ++turned) {
        const qint64 turnAt = turned * kTurnPeriodMs;
        ASSERT_TRUE(waitFor([&] {
            countShots();
            return clock.hasExpired(turnAt - kHandBeforeTurnMs);
        }));
        if (withHands) {
            ASSERT_TRUE(app.stand().command("hand"));
        }
        ASSERT_TRUE(waitFor([&] { return clock.hasExpired(turnAt); }));
        ASSERT_TRUE(app.stand().command("turn"));
    }
    EXPECT_TRUE(waitFor([&] { return countShots() == pages; }, 10000));
    EXPECT_LT(slowestMs, kShotWithinMs) << "from the page's rest to the whole file";
    testing::Test::RecordProperty("slowestShotMs", static_cast<int>(slowestMs));
    QObject::disconnect(watching);
}

} // namespace

class PageTurn : public testing::TestWithParam<Turning>
{
};

TEST_P(PageTurn, EachTurnedPageBecomesOneFile)
{
    const auto [size, withHands, isBusy] = GetParam();
    const int pages = isLongRun() ? 60 : 4;
    const QString mode = QStringLiteral("%1x%2@%3")
                             .arg(size.width())
                             .arg(size.height())
                             .arg(size.width() > 3000 ? 15 : 30);
    Application app(
        {{"--scene", "book", "--modes", mode}, kByNumber, {withHands ? "flicker 8" : "flicker 0"}});
    const std::unique_ptr<BusyCore> busy = isBusy ? std::make_unique<BusyCore>() : nullptr;
    ASSERT_TRUE(app.waitForPicture());
    app.click("bt_wiseCaptrue");
    EXPECT_EQ(app.find<QAbstractButton>("bt_wiseCaptrue")->text(), "Stop captrue");
    if (isLongRun())
        turnByTheClock(app, pages, withHands);
    else
        turnAfterEachShot(app, pages, withHands);
    const auto *label = app.find<QLabel>("wiseTimeLabel");
    EXPECT_FALSE(waitFor([&] { return label->text() == "3"; }, 1500)) << "a page is shot once";
    app.click("bt_wiseCaptrue");
    EXPECT_EQ(app.find<QAbstractButton>("bt_wiseCaptrue")->text(), "Start captrue");
    EXPECT_FALSE(label->isVisible());
    EXPECT_FALSE(wiseCaptrueThread->isRunning());
    const auto *list = app.find<ImageListWidget>("listWidget1");
    EXPECT_EQ(list->count(), pages);
    for (int row = 0; row < list->count() && !withHands; ++row)
        EXPECT_FALSE(list->item(row)->data(ImageListWidget::DoubtfulRole).toBool()) << row;
    expectBook(app, pages, {size.width(), size.height()});
}

INSTANTIATE_TEST_SUITE_P(Books, PageTurn, testing::ValuesIn(turnings()), [](const auto &turning) {
    return std::to_string(turning.param.size.height()) +
           (turning.param.withHands ? "Disturbed" : "Undisturbed");
});

TEST(Recording, LastsAsLongAsTheClockAndEntersTheList)
{
    const int seconds = isLongRun() ? 60 : 3;
    const QStringList modes =
        isLongRun() ? QStringList{"3264x2448@15,1920x1080@15"} : QStringList{"1280x720@15"};
    Application app({QStringList{"--modes"} + modes, {}, {}});
    ASSERT_TRUE(app.waitForPicture());
    prepareRecording(app, QStringLiteral("première leçon"));
    const QString path = app.images() + QStringLiteral("/première leçon.mp4");
    app.click("Bt_StartRec");
    ASSERT_TRUE(waitUntilRecording(path));
    const double before = mediaDuration(path); // only whole fragments are counted: at most 1 s less
    QElapsedTimer clock;
    clock.start();
    const auto *time = app.find<QLabel>("recTimeLabel");
    EXPECT_TRUE(waitFor([&] { return time->text() == "00:00:02"; }, 4000));
    EXPECT_TRUE(app.find<QLabel>("recordingStatusLabel")->isVisible());
    ASSERT_TRUE(waitFor([&] { return clock.hasExpired(seconds * 1000); }, seconds * 1000 + 1000));
    const double recorded = clock.elapsed() / 1000.0;
    app.click("Bt_StopRec");
    const QString stopped = time->text();
    const auto *list = app.find<QListWidget>("listWidget1");
    ASSERT_TRUE(waitFor([&] { return list->count() == 1; }));
    EXPECT_TRUE(boxes(app).isEmpty());
    EXPECT_FALSE(waitFor([&] { return time->text() != stopped; }, 1300)) << "the clock stops";
    app.type("v_customTextEdit", "a/b");
    app.click("Bt_StartRec");
    EXPECT_FALSE(isRecord);
    EXPECT_TRUE(app.message().contains("cannot be used")) << app.message().toStdString();
    EXPECT_GT(mediaDuration(path) - before, 0.97 * recorded);
    EXPECT_LT(mediaDuration(path) - before, 1.03 * recorded + 1.5);
    if (isLongRun()) {
        const QStringList streams = probeMedia(path, "stream=duration");
        EXPECT_NEAR(streams.value(0).toDouble(), streams.value(1).toDouble(), 0.2);
        EXPECT_GT(probeMedia(path, "stream=nb_read_packets").value(0).toInt(),
                  0.9 * 15 * streams.value(0).toDouble());
    }
}

TEST(Recording, SurvivesItsCameraAndTheWindow)
{
    Application app({{"--modes", "1280x720@15"}, {}, {}});
    ASSERT_TRUE(app.waitForPicture());
    prepareRecording(app, QStringLiteral("unplugged"));
    const QString unplugged = app.images() + QStringLiteral("/unplugged.mp4");
    app.click("Bt_StartRec");
    ASSERT_TRUE(waitUntilRecording(unplugged));
    ASSERT_TRUE(app.stand().command("unplug main"));
    ASSERT_TRUE(waitFor([&] {
        const auto shown = boxes(app);
        return !shown.isEmpty() && shown.first()->text() == "Recording failed!";
    }));
    EXPECT_TRUE(boxes(app).first()->informativeText().contains("is kept"));
    const auto *list = app.find<QListWidget>("listWidget1");
    ASSERT_TRUE(waitFor([&] { return list->count() == 1; }));
    EXPECT_GT(mediaDuration(unplugged), 0);
    EXPECT_TRUE(app.find<QPushButton>("Bt_StartRec")->isEnabled());
    EXPECT_TRUE(app.find<QLabel>("recordingStatusLabel")->isHidden());

    ASSERT_TRUE(app.stand().command("plug main"));
    ASSERT_TRUE(app.waitForPicture());
    prepareRecording(app, QStringLiteral("closed"));
    const QString closed = app.images() + QStringLiteral("/closed.mp4");
    app.click("Bt_StartRec");
    ASSERT_TRUE(waitUntilRecording(closed));
    app.close();
    EXPECT_GT(mediaDuration(closed), 0);
}
