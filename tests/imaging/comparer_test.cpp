#include "imaging/frame_comparer.h"
#include "imaging/plain_comparer.h"
#include "support/pictures.h"
#include "support/sheet_images.h"

#include <gtest/gtest.h>

namespace {

// Speckles and blocks of many sizes, some with holes, around the size of the smallest sheet.
cv::Mat speckled(cv::Size size, unsigned seed)
{
    cv::Mat picture(size, CV_8UC3, cv::Scalar::all(50));
    cv::RNG random(seed);
    for (int i = 0; i < 40; ++i) {
        const cv::Rect block(random.uniform(0, size.width), random.uniform(0, size.height),
                             random.uniform(1, 4 + static_cast<int>(seed) * 3),
                             random.uniform(1, 60));
        cv::rectangle(picture, block, cv::Scalar(90, 200, 160), i % 3 ? cv::FILLED : 2);
    }
    sheets::addNoise(picture, seed % 4, seed);
    return picture;
}

} // namespace

TEST(SheetInView, AnswersAsThePlainStepsDo)
{
    int seen = 0, unseen = 0;
    for (unsigned seed = 0; seed < 24; ++seed) {
        // The last size is searched reduced; its last column and row lie beyond a multiple of four.
        const cv::Size sizes[] = {{320, 240}, {201, 317}, {2048, 1536}, {2050, 1539}};
        const cv::Mat picture = speckled(sizes[seed % 4], seed);
        FrameSample sample(picture);
        const int answer = CheckIsHavePaper(sample);
        EXPECT_EQ(answer, plainHavePaper(picture)) << seed;
        ++(answer == 0 ? seen : unseen);
    }
    EXPECT_GT(seen, 3);
    EXPECT_GT(unseen, 3);
    FrameSample nothing{cv::Mat()};
    EXPECT_EQ(CheckIsHavePaper(nothing), -1);
}

TEST(FrameComparer, AnswersAsThePlainStepsDo)
{
    int still = 0, changed = 0;
    for (const cv::Size size : {cv::Size(333, 200), cv::Size(2592, 1944), cv::Size(2594, 1946)}) {
        FrameComparer comparer;
        cv::Mat previous;
        cv::Mat picture = noisePicture(size, CV_8UC3, 1);
        for (int i = 0; i < 12; ++i) {
            // About 9 to 12 percent of the pixels change: around the limit.
            const int rows = size.height * (i % 6 + 10) / 100;
            if (i % 6 != 0)
                noisePicture({size.width, rows}, CV_8UC3, static_cast<unsigned>(i) + 2)
                    .copyTo(picture.rowRange(7 * i, 7 * i + rows));
            FrameSample sample(picture);
            const int answer = comparer.CompareBuf(sample, 25, 90);
            EXPECT_EQ(answer, plainCompare(picture, previous)) << size << i;
            ++(answer == 0 ? still : changed);
        }
        EXPECT_EQ(comparer.compareCount(), 12);
    }
    EXPECT_GT(still, 3);
    EXPECT_GT(changed, 3);
}

TEST(FrameComparer, StartsAfreshAfterAResetAndAChangeOfSize)
{
    FrameComparer comparer;
    const auto compare = [&comparer](cv::Size size, int level) {
        FrameSample sample{cv::Mat(size, CV_8UC3, cv::Scalar::all(level))};
        return comparer.CompareBuf(sample, 25, 90);
    };
    EXPECT_EQ(compare({100, 100}, 0), 0);
    EXPECT_EQ(compare({100, 100}, 25), -1);
    EXPECT_EQ(compare({100, 100}, 49), 0);
    EXPECT_EQ(compare({120, 80}, 200), 0);
    EXPECT_EQ(comparer.compareCount(), 1);
    comparer.destroyCompare();
    EXPECT_EQ(compare({120, 80}, 0), 0);
}
