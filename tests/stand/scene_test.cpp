#include "stand/options.h"
#include "stand/render.h"
#include "support/files.h"

namespace {

class SceneFolder : public FolderTest
{
};

} // namespace

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
