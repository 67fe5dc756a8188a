#include "features/record_path.h"
#include "features/recorder.h"
#include "features/set_aside_file.h"
#include "platform/stand_platform.h"
#include "support/file_size_limit.h"
#include "support/files.h"
#include "support/media_probe.h"
#include "support/stand_process.h"
#include "video/video_thread.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QtTest>

#include <gtest/gtest.h>

#include <csignal>

namespace {

// Records with whatever program the test names, or with the real ffmpeg from the stand.
class TestPlatform : public StandPlatform
{
public:
    explicit TestPlatform(const QString &script = {})
        : m_script(script)
    {
    }

    QString recordCommand(const RecordRequest &request) const override
    {
        if (!m_script.isEmpty())
            return QStringList{quotedArgument(m_script), quotedArgument(request.target),
                               QString::number(request.camera), request.audioDevice}
                .join(' ');
        RecordRequest real = request;
        real.ffmpeg = QStandardPaths::findExecutable(QStringLiteral("ffmpeg"));
        return StandPlatform::recordCommand(real);
    }

    QList<CameraInfo> cameras() const override
    {
        return m_script.isEmpty() ? StandPlatform::cameras() : m_cameras;
    }

    QStringList audioInputs() const override
    {
        return m_script.isEmpty() ? StandPlatform::audioInputs()
                                  : QStringList{"Hall", "USB 2.0 Camera", "Desk"};
    }

    void unplug() { m_cameras.clear(); }

private:
    const QString m_script;
    QList<CameraInfo> m_cameras{{"main", "Main"}, {"assist", "Assist"}};
};

QByteArray onlyChild(qint64 process)
{
    return readFile(QStringLiteral("/proc/%1/task/%1/children").arg(process)).trimmed();
}

// Gone, or dead and merely not yet buried by the system.
bool hasEnded(const QByteArray &process)
{
    const QByteArray status = readFile(QStringLiteral("/proc/%1/status").arg(process.constData()));
    return status.isEmpty() || status.contains("State:\tZ");
}

class RecorderTest : public testing::Test
{
protected:
    void TearDown() override { setPlatform(nullptr); }

    // Starts a recording in which the shell commands `body` play ffmpeg; $1 is the target.
    void startFake(const QByteArray &body)
    {
        const QString script = dir.filePath(QStringLiteral("fake ffmpeg"));
        QFile file(script);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("#!/bin/sh\n" + body + "\n");
        file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        file.close();
        start(std::make_unique<TestPlatform>(script));
    }

    void start(std::unique_ptr<Platform> platformToUse)
    {
        setPlatform(std::move(platformToUse));
        recorder.setRecordPath(path);
        recorder.StartREC();
    }

    bool waitForEnd()
    {
        return QTest::qWaitFor([this] { return !recorder.isRunning(); }, 10000);
    }

    void putFile(const QByteArray &content)
    {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }

    QByteArray content() const { return readFile(path); }

    int fileCount() const { return QDir(dir.path()).entryList({"lesson*"}, QDir::Files).size(); }

    QTemporaryDir dir;
    QString path = dir.filePath(QStringLiteral("lesson.mp4"));
    Recorder recorder;
    QSignalSpy results{&recorder, &Recorder::recordSignal};
    QSignalSpy finished{&recorder, &Recorder::finished};
};

constexpr char kWrite[] = "head -c 40000 /dev/zero >\"$1\"; echo 'frame=   12 fps=15'; ";

} // namespace

TEST(RecordPath, FollowsTheNamingRule)
{
    const QDateTime time({2024, 2, 29}, {7, 8, 9, 12});
    const auto named = [&](int type, const QString &text) {
        return recordPath({type, text, "/out", "mp4", time});
    };
    EXPECT_EQ(named(RecordByTime, "lesson"), "/out/20240229070809012.mp4");
    EXPECT_EQ(named(RecordCustom, "lesson"), "/out/lesson.mp4");
    EXPECT_EQ(named(RecordCustom, ""), "/out/20240229070809012.mp4");
    EXPECT_EQ(named(RecordAsFolder, "lesson"), "/out/lesson/20240229070809012.mp4");
    EXPECT_EQ(named(RecordAsFolder, ""), "/out/20240229070809012.mp4");
    EXPECT_EQ(elapsedTimeText(3725), "01:02:05");
}

TEST(ScreenDevice, IsFoundInTheListing)
{
    EXPECT_EQ(screenDeviceIndex("[AVFoundation indev @ 0x7f] [0] HD Camera\n"
                                "[AVFoundation indev @ 0x7f] [2] Capture screen 0\n"),
              "2");
}

