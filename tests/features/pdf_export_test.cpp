#include "features/pdf_export.h"
#include "support/files.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QProcess>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

namespace {

cv::Mat picture(int width, int height, int type = CV_8UC3)
{
    cv::Mat image(height, width, type);
    cv::randu(image, 0, type == CV_16UC3 ? 65535 : 255);
    return image;
}

QByteArray output(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished()) << program.toStdString();
    EXPECT_EQ(process.exitCode(), 0) << process.peek(2000).constData();
    return process.readAll();
}

class PdfExportTest : public testing::Test
{
protected:
    QString add(const char *name, const cv::Mat &image)
    {
        const QString path = m_dir.filePath(QString::fromUtf8(name));
        EXPECT_TRUE(cv::imwrite(path.toStdString(), image));
        return path;
    }

    QTemporaryDir m_dir;
    QString m_target = m_dir.filePath("out.pdf");
    std::function<bool(int)> m_always = [](int) { return true; };
};

TEST_F(PdfExportTest, TakesEveryKindOfPictureInOrder)
{
    const QString jpg = add("eins.jpg", picture(120, 80));
    const QString upper = m_dir.filePath("ZWEI.JPG");
    ASSERT_TRUE(QFile::copy(jpg, upper));
    const QString deep = add("deep.png", picture(50, 60, CV_16UC3));
    const QString bmp = add("drei vier.bmp", picture(70, 90));
    const QString tiff = m_dir.filePath("双.tif");
    const std::vector<cv::Mat> sides{picture(31, 41), picture(51, 61)};
    ASSERT_TRUE(cv::imwritemulti(tiff.toStdString(), sides));

    const PdfExportResult result =
        exportPdf({jpg, bmp, upper, tiff, deep, jpg}, m_target, m_always);
    ASSERT_EQ(result.state, PdfExportResult::State::Done) << result.cause.toStdString();
    output("qpdf", {"--check", m_target});
    const QByteArray info = output("pdfinfo", {"-l", "-1", m_target});
    const char *const sizes[] = {"120 x 80", "70 x 90", "120 x 80", "31 x 41",
                                 "51 x 61",  "50 x 60", "120 x 80"};
    int at = 0;
    for (const char *size : sizes) {
        at = info.indexOf(size, at);
        ASSERT_GE(at, 0) << size << " in " << info.constData();
        ++at;
    }
    EXPECT_TRUE(readFile(m_target).contains(readFile(jpg))) << "JPEG data is embedded as it is";
    output("pdfimages", {"-png", "-f", "2", "-l", "2", m_target, m_dir.filePath("page")});
    const cv::Mat page = cv::imread(m_dir.filePath("page-000.png").toStdString());
    ASSERT_FALSE(page.empty());
    EXPECT_EQ(cv::norm(page, cv::imread(bmp.toStdString()), cv::NORM_INF), 0) << "nothing is lost";
}

TEST_F(PdfExportTest, ShowsPhotosUprightAndBitmapsWithAnUnusedByteOpaque)
{
    // Held sideways (orientation 6) and mirrored (2), as cameras note it in the file.
    const auto photo = [this](const char *name, char orientation) {
        const QString path = add(name, picture(120, 80));
        QFile file(path);
        EXPECT_TRUE(file.open(QIODevice::ReadWrite));
        QByteArray bytes = file.readAll();
        QByteArray exif = QByteArray::fromHex("ffe10022457869660000"
                                              "4d4d002a00000008" // big-endian
                                              "0001011200030000000100ff0000"
                                              "00000000");
        exif[29] = orientation;
        file.seek(0);
        file.write(bytes.insert(2, exif));
        return path;
    };
    cv::Mat bitmap(20, 30, CV_8UC4, cv::Scalar(10, 20, 200, 0));
    const QString bmp = add("unused.bmp", bitmap);
    const PdfExportResult result =
        exportPdf({photo("side.jpg", 6), photo("mirror.jpg", 2), bmp}, m_target, m_always);
    ASSERT_EQ(result.state, PdfExportResult::State::Done) << result.cause.toStdString();
    const QByteArray info = output("pdfinfo", {"-l", "-1", m_target});
    EXPECT_TRUE(info.contains("1 rot:   90")) << info.constData();
    EXPECT_TRUE(info.contains("2 rot:   0")) << info.constData();
    output("pdfimages", {"-png", "-f", "3", "-l", "3", m_target, m_dir.filePath("opaque")});
    const cv::Mat page = cv::imread(m_dir.filePath("opaque-000.png").toStdString());
    ASSERT_FALSE(page.empty());
    EXPECT_EQ(page.at<cv::Vec3b>(5, 5), cv::Vec3b(10, 20, 200));
}

