#include "stand/art.h"
#include "stand/codes.h"
#include "stand/options.h"
#include "stand/render.h"
#include "support/files.h"

#include <opencv2/imgproc.hpp>
#include <zbar.h>

namespace {

QString readCode(const QString &scene)
{
    cv::Mat gray;
    cv::cvtColor(renderScene(findScenes(scene).at(0), {3264, 2448}).bgr, gray, cv::COLOR_BGR2GRAY);
    zbar::ImageScanner scanner;
    zbar::Image image(static_cast<unsigned>(gray.cols), static_cast<unsigned>(gray.rows), "Y800",
                      gray.data, gray.total());
    scanner.scan(image);
    return image.symbol_begin() == image.symbol_end()
               ? QString()
               : QString::fromStdString(image.symbol_begin()->get_data());
}

class SceneFolder : public FolderTest
{
};

} // namespace

TEST(Scene, CodesAreReadFromTheFullFrame)
{
    EXPECT_EQ(readCode("barcode"), eanSheetText());
    EXPECT_EQ(readCode("code128"), code128SheetText());
    EXPECT_EQ(readCode("qr"), qrText());
}

TEST(Scene, EverySheetLiesWhereItsCornersSayInEveryFormat)
{
    for (const QString &name : sceneNames()) {
        const Scene scene = findScenes(name).at(0);
        for (const cv::Size size : {cv::Size(640, 480), cv::Size(1280, 720), cv::Size(480, 640)}) {
            const RenderedScene seen = renderScene(scene, size);
            ASSERT_EQ(seen.bgr.size(), size);
            ASSERT_EQ(seen.corners.size(), scene.sheets.size());
            const cv::Rect2f frame(0, 0, static_cast<float>(size.width),
                                   static_cast<float>(size.height));
            for (const auto &corners : seen.corners) {
                for (const cv::Point2f &corner : corners)
                    EXPECT_TRUE(frame.contains(corner)) << qPrintable(name);
                cv::Mat inside(size, CV_8UC1, cv::Scalar(0));
                const std::vector<cv::Point> outline(corners.begin(), corners.end());
                cv::fillConvexPoly(inside, outline, cv::Scalar(255));
                EXPECT_GT(cv::mean(seen.bgr, inside)[1], 1.1 * seen.bgr.at<cv::Vec3b>(3, 3)[1])
                    << qPrintable(name);
            }
        }
    }
}

TEST_F(SceneFolder, PicturesFollowTheirNames)
{
    QImage image(40, 20, QImage::Format_RGB32);
    image.fill(Qt::red);
    ASSERT_TRUE(image.save(path("b.png")) && image.save(path("a.bmp")));
    writeFile(path("c.png"), "no picture");
    const std::vector<Scene> scenes = findScenes(m_dir.path());
    ASSERT_EQ(scenes.size(), 2u);
    EXPECT_EQ(scenes[0].name, "a.bmp");
    const RenderedScene seen = renderScene(scenes[1], {640, 480});
    const cv::Vec3b centre = seen.bgr.at<cv::Vec3b>(240, 320);
    EXPECT_GT(centre[2], centre[0] + 100);
    QString why;
    EXPECT_TRUE(findScenes(path("c.png"), &why).empty());
    EXPECT_FALSE(why.isEmpty());
}

TEST(StandOptions, WrongOnesAreNamed)
{
    for (const char *wrong :
         {"--modes 640x480", "--modes 0x0@30", "--id 1209", "--modes 640x480@0", "--fly", "page"})
    {
        StandOptions options;
        QString fault;
        EXPECT_FALSE(parseOptions(QString("stand %1").arg(wrong).split(' '), options, fault));
        EXPECT_FALSE(fault.isEmpty()) << wrong;
    }
    StandOptions options;
    QString fault;
    EXPECT_TRUE(parseOptions({"stand", "--modes", "640x480@30, 1280x720@7.5"}, options, fault));
    ASSERT_EQ(options.modes.size(), 2u);
    EXPECT_EQ(options.modes[1].rate, 7.5);
}