TEST_F(RecorderTest, AProgramThatFailsAtOnceIsReportedOnceAndTheOldFileComesBack)
{
    for (const char *body : {"exit 1", "echo 'error'; echo 'error'; echo junk >\"$1\"; exit 1"}) {
        results.clear();
        putFile("old");
        startFake(body);
        ASSERT_TRUE(waitForEnd());
        QCoreApplication::processEvents();
        recorder.StopREC();
        EXPECT_EQ(results.size(), 1) << body;
        EXPECT_EQ(recorder.failure().cause, RecordingFailure::StoppedAtOnce) << body;
        EXPECT_EQ(recorder.failure().file, RecordingFailure::Nothing) << body;
        EXPECT_EQ(content(), "old") << body;
    }
    results.clear();
    start(std::make_unique<TestPlatform>(QStringLiteral("/no/such/program")));
    ASSERT_TRUE(waitForEnd());
    QCoreApplication::processEvents();
    EXPECT_EQ(results.size(), 1);
    EXPECT_EQ(recorder.failure().cause, RecordingFailure::NoProgram);
    EXPECT_EQ(content(), "old");
    EXPECT_TRUE(finished.isEmpty());
    EXPECT_EQ(fileCount(), 1);
}

TEST_F(RecorderTest, ANewFileReplacesTheOldOneAlsoWhenItsProgramDiesLater)
{
    for (const QByteArray end : {"read -r key", "exit 3"}) {
        results.clear();
        finished.clear();
        putFile("old");
        startFake(kWrite + end);
        ASSERT_TRUE(QTest::qWaitFor([this] { return content().size() == 40000; }));
        recorder.StopREC();
        ASSERT_TRUE(QTest::qWaitFor([this] { return !finished.isEmpty(); }));
        EXPECT_EQ(finished.first().first().toString(), path);
        EXPECT_EQ(content().size(), 40000);
        EXPECT_EQ(fileCount(), 1);
    }
}

TEST_F(RecorderTest, WhatAKilledProgramLeftAsideComesBack)
{
    const auto put = [this](const char *name, const QByteArray &bytes) {
        return writeFile(dir.filePath(name), bytes);
    };
    put("lesson.mp4", "a stub");
    put("lesson.mp4.previous", "the good one");
    put("other.mov.previous2", "lost its stub");
    put("both.avi", QByteArray(20000, 'x'));
    put("both.avi.previous", "earlier");
    put("mine.txt.previous", "no recording");
    putBackSetAsideFiles(dir.path(), QDateTime::currentDateTime().addSecs(-60));
    EXPECT_EQ(content(), "a stub") << "it belongs to a recording that has just begun";
    putBackSetAsideFiles(dir.path(), QDateTime::currentDateTime());
    EXPECT_EQ(content(), "the good one");
    EXPECT_EQ(readFile(dir.filePath("other.mov")), "lost its stub");
    EXPECT_EQ(readFile(dir.filePath("both.avi")).size(), 20000);
    EXPECT_EQ(QDir(dir.path()).entryList({"both (*.avi"}).size(), 1);
    EXPECT_TRUE(QFile::exists(dir.filePath("mine.txt.previous")));

    // A new recording of the name does it as well, but not while another program writes.
    put("lesson.mp4", "a stub");
    put("lesson.mp4.previous", "the good one");
    QProcess writer;
    writer.start("sh", {"-c", "exec 3>>\"$1\"; echo; read end", "sh", path});
    ASSERT_TRUE(writer.waitForReadyRead());
    EXPECT_FALSE(SetAsideFile(path).setAside());
    EXPECT_EQ(content(), "a stub");
    writer.write("\n");
    ASSERT_TRUE(writer.waitForFinished());
    SetAsideFile aside(path);
    EXPECT_TRUE(aside.setAside());
    aside.restore();
    EXPECT_EQ(content(), "the good one");
}

TEST_F(RecorderTest, AnErrorInTheOutputIsReportedOnceAndInThePathNever)
{
    path = dir.filePath(QStringLiteral("lesson of error.mp4"));
    startFake(QByteArray("echo \"Output to '$1'\"; echo '[mjpeg @ 0x1] error y=3 x=0'; ") + kWrite +
              "read -r go; printf 'an er'; printf 'ror\\nerror\\n'; sleep 0.1; echo error");
    QSignalSpy ended(&recorder, &Recorder::finished);
    ASSERT_TRUE(QTest::qWaitFor([this] { return !content().isEmpty(); }));
    EXPECT_TRUE(results.isEmpty());
    recorder.StopREC();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !ended.isEmpty(); }));
    QCoreApplication::processEvents();
    EXPECT_EQ(results.size(), 1);
}