TEST_F(PdfExportTest, KeepsNoMoreThanOnePictureConverted)
{
    const QString temporary = m_dir.filePath("temporary");
    ASSERT_TRUE(QDir().mkdir(temporary));
    const QByteArray before = qgetenv("TMPDIR");
    qputenv("TMPDIR", temporary.toUtf8());
    int most = 0;
    const QString bmp = add("a.bmp", picture(40, 40));
    const auto count = [&](int) {
        QDirIterator files(temporary, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
        int here = 0;
        for (; files.hasNext(); files.next())
            ++here;
        most = std::max(most, here);
        return true;
    };
    EXPECT_EQ(exportPdf({bmp, bmp, bmp, bmp, bmp}, m_target, count).state,
              PdfExportResult::State::Done);
    before.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", before);
    EXPECT_LE(most, 1);
    EXPECT_TRUE(QDir(temporary).isEmpty());
}

TEST_F(PdfExportTest, FailureNamesTheCauseAndKeepsTheEarlierFile)
{
    const QString good = add("good.jpg", picture(40, 40));
    const QString text = m_dir.filePath("notes.txt");
    for (const QString &path : {m_target, text}) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("earlier");
    }
    const QString gone = m_dir.filePath("gone.jpg");
    PdfExportResult result = exportPdf({good, gone}, m_target, m_always);
    EXPECT_EQ(result.state, PdfExportResult::State::Failed);
    EXPECT_TRUE(result.cause.contains("gone.jpg"));

    result = exportPdf({good, text}, m_target, m_always);
    EXPECT_EQ(result.state, PdfExportResult::State::Failed);
    EXPECT_TRUE(result.cause.contains("notes.txt"));

    result = exportPdf({good, add("thin.png", picture(2, 40))}, m_target, m_always);
    EXPECT_EQ(result.state, PdfExportResult::State::Failed);
    EXPECT_TRUE(result.cause.contains("thin.png"));

    result = exportPdf({good, good}, m_target, [](int done) { return done < 1; });
    EXPECT_EQ(result.state, PdfExportResult::State::Cancelled);
    EXPECT_EQ(readFile(m_target), "earlier");

    result = exportPdf({good}, m_dir.filePath("no folder/out.pdf"), m_always);
    EXPECT_EQ(result.state, PdfExportResult::State::Failed);
    EXPECT_FALSE(result.cause.isEmpty());
}

TEST_F(PdfExportTest, RunsOneExportAtATimeBesideTheWindow)
{
    const QString page = add("page.jpg", picture(400, 300));
    PdfExport exporter;
    QSignalSpy finished(&exporter, &PdfExport::finished);
    QSignalSpy progress(&exporter, &PdfExport::progress);
    ASSERT_TRUE(exporter.start({page, page, page}, m_target));
    EXPECT_FALSE(exporter.start({page}, m_target));
    ASSERT_TRUE(finished.wait());
    EXPECT_FALSE(exporter.isRunning());
    EXPECT_EQ(progress.size(), 4);
    EXPECT_TRUE(QFile::exists(m_target));
    EXPECT_TRUE(exporter.start({page}, m_target)) << "and again; the destructor ends it";
}

} // namespace
