#include "e2e/application.h"
#include "support/stand_process.h"
#include "support/temporary_home.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <gtest/gtest.h>

namespace {

/// The built program as a process of its own, which is ended with the object.
class Program
{
public:
    explicit Program(const QString &path)
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_QPA_PLATFORM", "offscreen");
        environment.insert("QT_LOGGING_RULES", "*.debug=true");
        environment.remove("DISPLAY");
        m_process.setProcessEnvironment(environment);
        m_process.setProcessChannelMode(QProcess::MergedChannels);
        m_process.start(path, QStringList());
    }

    ~Program()
    {
        m_process.kill();
        m_process.waitForFinished();
    }

    /// Waits until the program has printed `text` `count` times.
    bool prints(const QByteArray &text, int count = 1, int timeoutMs = 15000)
    {
        return waitFor(
            [&] {
                m_output += m_process.readAll();
                return m_output.count(text) >= count;
            },
            timeoutMs);
    }

    /// Asks it to end, as a session's end does, and waits.
    bool ends()
    {
        m_process.terminate();
        return waitFor([this] { return m_process.state() == QProcess::NotRunning; }, 4000);
    }

    bool endedWell() const
    {
        return m_process.exitStatus() == QProcess::NormalExit && m_process.exitCode() == 0;
    }

    QByteArray output() const { return m_output; }

private:
    QProcess m_process;
    QByteArray m_output;
};

enum class Sees { Picture, NoPicture };

/// Starts the program, checks that it answers to a camera that is plugged in, and ends it.
void expectWorks(const QString &path = StandProcess::binaryFolder() + "/pictor",
                 Sees sees = Sees::Picture)
{
    StandProcess stand({"--modes", "1280x720@30", "--assist"});
    ASSERT_TRUE(stand.isReady() && stand.command("unplug assist"));
    Program pictor(path);
    ASSERT_TRUE(pictor.prints("getResolutionCount end")) << pictor.output().constData();
    if (sees == Sees::Picture) {
        ASSERT_TRUE(pictor.prints("run start")) << pictor.output().constData();
    }
    // Noticing the second camera takes an event loop that turns.
    ASSERT_TRUE(stand.command("plug assist"));
    EXPECT_TRUE(pictor.prints("getResolutionCount end", 2)) << pictor.output().constData();
    EXPECT_TRUE(pictor.ends());
    EXPECT_TRUE(pictor.endedWell()) << pictor.output().constData();
}

class Startup : public testing::Test
{
protected:
    QString inDocuments(const char *name) const { return m_home.documents() + '/' + name; }

    bool hasSettings(const QString &documents) const
    {
        QFile file(documents + "/scanner.ini");
        const QByteArray text = file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        return text.contains("SaveFolderPath=") && text.contains("ImgQuality=80");
    }

    TemporaryHome m_home;
};

TEST_F(Startup, WithoutADocumentsFolderItIsMade)
{
    ASSERT_TRUE(QDir(m_home.documents()).removeRecursively());
    expectWorks();
    EXPECT_TRUE(hasSettings(m_home.documents()));
    EXPECT_TRUE(QFileInfo(inDocuments("Image")).isDir());
}

TEST_F(Startup, WhereTheDocumentsFolderIsAFile)
{
    ASSERT_TRUE(QDir(m_home.documents()).removeRecursively());
    QFile file(m_home.documents());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("mine");
    file.close();
    expectWorks();
    EXPECT_EQ(file.size(), 4);
}

TEST_F(Startup, InAHomeWithBlanksAndForeignLetters)
{
    const QString home = m_home.path() + QString::fromUtf8("/Zoë  Müller 用户");
    ASSERT_TRUE(QDir().mkpath(home + "/Documents"));
    qputenv("HOME", home.toUtf8());
    expectWorks();
    EXPECT_TRUE(hasSettings(home + "/Documents"));
    EXPECT_TRUE(QFileInfo(home + "/Documents/Image").isDir());
}

TEST_F(Startup, WithSettingsThatAreGarbage)
{
    QFile file(inDocuments("scanner.ini"));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    for (int i = 0; i < 20000; ++i)
        file.putChar(char(i * 31 + i / 7));
    file.close();
    expectWorks();
    EXPECT_TRUE(hasSettings(m_home.documents())) << "written anew at the end";
}

TEST_F(Startup, WithAFolderInPlaceOfTheSettings)
{
    ASSERT_TRUE(QDir().mkpath(inDocuments("scanner.ini/mine")));
    expectWorks();
    EXPECT_TRUE(QFileInfo(inDocuments("scanner.ini/mine")).isDir());
}

TEST_F(Startup, WithoutItsHelpers)
{
    const QString folder = m_home.path() + "/pro gram";
    ASSERT_TRUE(QDir().mkpath(folder));
    const QString built = StandProcess::binaryFolder();
    ASSERT_TRUE(QFile::copy(built + "/pictor", folder + "/pictor"));
    expectWorks(folder + "/pictor", Sees::NoPicture);
    ASSERT_TRUE(QFile::copy(built + "/pictor-probe", folder + "/pictor-probe"));
    expectWorks(folder + "/pictor"); // without ffmpeg
}

} // namespace
