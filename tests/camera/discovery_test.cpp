#include "app/state.h"
#include "camera/cam_params.h"
#include "camera/model_tables.h"
#include "support/fake_platform.h"
#include "support/temporary_home.h"

#include <QElapsedTimer>
#include <QFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <gtest/gtest.h>

#include <csignal>

namespace {

constexpr int kTimeoutMs = 10000;

CameraInfo camera(const char *id, const char *name = "camera")
{
    return {QStringLiteral("0x14200000") + QLatin1String(id), QLatin1String(name)};
}

class Discovery : public testing::Test
{
protected:
    Discovery()
    {
        auto fake = std::make_unique<FakePlatform>();
        m_platform = fake.get();
        setPlatform(std::move(fake));
        for (const EnlargedClass &enlarged : enlargedClasses())
            *enlarged.camera = false;
    }
    ~Discovery() override { setPlatform(nullptr); }

    // Makes every probe print `text` in one go; `after` is run afterwards.
    void probePrints(const QByteArray &text, const char *after = "")
    {
        QFile file(m_folder.filePath(QStringLiteral("modes")));
        ASSERT_TRUE(file.open(QFile::WriteOnly));
        file.write(text);
        m_platform->probe =
            QStringLiteral("/bin/sh -c \"cat %1; %2\"").arg(file.fileName(), QLatin1String(after));
    }

