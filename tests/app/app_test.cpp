#include "app/log.h"
#include "app/paths.h"
#include "app/replaced_file.h"
#include "app/settings.h"
#include "app/single_instance.h"
#include "app/state.h"
#include "support/files.h"
#include "support/temporary_home.h"

#include <QElapsedTimer>
#include <QRegularExpression>
#include <QSysInfo>
#include <QtTest>

#include <atomic>
#include <thread>
#include <vector>

namespace {

TEST(Paths, FollowTheBundleAndFallBackBesideTheProgram)
{
    const QStringList bundle = ffmpegCandidates("/Applications/Pictor.app/Contents/MacOS");
    EXPECT_EQ(bundle[0], "/Applications/ffmpeg");
    EXPECT_EQ(bundle[1], "/Applications/Pictor.app/Contents/MacOS/ffmpeg");
    EXPECT_EQ(languagePathFor("/Applications/Pictor.app/Contents/MacOS"),
              "/Applications/Pictor.app/Contents/Resources");

    const QStringList plain = ffmpegCandidates("/opt/pictor");
    EXPECT_EQ(plain[0], "/opt/pictor/ffmpeg/ffmpeg");
    EXPECT_EQ(plain[1], "/opt/pictor/ffmpeg");
    EXPECT_EQ(plain[2], "/opt/pictor/Pictor.app/Contents/MacOS/ffmpeg");
    EXPECT_EQ(languagePathFor("/opt/pictor"), "/opt/pictor/Resources");

    EXPECT_EQ(SupplyZero(7), "07");
    EXPECT_EQ(SupplyZero(10), "10");
    EXPECT_EQ(SupplyZero(-5), "0-5");
}

TEST(Settings, SurviveARoundTripAndFallToZeroWhenDamaged)
{
    const TemporaryHome home;
    SaveFolderPath = QString::fromUtf8("/tmp/Bücher, 图/a b");
    fImgformat = 9;
    colorMode = 8;
    cutMode = 7;
    fNameType = 6;
    ImgQuality = 5;
    sLanguage = 4;
    fRecformat = "avi";
    writecfgini(settingsPath());
    EXPECT_TRUE(readFile(settingsPath()).contains("[Set]\n"));
    const QString wanted = std::exchange(SaveFolderPath, {});
    fImgformat = colorMode = fNameType = ImgQuality = sLanguage = 0;
    cutMode = 0;
    fRecformat.clear();
    readcfgini(settingsPath());
    EXPECT_EQ(SaveFolderPath, wanted);
    EXPECT_EQ((std::vector<int>{fImgformat, colorMode, cutMode, fNameType, ImgQuality, sLanguage}),
              (std::vector<int>{9, 8, 7, 6, 5, 4}));
    EXPECT_EQ(fRecformat, "avi");
    EXPECT_TRUE(isQualityChosen);

    // One key alone, garbage, a folder: zero and empty for all that cannot be read.
    writeFile(home.path() + "/partial.ini", "[Set]\ncolorMode=2\n");
    writeFile(home.path() + "/garbage.ini", QByteArray(4096, '\x8f') + QByteArray(99, '\0'));
    for (const char *name : {"/partial.ini", "/garbage.ini", "/"}) {
        SaveFolderPath = "/tmp/x";
        ImgQuality = 10;
        readcfgini(home.path() + name);
        EXPECT_EQ(colorMode, name == std::string("/partial.ini") ? 2 : 0) << name;
        EXPECT_EQ(ImgQuality, 0) << name;
        EXPECT_FALSE(isQualityChosen) << name;
        EXPECT_EQ(areSettingsDamaged, name != std::string("/partial.ini")) << name;
        EXPECT_TRUE(SaveFolderPath.isEmpty()) << name;
    }
    writecfgini(home.path());
    EXPECT_TRUE(QFileInfo(home.path()).isDir());
}

TEST(Settings, AreWrittenAtOnceWhereAKilledProgramLeftAnEmptyLock)
{
    const TemporaryHome home;
    writeFile(settingsPath() + ".lock", {});
    QElapsedTimer clock;
    clock.start();
    writecfgini(settingsPath());
    EXPECT_TRUE(readFile(settingsPath()).contains("[Set]\n"));
    EXPECT_LT(clock.elapsed(), 15000) << "half the time after which the lock counts as stale";
    areSettingsReadOnly = true;
    QFile::remove(settingsPath());
    writecfgini(settingsPath());
    areSettingsReadOnly = false;
    EXPECT_FALSE(QFile::exists(settingsPath())) << "they belong to another instance";
}

TEST(SingleInstance, ASecondOneWakesTheFirstUnlessItIsElsewhereOrGone)
{
    const TemporaryHome home;
    using Role = SingleInstance::Role;
    const QString lock = home.documents() + "/.pictor.lock";
    {
        SingleInstance first(settingsPath());
        ASSERT_EQ(first.take(), Role::First);
        int woken = 0;
        first.setWake([&woken] { ++woken; });
        std::atomic<int> role = -1;
        std::thread second([&role] { role = int(SingleInstance(settingsPath()).take()); });
        EXPECT_TRUE(QTest::qWaitFor([&] { return role >= 0; }, 10000));
        second.join();
        EXPECT_EQ(role, int(Role::HandedOver));
        EXPECT_EQ(woken, 1);
    }
    writeFile(lock, "4242\npictor\nanother.machine\n");
    SingleInstance guest(settingsPath());
    EXPECT_EQ(guest.take(), Role::Elsewhere);
    EXPECT_EQ(guest.otherMachine(), "another.machine");
    QFile old(lock);
    ASSERT_TRUE(old.open(QIODevice::ReadWrite));
    old.setFileTime(QDateTime::currentDateTime().addSecs(-2 * 3600), QFile::FileModificationTime);
    old.close();
    EXPECT_EQ(SingleInstance(settingsPath()).take(), Role::First) << "the machine was renamed";
    writeFile(lock, "2147483646\npictor\n" + QSysInfo::machineHostName().toUtf8() + '\n');
    EXPECT_EQ(SingleInstance(settingsPath()).take(), Role::First) << "that process is gone";
}

TEST(ReplacedFiles, GoToTheTrashOrBesideAndAreTold)
{
    const TemporaryHome home;
    QList<ReplacedFile> told;
    setReplacedListener([&told](const ReplacedFile &file) { told << file; });
    const QString path = writeFile(home.path() + "/page.tar.jpg", "old");
    bool failed = true;
    const auto inTrash = keepReplaced(path, failed);
    ASSERT_TRUE(inTrash && !failed && inTrash->isInTrash);
    EXPECT_FALSE(QFile::exists(path));
    EXPECT_EQ(readFile(inTrash->keptAs), "old");

    ASSERT_TRUE(QDir(home.path() + "/.local").removeRecursively());
    writeFile(home.path() + "/.local", "no folder, so no trash");
    for (int i = 1; i <= 2; ++i) {
        writeFile(path, "old");
        const auto beside = keepReplaced(path, failed);
        ASSERT_TRUE(beside && !failed);
        EXPECT_EQ(readFile(beside->keptAs), "old");
        EXPECT_FALSE(beside->isInTrash);
        EXPECT_TRUE(QRegularExpression(R"(^/.*/page\.tar \(\d{4}-\d\d-\d\d [\d-]{8}(, 2)?\)\.jpg$)")
                        .match(beside->keptAs)
                        .hasMatch())
            << beside->keptAs.toStdString();
        tellReplaced(*beside);
    }
    EXPECT_EQ(told.size(), 2);
    setReplacedListener({});
    writeFile(path, "old");
    EXPECT_FALSE(keepReplaced(path, failed)) << "nobody listens";
    EXPECT_TRUE(QFile::exists(path));
}

TEST(Log, LinesOfManyThreadsStayWhole)
{
    const TemporaryHome home;
    ASSERT_TRUE(QDir(home.documents()).removeRecursively()); // the log makes its own folder
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t)
        threads.emplace_back([] {
            for (int i = 0; i < 50; ++i)
                WriteLog("a message that is long enough to be torn");
        });
    for (std::thread &thread : threads)
        thread.join();
    const QList<QByteArray> lines = readLog().split('\n');
    ASSERT_EQ(lines.size(), 201);
    static const QRegularExpression form(
        "^\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d a message that is long enough to be torn \r$");
    for (int i = 0; i < 200; ++i)
        EXPECT_TRUE(form.match(QString::fromUtf8(lines[i])).hasMatch()) << lines[i].constData();
}

