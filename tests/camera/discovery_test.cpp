#include "app/paths.h"
#include "app/state.h"
#include "camera/cam_params.h"
#include "camera/model_tables.h"
#include "camera/user_models.h"
#include "support/fake_platform.h"
#include "support/files.h"
#include "support/temporary_home.h"

#include <QPointer>
#include <QSettings>
#include <QSignalSpy>
#include <QTest>

#include <csignal>

namespace {

constexpr int kTimeoutMs = 10000;

CameraInfo camera(const char *id, const char *name = "camera")
{
    return {QStringLiteral("0x14200000") + QLatin1String(id), QLatin1String(name)};
}

class Discovery : public FolderTest
{
protected:
    Discovery()
    {
        for (const EnlargedClass &enlarged : enlargedClasses())
            *enlarged.camera = false;
    }
    ~Discovery() override
    {
        setPlatform(nullptr);
        forgetUserModels();
    }

    int list(const QList<CameraInfo> &cameras)
    {
        m_platform->cameraList = cameras;
        return m_params.getCameraCount();
    }

    // Makes every probe print `text` in one go, as ffmpeg does among its errors; `after` is run
    // afterwards.
    void probePrints(const QByteArray &text, const char *after = "")
    {
        m_platform->probe = QStringLiteral("/bin/sh -c \"cat %1 >&2; %2\"")
                                .arg(writeFile(path("modes"), text), QLatin1String(after));
    }

    // What `finished` counts when camera `index` has been probed.
    int probe(int index, QSignalSpy &finished)
    {
        m_params.getResolutionCount(index);
        return finished.wait(kTimeoutMs) ? finished.takeFirst().at(0).toInt() : -1;
    }

    const TemporaryHome m_home;
    FakePlatform *const m_platform = FakePlatform::install();
    CamParams m_params;
    QSignalSpy m_main{&m_params, &CamParams::getResCountFinish};
    QSignalSpy m_assist{&m_params, &CamParams::getResCountFinish2};
};

TEST_F(Discovery, WhatTheUserSaysGoesBeforeTheTablesAndIsFoundAgain)
{
    const QList<CameraInfo> cameras{camera("12345678", "own"), camera("12090001", "stand"),
                                    camera("abcd0001", "arm")};
    setUserModel({"12345678", UserModel::Main, From1300wTo1800w});
    setUserModel({"abcd0001", UserModel::Assist, -1});
    setUserModel({"12090001", UserModel::Unused, -1});
    const QSettings ini(settingsPath(), QSettings::IniFormat);
    EXPECT_EQ(ini.value("Cameras/12345678").toString(), "main 1300w-1800w");
    forgetUserModels(); // as after a restart
    EXPECT_EQ(list(cameras), 2);
    EXPECT_EQ(m_params.checkCameraCount(), 2);
    EXPECT_EQ(CamdeviceName, (QStringList{"own", "arm"}));
    EXPECT_TRUE(is1300wTo1800w);
    setUserModel({"12345678", UserModel::Unused, -1});
    EXPECT_FALSE(is1300wTo1800w);
    EXPECT_EQ(list(cameras), 0);
}

TEST_F(Discovery, ListsTheFirstMainCameraAndAllAssistCameras)
{
    EXPECT_EQ(list({camera("12345678", "built in"), camera("120900a2", "arm"),
                    camera("12090001", "stand"), camera("08391012", "second stand"),
                    camera("120900a1", "gooseneck")}),
              3);
    EXPECT_EQ(m_params.checkCameraCount(), 3);
    EXPECT_EQ(CamdeviceName, (QStringList{"stand", "arm", "gooseneck"}));
    EXPECT_EQ(m_params.geCameraID(0), 2);
    EXPECT_EQ(m_params.geCameraID(1), 1);
    EXPECT_EQ(m_params.geCameraID(2), 4);
    EXPECT_EQ(m_params.getCameraName(1), "arm");
    for (const int outside : {-1, 10}) {
        EXPECT_EQ(m_params.geCameraID(outside), -1);
        EXPECT_TRUE(m_params.getCameraName(outside).isEmpty());
    }
    const QByteArray before = readLog();
    EXPECT_TRUE(before.contains("vidstr:1209,pidstr:0001 \r\n"));
    EXPECT_FALSE(before.contains("second stand")) << "the scan ends with the first match";

    EXPECT_TRUE(m_params.isStillListed(1));
    m_platform->cameraList.swapItemsAt(0, 1);
    EXPECT_FALSE(m_params.isStillListed(1)) << "another camera stands there";
    m_platform->cameraList.removeLast();
    EXPECT_EQ(m_params.checkCameraCount(), 2);
    EXPECT_EQ(myDevCount, 3) << "counting changes nothing";
    EXPECT_EQ(readLog(), before);
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
        EXPECT_EQ(list(cameras), 0);
        EXPECT_EQ(m_params.checkCameraCount(), 0);
        EXPECT_TRUE(CamdeviceName.isEmpty());
    }
}

