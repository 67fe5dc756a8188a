#include "app/paths.h"
#include "app/state.h"
#include "imaging/assist_image.h"
#include "imaging/file_writer.h"
#include "imaging/image_files.h"
#include "imaging/path_parts.h"
#include "imaging/save_image.h"
#include "support/file_size_limit.h"
#include "support/files.h"
#include "support/pictures.h"
#include "support/sheet_images.h"

#include <gmock/gmock.h>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

using testing::HasSubstr;

namespace {

class ImageFiles : public FolderTest
{
protected:
    QByteArray bytes(const char *name) const { return readFile(path(name)); }
};

} // namespace

TEST_F(ImageFiles, WritesEveryFormatByItsEnding)
{
    const cv::Mat picture = noisePicture({40, 30}, CV_8UC3, 4);
    const std::pair<const char *, QByteArray> formats[] = {
        {"b.bmp", "BM"}, {"c.png", "\x89PNG"}, {"Größe 页.JPG", "\xFF\xD8"}, {"F.PDF", "%PDF-"}};
    for (const auto &[name, start] : formats) {
        EXPECT_EQ(saveImage(file(name), picture, SaveOptions(), false), "") << name;
        EXPECT_TRUE(bytes(name).startsWith(start)) << name;
    }
    EXPECT_THAT(saveImage(file("g.xyz"), picture, SaveOptions(), false), HasSubstr("g.xyz"));
    EXPECT_EQ(names().size(), 4) << names().join(' ').toStdString();
}

TEST_F(ImageFiles, AppliesTheJpegQuality)
{
    colorMode = ColorOriginal;
    // Sizes around whole coding units and bands, one too small for bands.
    for (const cv::Size size : {cv::Size(33, 20), cv::Size(300, 301), cv::Size(64, 512)}) {
        const cv::Mat picture = noisePicture(size, CV_8UC3, 7);
        for (const int quality : {20, 95}) {
            ImgQuality = quality;
            SaveImage(file("q.jpg"), picture, false);
            SaveCamTwoImage(file("assist.jpg"), picture, currentSaveOptions());
            std::vector<uchar> expected;
            cv::imencode(".jpg", picture, expected, {cv::IMWRITE_JPEG_QUALITY, quality});
            for (const char *name : {"q.jpg", "assist.jpg"}) {
                EXPECT_TRUE(
                    identical(cv::imread(file(name)), cv::imdecode(expected, cv::IMREAD_COLOR)));
                EXPECT_NEAR(bytes(name).size(), static_cast<double>(expected.size()), 60);
            }
        }
    }
    ImgQuality = 80;
    colorMode = ColorGray;
    SaveCamTwoImage(file("gray.png"), cv::Mat(9, 9, CV_8UC3, cv::Scalar(0, 0, 255)),
                    currentSaveOptions());
    EXPECT_EQ(cv::imread(file("gray.png")).at<cv::Vec3b>(4, 4), cv::Vec3b::all(76));
    colorMode = ColorOriginal;
}

TEST_F(ImageFiles, AFailureLeavesTheEarlierFileAndNoRemains)
{
    const cv::Mat picture = noisePicture({400, 300}, CV_8UC3, 6);
    for (const char *name : {"full.bmp", "full.pdf"}) {
        ASSERT_EQ(saveImage(file(name), picture, SaveOptions(), false), "");
        const QByteArray earlier = bytes(name);
        std::string error;
        {
            const FileSizeLimit limit(20000);
            error = saveImage(file(name), picture, SaveOptions(), false);
        }
        EXPECT_THAT(error, HasSubstr("File too large")) << name;
        EXPECT_EQ(bytes(name), earlier) << name;
        EXPECT_TRUE(readLog().contains("File too large")) << name;
        QFile::remove(documentsPath() + "/scanerlog");
    }
    EXPECT_EQ(names().size(), 2) << names().join(' ').toStdString();
    EXPECT_EQ(QDir(documentsPath()).entryList({"*.jpg"}).size(), 0);

    ASSERT_TRUE(QDir(m_dir.path()).mkdir("folder.jpg"));
    EXPECT_THAT(saveImage(file("folder.jpg"), picture, SaveOptions(), false),
                HasSubstr("Is a directory"));
    EXPECT_THAT(saveImage(file("missing/a.png"), picture, SaveOptions(), false),
                HasSubstr("No such file"));
    EXPECT_EQ(names().size(), 2) << names().join(' ').toStdString();
}