TEST(Log, LiesInAFolderCutAtALetter)
{
    const TemporaryHome home;
    const QByteArray start = home.path().toUtf8() + '/';
    // Byte 127 would be half a letter.
    const QByteArray name = QByteArray(start.size() % 2, 'x') + QByteArray("ü").repeated(80);
    qputenv("HOME", start + name);
    ASSERT_TRUE(QDir().mkpath(QString::fromUtf8(start + name) + "/Documents"));
    WriteLog("cut");
    EXPECT_TRUE(QFile::exists(QString::fromUtf8((start + name).left(126)) + "/scanerlog"));
}

TEST(Log, RestartsWhenTooLong)
{
    const TemporaryHome home;
    const QString path = writeFile(home.documents() + "/scanerlog", "");
    ASSERT_TRUE(QFile::resize(path, 20971519));
    WriteLog("still fits");
    EXPECT_GT(QFileInfo(path).size(), 20971519);
    WriteLog("too long");
    EXPECT_FALSE(QFile::exists(path));
    WriteLog("fresh");
    EXPECT_TRUE(readLog().endsWith(" fresh \r\n"));
}

TEST(Log, WaitsForALostFileOnceOnly)
{
    const TemporaryHome home;
    ASSERT_TRUE(QDir(home.documents()).removeRecursively());
    writeFile(home.documents(), "a file where the folder should be");
    WriteLog("lost after three attempts");
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < 20; ++i)
        WriteLog("lost at once");
    EXPECT_LT(timer.elapsed(), 1000);
    QFile::remove(home.documents());
    WriteLog("back");
    EXPECT_TRUE(readLog().endsWith(" back \r\n"));
}

} // namespace