    QString log() const
    {
        QFile file(qEnvironmentVariable("HOME") + QStringLiteral("/Documents/scanerlog"));
        return file.open(QFile::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    const TemporaryHome m_home;
    QTemporaryDir m_folder;
    FakePlatform *m_platform = nullptr;
    CamParams m_params;
};

TEST_F(Discovery, ListsTheFirstMainCameraAndAllAssistCameras)
{
    m_platform->cameraList = {camera("12345678", "built in"), camera("120900a2", "arm"),
                              camera("12090001", "stand"), camera("08391012", "second stand"),
                              camera("120900a1", "gooseneck")};
    EXPECT_EQ(m_params.checkCameraCount(), 3);
    EXPECT_EQ(m_params.getCameraCount(), 3);
    EXPECT_EQ(CamdeviceName, (QStringList{"stand", "arm", "gooseneck"}));
    EXPECT_EQ(m_params.geCameraID(0), 2);
    EXPECT_EQ(m_params.geCameraID(1), 1);
    EXPECT_EQ(m_params.geCameraID(2), 4);
    EXPECT_EQ(m_params.getCameraName(1), "arm");
    for (const int outside : {-1, 10}) {
        EXPECT_EQ(m_params.geCameraID(outside), -1);
        EXPECT_TRUE(m_params.getCameraName(outside).isEmpty());
    }
    EXPECT_TRUE(log().contains("vidstr:1209,pidstr:0001 \r\n"));
    EXPECT_FALSE(log().contains("second stand")) << "the scan ends with the first match";

    const QString before = log();
    m_platform->cameraList.removeLast();
    EXPECT_EQ(m_params.checkCameraCount(), 2);
    EXPECT_EQ(myDevCount, 3) << "counting changes nothing";
    EXPECT_EQ(log(), before);
}

TEST_F(Discovery, LeavesOutWhatIsNoScannedMainModel)
{
    const QList<QList<CameraInfo>> unusable = {
        {},
        {camera("120900a1")},                    // assist without main
        {{QStringLiteral("1209"), QString()}},   // no ID at all
        {camera("120900be")},                    // the row is in upper case
        {camera(qPrintable(vid[27] + pid[27]))}, // listed, not scanned
        {camera(qPrintable(vid[31] + pid[31]))},
    };
    for (const QList<CameraInfo> &cameras : unusable) {
        m_platform->cameraList = cameras;
        EXPECT_EQ(m_params.checkCameraCount(), 0);
        EXPECT_EQ(m_params.getCameraCount(), 0);
        EXPECT_TRUE(CamdeviceName.isEmpty());
    }
}

TEST_F(Discovery, NeverListsMoreThanTheTableHolds)
{
    m_platform->cameraList = {camera("12090001")};
    for (int i = 0; i < 14; ++i)
        m_platform->cameraList.append(camera("120900a1"));
    EXPECT_EQ(m_params.getCameraCount(), kCamdeviceMax);
    EXPECT_EQ(m_params.checkCameraCount(), kCamdeviceMax) << "else it would reopen for ever";
}

TEST_F(Discovery, SetsTheFlagOfTheModelAndClearsOnlyTheFirstFour)
{
    is800wTo1300w = is800wTo1000w = is500wTo800w = true;
    is1600wTo2100w = true;
    m_platform->cameraList = {camera("12090023")};
    m_params.getCameraCount();
    EXPECT_TRUE(is800wTo1200w);
    EXPECT_FALSE(is800wTo1300w || is800wTo1000w || is500wTo800w);
    EXPECT_TRUE(is1600wTo2100w);

    m_platform->cameraList = {camera("12090001")};
    m_params.getCameraCount();
    EXPECT_FALSE(is800wTo1200w) << "the default model has no enlarged sizes";

    is1600wTo2100w = false;
    CheckInsertValue(QStringLiteral("1209"), QStringLiteral("0054"));
    EXPECT_TRUE(is1600wTo2100w);
}

TEST_F(Discovery, ReadsTheModesOfTheMainCamera)
{
    probePrints("[avfoundation @ 0x7f] Selected framerate is not supported\n"
                "[avfoundation @ 0x7f]   1640x480@[15.000000 30.000030]fps\n"
                "[avfoundation @ 0x7f]   1280x720@[30.000030 30.000030]fps\n"
                "[avfoundation @ 0x7f]   1280x720@[15.000015 15.000015]fps\n"
                "[avfoundation @ 0x7f]   640x480@[30.000030 30.000030]fps\n"
                "[avfoundation @ 0x7f]   nothing@[60.000000 60.000000]fps\n");
    m_platform->cameraList = {camera("12090001")};
    m_params.getCameraCount();
    QSignalSpy main(&m_params, &CamParams::getResCountFinish);
    QSignalSpy assist(&m_params, &CamParams::getResCountFinish2);
    m_params.getResolutionCount(0);
    EXPECT_FALSE(isProcessCmd);
    ASSERT_TRUE(main.wait(kTimeoutMs));
    EXPECT_EQ(main.takeFirst().at(0).toInt(), 3) << "640x480 is part of 1640x480";
    EXPECT_TRUE(isProcessCmd);
    int width = 0, height = 0, fps = 0;
    EXPECT_EQ(m_params.getResolution(0, width, height, fps), 0);
    EXPECT_EQ(std::make_tuple(width, height, fps), std::make_tuple(1640, 480, 15));
    EXPECT_EQ(m_params.getResolution(1, width, height, fps), 0);
    EXPECT_EQ(std::make_tuple(width, height, fps), std::make_tuple(1280, 720, 30));
    EXPECT_EQ(m_params.getResolution(2, width, height, fps), 0);
    EXPECT_EQ(std::make_tuple(width, height, fps), std::make_tuple(1280, 720, 60));
    for (const int outside : {-1, 3})
        EXPECT_EQ(m_params.getResolution(outside, width, height, fps), -1);

    m_params.getResolutionCount(0);
    ASSERT_TRUE(main.wait(kTimeoutMs));
    EXPECT_EQ(main.takeFirst().at(0).toInt(), 3) << "a second probe adds nothing";

    probePrints("[x] 800x600@[10.0 10.0]fps\n");
    m_params.setChangeDeviceMode(true);
    m_params.getResolutionCount(5);
    ASSERT_TRUE(main.wait(kTimeoutMs));
    EXPECT_EQ(main.takeFirst().at(0).toInt(), 1) << "another camera starts afresh";
    EXPECT_EQ(assist.count(), 0);
}

TEST_F(Discovery, KeepsTheAssistCamerasModesApart)
{
    m_platform->cameraList = {camera("12090001"), camera("120900a1")};
    m_params.getCameraCount();
    QSignalSpy main(&m_params, &CamParams::getResCountFinish);
    QSignalSpy assist(&m_params, &CamParams::getResCountFinish2);
    probePrints("[x] 3264x2448@[15.0 15.0]fps\n");
    m_params.getResolutionCount(0);
    ASSERT_TRUE(main.wait(kTimeoutMs));
    probePrints("[x] 1280x720@[30.0 30.0]fps\n[x] 640x480@[30.0 30.0]fps\n");
    m_params.getResolutionCount(1);
    ASSERT_TRUE(assist.wait(kTimeoutMs));
    EXPECT_EQ(m_platform->probedIndex, 1);
    EXPECT_EQ(assist.takeFirst().at(0).toInt(), 2);
    EXPECT_EQ(main.count(), 1);
}

TEST_F(Discovery, SurvivesAProbeThatCannotStart)
{
    m_platform->cameraList = {camera("12090001")};
    m_params.getCameraCount();
    QSignalSpy main(&m_params, &CamParams::getResCountFinish);
    for (const char *command : {"/nowhere/probe 0", "", "/bin/false"}) {
        QSignalSpy unknown(&m_params, &CamParams::modesUnknown);
        m_platform->probe = QLatin1String(command);
        m_params.getResolutionCount(0);
        EXPECT_TRUE(QTest::qWaitFor([] { return isProcessCmd; }, kTimeoutMs)) << command;
        EXPECT_EQ(unknown.count(), 1) << command;
    }
    EXPECT_TRUE(log().contains("could not be asked"));
    m_params.getResolutionCount(-1);
    EXPECT_TRUE(isProcessCmd);
    EXPECT_EQ(poc, nullptr);
    EXPECT_EQ(main.count(), 0);
}

TEST_F(Discovery, DropsTheProbeBefore)
{
    m_platform->probe = QStringLiteral("/bin/sleep 60");
    auto first = std::make_unique<CamParams>();
    first->getResolutionCount(0);
    ASSERT_TRUE(poc->waitForStarted());
    const auto sleeper = static_cast<pid_t>(poc->processId());
    probePrints("[x] 1280x720@[30.0 30.0]fps\n", "exec sleep 60");
    QSignalSpy main(&m_params, &CamParams::getResCountFinish);
    m_params.getResolutionCount(0);
    EXPECT_NE(::kill(sleeper, 0), 0) << "still running";
    first.reset(); // must not take the probe of the other object along
    ASSERT_NE(poc, nullptr);
    ASSERT_TRUE(main.wait(kTimeoutMs)) << "the modes count although the probe lingers";
    const auto lingering = static_cast<pid_t>(poc->processId());
    m_params.getResolutionCount(-1);
    EXPECT_NE(::kill(lingering, 0), 0);
}

TEST_F(Discovery, MayBeProbedAgainFromTheResult)
{
    probePrints("[x] 1280x720@[30.0 30.0]fps\n");
    int results = 0;
    QObject::connect(&m_params, &CamParams::getResCountFinish, &m_params, [&] {
        if (++results < 3)
            m_params.getResolutionCount(0);
    });
    m_params.getResolutionCount(0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return results == 3 && isProcessCmd; }, kTimeoutMs));
}

} // namespace
