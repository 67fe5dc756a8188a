#include "imaging/combine.h"
#include "support/files.h"
#include "support/pictures.h"

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

namespace {

const cv::Scalar kWhite = cv::Scalar::all(255);

std::vector<cv::Mat> fourPages()
{
    return {noisePicture({100, 80}, CV_8UC3, 1), noisePicture({90, 70}, CV_8UC3, 2),
            noisePicture({30, 110}, CV_8UC3, 3), noisePicture({60, 20}, CV_8UC3, 4)};
}

class MergeFiles : public FolderTest
{
protected:
    MergeJob job(int pages, const char *out, const char *ending = "png") const
    {
        MergeJob result;
        result.outPath = file(out);
        for (int i = 0; i < pages; ++i) {
            result.files.push_back(file(QString("page%1.%2").arg(i).arg(ending)));
            cv::imwrite(result.files.back(), fourPages()[static_cast<size_t>(i) % 4]);
        }
        return result;
    }

    std::string m_cause;
};

} // namespace

TEST(MergePages, PlacesEachPageOnWhite)
{
    const std::vector<cv::Mat> pages = fourPages();
    const cv::Mat below = pastePages({pages[0], pages[1]}, MergeDirection::Vertical, 10);
    cv::Mat expected(80 + 70 + 30, 120, CV_8UC3, kWhite);
    pages[0].copyTo(expected(cv::Rect(10, 10, 100, 80)));
    pages[1].copyTo(expected(cv::Rect(10, 100, 90, 70)));
    EXPECT_TRUE(identical(below, expected));

    const cv::Mat beside = pastePages(pages, MergeDirection::Horizontal, 10);
    expected = cv::Mat(130, 100 + 90 + 30 + 60 + 50, CV_8UC3, kWhite);
    for (size_t i = 0, x = 10; i < 4; x += static_cast<size_t>(pages[i++].cols) + 10)
        pages[i].copyTo(expected(cv::Rect(cv::Point(static_cast<int>(x), 10), pages[i].size())));
    EXPECT_TRUE(identical(beside, expected));
}

TEST_F(MergeFiles, PastesFourPagesAndRemovesAll)
{
    for (const char *ending : {"png", "jpg"}) {
        const MergeJob merge = job(5, "merged.png", ending);
        std::vector<cv::Mat> pages;
        for (size_t i = 0; i < 4; ++i)
            pages.push_back(cv::imread(merge.files[i]));
        EXPECT_EQ(mergeImageFiles(merge, m_cause), MergeDone);
        EXPECT_TRUE(
            identical(cv::imread(merge.outPath), pastePages(pages, MergeDirection::Vertical, 10)))
            << ending;
        EXPECT_EQ(names(), QStringList("merged.png"));
    }
}

TEST_F(MergeFiles, PastesAGrayPageAndOneThatAMarkTurns)
{
    const MergeJob merge = job(2, "merged.png", "jpg");
    cv::imwrite(merge.files[0], noisePicture({40, 24}, CV_8UC1, 5));
    const QByteArray quarterTurn = QByteArray::fromHex("ffe10022457869660000"
                                                       "4d4d002a00000008"
                                                       "0001011200030000000100060000"
                                                       "00000000");
    writeFile(path("page1.jpg"), readFile(path("page0.jpg")).insert(2, quarterTurn));
    const std::vector<cv::Mat> pages{cv::imread(merge.files[0]), cv::imread(merge.files[1])};
    ASSERT_EQ(pages[1].size(), cv::Size(24, 40));
    EXPECT_EQ(mergeImageFiles(merge, m_cause), MergeDone);
    EXPECT_TRUE(
        identical(cv::imread(merge.outPath), pastePages(pages, MergeDirection::Vertical, 10)));
}

TEST_F(MergeFiles, MayTakeTheNameOfAPage)
{
    MergeJob merge = job(2, "page0.png");
    EXPECT_EQ(mergeImageFiles(merge, m_cause), MergeDone);
    EXPECT_EQ(names(), QStringList("page0.png"));
}

TEST_F(MergeFiles, KeepsThePagesUnlessThePictureIsSaved)
{
    EXPECT_EQ(mergeImageFiles(job(1, "one.png"), m_cause), MergeTooFewPages);
    MergeJob merge = job(3, "missing/folder.png");
    EXPECT_EQ(mergeImageFiles(merge, m_cause), MergeNotSaved);
    merge = job(3, "out.png");
    QFile::resize(QString::fromStdString(merge.files[2]), 20);
    EXPECT_EQ(mergeImageFiles(merge, m_cause), MergeUnreadablePage);
    EXPECT_NE(m_cause.find(merge.files[2]), std::string::npos);
    EXPECT_EQ(names(), QStringList({"page0.png", "page1.png", "page2.png"}));

    // The head announces a picture of which nothing can be decoded.
    merge = job(2, "out.png", "jpg");
    QByteArray spoilt = readFile(path("page1.jpg"));
    const int tables = spoilt.indexOf("\xff\xdb");
    spoilt[tables + 4] = '\x0f';
    writeFile(path("page1.jpg"), spoilt);
    EXPECT_EQ(mergeImageFiles(merge, m_cause), MergeUnreadablePage);
    EXPECT_TRUE(names().contains("page1.jpg"));
    EXPECT_FALSE(names().contains("out.png"));
}

TEST(CombineFrames, PastesTheAssistPictureAndClipsIt)
{
    const cv::Mat main = noisePicture({200, 100}, CV_8UC3, 1);
    const cv::Mat assist = noisePicture({64, 48}, CV_8UC3, 2);
    cv::Mat mainBgr, assistBgr;
    cv::cvtColor(main, mainBgr, cv::COLOR_RGB2BGR);
    cv::cvtColor(assist, assistBgr, cv::COLOR_RGB2BGR);
    cv::resize(assistBgr, assistBgr, cv::Size(50, 40));

    cv::Mat expected = mainBgr.clone();
    assistBgr.copyTo(expected(cv::Rect(30, 20, 50, 40)));
    EXPECT_TRUE(identical(combineFrames(main, assist, {30, 20, 50, 40}), expected));

    expected = mainBgr.clone();
    assistBgr(cv::Rect(10, 0, 40, 15)).copyTo(expected(cv::Rect(0, 85, 40, 15)));
    EXPECT_TRUE(identical(combineFrames(main, assist, {-10, 85, 50, 40}), expected));

    EXPECT_TRUE(identical(combineFrames(main, assist, {300, 0, 50, 40}), mainBgr));
    EXPECT_TRUE(combineFrames(main, cv::Mat(), {0, 0, 5, 5}).empty());
    EXPECT_TRUE(combineFrames(cv::Mat(), assist, {0, 0, 5, 5}).empty());
}