TEST_F(RecorderTest, StoppingWaitsHalfASecondAndTheFileFollows)
{
    startFake(QByteArray(kWrite) + "head -c 1 >/dev/null; sleep 1; echo done >>\"$1\"");
    ASSERT_TRUE(QTest::qWaitFor([this] { return !content().isEmpty(); }));
    QElapsedTimer timer;
    timer.start();
    recorder.StopREC();
    EXPECT_LT(timer.elapsed(), 900);
    EXPECT_TRUE(finished.isEmpty());
    EXPECT_FALSE(recorder.isRunning());
    ASSERT_TRUE(QTest::qWaitFor([this] { return !finished.isEmpty(); }));
    EXPECT_TRUE(content().endsWith("done\n"));
    QCoreApplication::processEvents();
    EXPECT_TRUE(results.isEmpty());
}

TEST_F(RecorderTest, ANewRecordingOfTheNameWaitsForTheOneBeingClosed)
{
    startFake(QByteArray(kWrite) + "head -c 1 >/dev/null; sleep 1");
    ASSERT_TRUE(QTest::qWaitFor([this] { return !content().isEmpty(); }));
    recorder.StopREC();
    ASSERT_TRUE(finished.isEmpty());
    recorder.setRecordPath(path);
    recorder.StartREC();
    EXPECT_EQ(finished.size(), 1);
}

TEST_F(RecorderTest, AProgramThatHangsIsEndedBySignal)
{
    startFake(QByteArray("trap 'exit 255' TERM; ") + kWrite + "while :; do sleep 0.1; done");
    ASSERT_TRUE(QTest::qWaitFor([this] { return !content().isEmpty(); }));
    recorder.finishNow();
    QCoreApplication::processEvents();
    EXPECT_EQ(finished.size(), 1);
    EXPECT_TRUE(results.isEmpty());
}

TEST_F(RecorderTest, AShortRecordingOfTheChosenCameraAndItsMicrophoneIsKept)
{
    const QString elsewhere = dir.filePath("elsewhere");
    ASSERT_TRUE(QFile::link(elsewhere, path)); // leads nowhere: nothing is written through it
    recorder.setCamera(1);
    startFake("echo $2 $3 >\"$1\"; echo 'frame=   12 fps=15'; head -c 1 >/dev/null");
    ASSERT_TRUE(QTest::qWaitFor([this] { return !content().isEmpty(); }));
    recorder.StopREC();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !finished.isEmpty(); }));
    EXPECT_EQ(content(), "1 1\n");
    EXPECT_FALSE(QFile::exists(elsewhere));
    EXPECT_EQ(fileCount(), 1);
}

TEST_F(RecorderTest, ALostCameraEndsTheRecording)
{
    startFake(QByteArray(kWrite) + "head -c 1 >/dev/null");
    ASSERT_TRUE(QTest::qWaitFor([this] { return !content().isEmpty(); }));
    recorder.checkCamera();
    EXPECT_TRUE(recorder.isRunning());
    static_cast<TestPlatform &>(platform()).unplug();
    recorder.checkCamera();
    ASSERT_TRUE(waitForEnd());
    QCoreApplication::processEvents();
    EXPECT_EQ(results.size(), 1);
    EXPECT_EQ(recorder.failure().cause, RecordingFailure::CameraGone);
    EXPECT_EQ(recorder.failure().file, RecordingFailure::Kept);
}

class RealRecorderTest : public RecorderTest, public testing::WithParamInterface<const char *>
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(stand.isReady());
        path = dir.filePath(QStringLiteral("Übung eins.") + GetParam());
        setPlatform(std::make_unique<TestPlatform>());
        camera.openCamera("0", "640x480", "15");
        ASSERT_TRUE(QTest::qWaitFor([this] { return camera.lastFrame() != nullptr; }));
        recorder.setSource(&camera);
    }

    void startReal()
    {
        start(std::make_unique<TestPlatform>());
        ASSERT_TRUE(QTest::qWaitFor([this] { return QFileInfo(path).size() > 16 * 1024; }, 10000));
    }

    QStringList expectStreamsEndTogether() const
    {
        QStringList ends = probeMedia(path, "stream=duration");
        EXPECT_NEAR(ends.value(0).toDouble(), ends.value(1).toDouble(), 0.2);
        return ends;
    }

    StandProcess stand{{"--modes", "3264x2448@15,640x480@15"}};
    IVideoTread camera;
};

