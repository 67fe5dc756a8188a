#include "app/state.h"
#include "e2e/application.h"
#include "features/wise_captrue_thread.h"

#include <QComboBox>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QImage>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace {

const QByteArray kByNumber("NameType=0\nImgQuality=80\n");

double duration(const QString &path)
{
    QByteArray output;
    run("ffprobe", {"-v", "error", "-show_entries", "format=duration", "-of", "csv=p=0", path},
        &output);
    return output.trimmed().toDouble();
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

} // namespace

TEST(PageTurn, EachTurnedPageBecomesOneFile)
{
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "under this sanitizer no machine looks twenty times a second";
#endif
    constexpr int kPages = 5;
    Application app({{"--scene", "book", "--modes", "1280x720@15"}, kByNumber, {"flicker 8"}});
    ASSERT_TRUE(app.waitForPicture());
    app.click("bt_wiseCaptrue");
    EXPECT_EQ(app.find<QAbstractButton>("bt_wiseCaptrue")->text(), "Stop captrue");
    const auto *label = app.find<QLabel>("wiseTimeLabel");
    for (int page = 1; page <= kPages; ++page) {
        QElapsedTimer sinceReady;
        ASSERT_TRUE(waitFor([&] { return label->isVisible() && label->text() == "3"; }, 15000));
        sinceReady.start();
        ASSERT_TRUE(waitFor([&] { return app.files().size() == page; }));
        EXPECT_NEAR(sinceReady.elapsed(), 1200, 400);
        EXPECT_TRUE(waitFor([&] { return label->text() == "Wait for the next page..."; }));
        if (page < kPages) {
            ASSERT_TRUE(app.stand().command("turn"));
            ASSERT_TRUE(waitFor([&] { return !label->isVisible(); }, 10000));
        }
    }
    app.click("bt_wiseCaptrue");
    EXPECT_EQ(app.find<QAbstractButton>("bt_wiseCaptrue")->text(), "Start captrue");
    EXPECT_FALSE(label->isVisible());
    EXPECT_FALSE(wiseCaptrueThread->isRunning());

    QImage before;
    for (const QString &file : app.files()) {
        const QImage page = QImage(app.images() + '/' + file).scaled(320, 180);
        EXPECT_NE(page, before) << qPrintable(file);
        before = page;
    }
    EXPECT_EQ(app.find<QListWidget>("listWidget1")->count(), kPages);
}

TEST(Recording, LastsAsLongAsTheClockAndEntersTheList)
{
    Application app({{"--modes", "1280x720@15"}, {}, {}});
    ASSERT_TRUE(app.waitForPicture());
    prepareRecording(app, QStringLiteral("première leçon"));
    const QString path = app.images() + QStringLiteral("/première leçon.mp4");
    app.click("Bt_StartRec");
    ASSERT_TRUE(waitUntilRecording(path));
    const auto *time = app.find<QLabel>("recTimeLabel");
    const QString begin = time->text();
    EXPECT_TRUE(waitFor([&] { return time->text() > begin && time->text() >= "00:00:03"; }));
    app.click("Bt_StopRec");
    const auto *list = app.find<QListWidget>("listWidget1");
    ASSERT_TRUE(waitFor([&] { return list->count() == 1; }));
    EXPECT_GT(duration(path), 1.5);
    EXPECT_LT(duration(path), 4.5);
    EXPECT_TRUE(boxes(app).isEmpty());
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
    const auto *list = app.find<QListWidget>("listWidget1");
    ASSERT_TRUE(waitFor([&] { return list->count() == 1; }));
    EXPECT_GT(duration(unplugged), 0);
    app.click("Bt_StopRec");

    ASSERT_TRUE(app.stand().command("plug main"));
    ASSERT_TRUE(app.waitForPicture());
    prepareRecording(app, QStringLiteral("closed"));
    const QString closed = app.images() + QStringLiteral("/closed.mp4");
    app.click("Bt_StartRec");
    ASSERT_TRUE(waitUntilRecording(closed));
    app.close();
    EXPECT_GT(duration(closed), 0);
}