TEST_F(ImageFiles, WhatTakesTheTemporarysNameIsNeitherWrittenNorMoved)
{
    writeFile(path("page.jpg"), "old");
    writeFile(path("other"), "theirs");
    {
        PendingFile pending(file("page.jpg"));
        ASSERT_TRUE(pending.isOpen());
        const QString temporary = path(names().filter(".tmp").value(0));
        EXPECT_FALSE(isAbandonedTemporary(QFileInfo(temporary).fileName().toStdString()));
        ASSERT_TRUE(QFile::remove(temporary) && QFile::link(path("other"), temporary));
        EXPECT_TRUE(writeFile(QString::fromStdString(pending.pathOfDescriptor()), "new").size());
        EXPECT_FALSE(pending.commit());
    }
    EXPECT_EQ(bytes("page.jpg"), "old");
    EXPECT_EQ(bytes("other"), "theirs");
}

TEST_F(ImageFiles, TemporariesOfProcessesThatAreGoneAreKnown)
{
    QString living;
    {
        const PendingFile pending(file("page.jpg"));
        living = names().value(0);
    }
    QStringList parts = living.split('-');
    ASSERT_EQ(parts.size(), 4) << living.toStdString();
    parts[2] = "2147483646";
    EXPECT_TRUE(isAbandonedTemporary(parts.join('-').toStdString()));
    parts[1] = "0another";
    EXPECT_FALSE(isAbandonedTemporary(parts.join('-').toStdString())) << "of another machine";
}

TEST_F(ImageFiles, ResizesPictureFiles)
{
    const cv::Mat small = sheets::textPage({120, 160});
    cv::imwrite(file("a.png"), small);
    EXPECT_EQ(ImageResizeEx(file("a.png"), 300, 200), "");
    cv::Mat expected;
    cv::resize(small, expected, cv::Size(300, 200));
    EXPECT_TRUE(identical(cv::imread(file("a.png")), expected));

    const cv::Scalar tint(100, 0, 20);
    cv::imwrite(file("b.png"), cv::Mat(40, 40, CV_8UC3, tint));
    EXPECT_EQ(SavePaintImage(file("a.png"), file("b.png"), file("sum.png")), "");
    EXPECT_TRUE(identical(cv::imread(file("sum.png")), expected + tint));
    EXPECT_EQ(ImageResize(file("b.png"), file("a.png")), "");
    EXPECT_EQ(cv::imread(file("b.png")).size(), cv::Size(300, 200));
    const QByteArray before = bytes("a.png");
    EXPECT_NE(ImageResize(file("a.png"), file("none.png")), "");
    EXPECT_NE(ImageResizeEx(file("none.png"), 10, 10), "");
    EXPECT_EQ(bytes("a.png"), before);
    EXPECT_FALSE(QFile::exists(path("none.png")));
}

TEST(PathParts, SplitAtTheLastSlashAndDot)
{
    EXPECT_EQ(fileEnding("/a.b/c.D.JpG"), ".jpg");
    EXPECT_EQ(fileEnding("/a.b/c"), "");
    EXPECT_EQ(fileBaseName("/a/b/scan.2.jpg"), "scan.2");
    EXPECT_EQ(fileBaseName("/a.b/scan"), "");
    EXPECT_EQ(fileBaseName("scan.jpg"), "scan");
    EXPECT_EQ(fileFolder("/a/b/scan.jpg"), "/a/b/");
    EXPECT_EQ(fileFolder("scan.jpg"), "");
}