TEST_P(RealRecorderTest, RecordsEveryPictureAndSoundInTimeTurnedAsSeen)
{
    camera.setRotateAngle(90);
    const uint64_t seen = camera.lastFrame()->sequence;
    ASSERT_TRUE(QTest::qWaitFor([&] { return camera.lastFrame()->sequence > seen + 1; }));
    startReal();
    QTest::qWait(1500);                           // what is recorded
    ASSERT_TRUE(stand.command("corrupt main 2")); // no failure: the next ones are whole again
    QTest::qWait(1500);
    const uint64_t before = camera.lastFrame()->sequence;
    camera.openCamera("0", "3264x2448", "15"); // fitted into the size it began with
    const auto flows = [&] { return camera.lastFrame() && camera.lastFrame()->sequence > 5; };
    ASSERT_TRUE(QTest::qWaitFor(flows, 20000));
    recorder.StopREC();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !finished.isEmpty(); }));
    EXPECT_TRUE(results.isEmpty());

    EXPECT_EQ(probeMedia(path, "stream=codec_name"),
              QStringList({"h264", path.endsWith("avi") ? "mp3" : "aac"}));
    EXPECT_EQ(probeMedia(path, "stream=width,height,pix_fmt,color_range").mid(0, 4),
              QStringList({"480", "640", "yuv420p", "tv"}));
    EXPECT_GE(probeMedia(path, "stream=nb_read_packets").value(0).toULongLong(),
              0.95 * double(before - seen - 4));
    const QStringList starts = probeMedia(path, "stream=start_time");
    EXPECT_NEAR(starts.value(0).toDouble(), starts.value(1).toDouble(), 0.2);
    const QStringList ends = expectStreamsEndTogether();
    EXPECT_GT(ends.value(0).toDouble(), 3);
}

TEST_P(RealRecorderTest, IsPlayableWhenTheProgramOrItsFfmpegIsKilled)
{
    setPlatform(std::make_unique<TestPlatform>());
    for (const bool isProgram : {true, false}) {
        QProcess recording;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_LOGGING_RULES", "*.debug=true"); // tells what ffmpeg prints
        recording.setProcessEnvironment(environment);
        recording.start(QCoreApplication::applicationDirPath() + "/killed_recorder", {path});
        QByteArray output;
        ASSERT_TRUE(QTest::qWaitFor(
            [&] {
                output += recording.readAllStandardError();
                return output.contains("time=00:00:02");
            },
            60000))
            << output.constData();
        const QByteArray ffmpeg = onlyChild(recording.processId());
        ASSERT_FALSE(ffmpeg.isEmpty());
        ::kill(isProgram ? pid_t(recording.processId()) : ffmpeg.toInt(), SIGKILL);
        EXPECT_TRUE(QTest::qWaitFor([&] { return hasEnded(ffmpeg); }, 20000));
        const auto isPlayable = [this] { // also while the recorder mends what it left
            return probeMedia(path, "stream=nb_read_packets").value(0).toInt() >= 14 &&
                   mediaDuration(path) > 0.9; // a second is lost
        };
        EXPECT_TRUE(QTest::qWaitFor(isPlayable, 20000));
        recording.kill();
        recording.waitForFinished();
    }
}

TEST_P(RealRecorderTest, AFullDiskIsToldAndWhatFittedOnItPlays)
{
    {
        const FileSizeLimit full(200 * 1024);
        startReal();
    }
    ASSERT_TRUE(QTest::qWaitFor([this] { return !finished.isEmpty(); }, 20000));
    QCoreApplication::processEvents();
    EXPECT_EQ(results.size(), 1);
    EXPECT_EQ(recorder.failure().cause, RecordingFailure::DiskFull);
    EXPECT_EQ(recorder.failure().file, RecordingFailure::Kept);
    EXPECT_GT(probeMedia(path, "stream=nb_read_packets").value(0).toInt(), 5);
}

TEST_P(RealRecorderTest, KeepsWhatACameraGaveUntilItWasUnplugged)
{
    startReal();
    ASSERT_TRUE(stand.command(QStringLiteral("unplug main")));
    ASSERT_TRUE(QTest::qWaitFor(
        [this] {
            recorder.checkCamera();
            return !finished.isEmpty();
        },
        10000));
    QCoreApplication::processEvents();
    EXPECT_EQ(results.size(), 1);
    EXPECT_GT(expectStreamsEndTogether().value(0).toDouble(), 0);
}

TEST_P(RealRecorderTest, ASilentCameraDoesNotHoldUpTheEnd)
{
    startReal();
    ASSERT_TRUE(stand.command(QStringLiteral("stall main on")));
    QElapsedTimer timer;
    timer.start();
    recorder.StopREC();
    ASSERT_TRUE(QTest::qWaitFor([this] { return !finished.isEmpty(); }, 10000));
    EXPECT_LT(timer.elapsed(), 6000);
    EXPECT_GT(mediaDuration(path), 0);
}

INSTANTIATE_TEST_SUITE_P(Formats, RealRecorderTest, testing::Values("mov", "avi", "mp4"));