TEST_F(Discovery, NeverListsMoreThanTheTableHolds)
{
    QList<CameraInfo> cameras{camera("12090001")};
    for (int i = 0; i < 14; ++i)
        cameras.append(camera("120900a1"));
    EXPECT_EQ(list(cameras), kCamdeviceMax);
    EXPECT_EQ(m_params.checkCameraCount(), kCamdeviceMax) << "else it would reopen for ever";
}

TEST_F(Discovery, SetsTheFlagOfTheModelAndClearsOnlyTheFirstFour)
{
    is800wTo1300w = is800wTo1000w = is500wTo800w = true;
    is1600wTo2100w = true;
    list({camera("12090023")});
    EXPECT_TRUE(is800wTo1200w);
    EXPECT_FALSE(is800wTo1300w || is800wTo1000w || is500wTo800w);
    EXPECT_TRUE(is1600wTo2100w);
    list({camera("12090001")});
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
    list({camera("12090001")});
    EXPECT_EQ(probe(0, m_main), 3) << "640x480 is part of 1640x480";
    EXPECT_TRUE(isProcessCmd);
    int width = 0, height = 0, fps = 0;
    const std::tuple<int, int, int> modes[] = {{1640, 480, 15}, {1280, 720, 30}, {1280, 720, 60}};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(m_params.getResolution(i, width, height, fps), 0);
        EXPECT_EQ(std::make_tuple(width, height, fps), modes[i]);
    }
    for (const int outside : {-1, 3})
        EXPECT_EQ(m_params.getResolution(outside, width, height, fps), -1);
    EXPECT_EQ(probe(0, m_main), 3) << "a second probe adds nothing";
    probePrints("[x] 1920x1080@[25.0 25.0]fps\n");
    list({camera("12090023")});
    EXPECT_EQ(probe(0, m_main), 1) << "another model at the same index";

    probePrints("[x] 800x600@[10.0 10.0]fps\n");
    m_params.setChangeDeviceMode(true);
    EXPECT_EQ(probe(5, m_main), 1) << "another camera starts afresh";
    EXPECT_EQ(m_assist.count(), 0);
}

TEST_F(Discovery, KeepsTheAssistCamerasModesApart)
{
    list({camera("12090001"), camera("120900a1")});
    probePrints("[x] 3264x2448@[15.0 15.0]fps\n");
    EXPECT_EQ(probe(0, m_main), 1);
    probePrints("[x] 1280x720@[30.0 30.0]fps\n[x] 640x480@[30.0 30.0]fps\n");
    EXPECT_EQ(probe(1, m_assist), 2);
    EXPECT_EQ(m_platform->probedIndex, 1);
    EXPECT_EQ(m_main.count(), 0);
}

TEST_F(Discovery, SurvivesAProbeThatCannotStartOrNeverEnds)
{
    list({camera("12090001")});
    QPointer<QProcess> endless;
    for (const char *command : {"/nowhere/probe 0", "", "/bin/false", "/bin/sleep 60"}) {
        QSignalSpy unknown(&m_params, &CamParams::modesUnknown);
        m_platform->probe = QLatin1String(command);
        m_params.getResolutionCount(0);
        endless = poc;
        EXPECT_TRUE(QTest::qWaitFor([] { return isProcessCmd; }, kTimeoutMs)) << command;
        EXPECT_EQ(unknown.count(), 1) << command;
    }
    EXPECT_TRUE(readLog().contains("could not be asked"));
    m_params.getResolutionCount(-1);
    EXPECT_TRUE(isProcessCmd);
    EXPECT_EQ(poc, nullptr);
    EXPECT_EQ(m_main.count(), 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !endless; }, kTimeoutMs)) << "ended and gone";
}

TEST_F(Discovery, DropsTheProbeBefore)
{
    m_platform->probe = QStringLiteral("/bin/sleep 60");
    auto first = std::make_unique<CamParams>();
    first->getResolutionCount(0);
    ASSERT_TRUE(poc->waitForStarted());
    const auto sleeper = static_cast<pid_t>(poc->processId());
    probePrints("[x] 1280x720@[30.0 30.0]fps\n", "exec sleep 60");
    m_params.getResolutionCount(0);
    EXPECT_FALSE(isProcessCmd);
    EXPECT_NE(::kill(sleeper, 0), 0) << "still running";
    first.reset(); // must not take the probe of the other object along
    ASSERT_NE(poc, nullptr);
    ASSERT_TRUE(m_main.wait(kTimeoutMs)) << "the modes count although the probe lingers";
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
