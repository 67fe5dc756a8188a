#include "platform/stand_descriptor.h"
#include "platform/stand_platform.h"
#include "support/files.h"

#include <QProcess>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

// The runtime folder as a running stand leaves it, without a stand: descriptors and a held lock.
class StandPlatformTest : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(QDir().mkpath(m_folder));
        ::chmod(QFile::encodeName(m_folder), 0700);
        m_lock = ::open(QFile::encodeName(standLockFile(m_folder)), O_RDWR | O_CREAT, 0600);
        ASSERT_EQ(::flock(m_lock, LOCK_EX | LOCK_NB), 0);
        StandDevice assist, main;
        assist.name = "assist";
        assist.order = 1;
        assist.id = "x-120900a1";
        main.name = "main";
        main.id = "x-12090001";
        main.modes = {{{{640, 480}, 30}, "/run/main 480@30"},
                      {{{1920, 1080}, 30}, "/run/main 1080@30"},
                      {{{1920, 1080}, 15}, "/run/main 1080@15"},
                      {{{3264, 2448}, 15}, "/run/main 2448@15"}};
        ASSERT_TRUE(writeStandDevice(m_folder, assist) && writeStandDevice(m_folder, main));
    }

    void TearDown() override
    {
        ::close(m_lock);
        QDir(m_folder).removeRecursively();
    }

    const QString m_folder = standFolder();
    StandPlatform m_platform;
    int m_lock = -1;
};

} // namespace

TEST_F(StandPlatformTest, OpensTheModeOfTheRightSizeAndRateInTheStandsOrder)
{
    ASSERT_EQ(m_platform.cameras().size(), 2);
    EXPECT_TRUE(m_platform.cameras()[1].uniqueId.endsWith("120900a1"));
    EXPECT_EQ(m_platform.modes(0).value(3).size, QSize(3264, 2448));
    EXPECT_TRUE(m_platform.modes(2).isEmpty() && m_platform.modes(-1).isEmpty());
    EXPECT_EQ(m_platform.captureSource(0, "1920x1080", "15").url, "unix:/run/main 1080@15");
    EXPECT_EQ(m_platform.captureSource(0, "1920x1080", "24").url, "unix:/run/main 1080@30");
    EXPECT_FALSE(QFile::exists(m_platform.captureSource(5, "640x480", "30").url.mid(5)));
    EXPECT_FALSE(QFile::exists(m_platform.captureSource(0, "800x600", "30").url.mid(5)));
    EXPECT_TRUE(m_platform.canFocus(0));
    EXPECT_FALSE(m_platform.canFocus(2));
    EXPECT_FALSE(m_platform.focus(0)) << "no stand answers";
}

TEST_F(StandPlatformTest, NothingIsTakenFromAFolderThatOthersMayEnter)
{
    const QString link = QDir::tempPath() + QStringLiteral("/pictor-link-%1").arg(::getpid());
    ASSERT_TRUE(QFile::link(m_folder, link));
    QString why;
    EXPECT_FALSE(isPrivateFolder(link, &why));
    EXPECT_TRUE(why.contains(link));
    QFile::remove(link);

    ::chmod(QFile::encodeName(m_folder), 0755);
    EXPECT_TRUE(m_platform.cameras().isEmpty());
    ::chmod(QFile::encodeName(m_folder), 0700);
    ASSERT_EQ(m_platform.cameras().size(), 2);
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can give a folder away";
    ASSERT_EQ(::chown(QFile::encodeName(m_folder), 1, 1), 0);
    EXPECT_TRUE(m_platform.cameras().isEmpty());
    ASSERT_EQ(::chown(QFile::encodeName(m_folder), ::geteuid(), ::getegid()), 0);
}

TEST_F(StandPlatformTest, ADamagedOrEndlessDescriptorHidesOnlyItsDevice)
{
    for (const QByteArray &text :
         {QByteArray("{\"kind\":"), "{\"kind\":\"camera\"" + QByteArray(1 << 17, ' ') + '}'})
    {
        writeFile(m_folder + "/assist.json", text);
        EXPECT_EQ(m_platform.cameras().size(), 1);
    }
}
