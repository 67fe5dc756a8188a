#include "video/box_shrink.h"
#include "video/gr_cam_item.h"
#include "video/gr_shape_item.h"
#include "video/preview_test.h"

#include <QPainter>

namespace {

class Preview : public PreviewTest
{
protected:
    Preview()
        : PreviewTest({1920, 1080})
    {
        scene.addItem(item);
        scene.addItem(shapes);
        view.setCamItem(item);
        view.setShapeItem(shapes);
        view.toSuitable();
        container.show();
    }

    Gr_CamItem *const item = new Gr_CamItem;
    Gr_ShapeItem *const shapes = new Gr_ShapeItem;
};

TEST_F(Preview, WheelAndDragMoveThePictureUnlessSomethingElseHasTheMouse)
{
    EXPECT_EQ(view.viewport()->size(), QSize(800, 600));
    turnWheel(view.viewport(), 120);
    turnWheel(view.viewport(), 960);
    EXPECT_NEAR(view.zoomFactor(), 1.1, 1e-12);
    turnWheel(view.viewport(), -1);
    EXPECT_NEAR(view.zoomFactor(), 1.05, 1e-12);
    view.toSuitable();
    drag(view.viewport(), {400, 300}, {450, 280});
    EXPECT_EQ(item->getShowGeometry(), QRect(50, 55, 800, 450));

    cutMode = ManualCrop;
    drag(view.viewport(), {400, 300}, {450, 280});
    EXPECT_EQ(item->getShowGeometry(), QRect(50, 55, 800, 450));
    turnWheel(view.viewport(), 120);
    EXPECT_NEAR(view.zoomFactor(), 1.05, 1e-12);

    cutMode = NoCrop;
    isOpenCameraTwo = true;
    view.toSuitable();
    turnWheel(view.viewport(), 120);
    drag(view.viewport(), {400, 300}, {450, 280});
    EXPECT_EQ(item->getShowGeometry(), QRect(0, 75, 800, 450));
}

TEST_F(Preview, ShowsANewFrameWithTheNextRepaint)
{
    QImage frame(1920, 1080, QImage::Format_RGB888);
    frame.fill(QColor(10, 200, 30));
    item->SetQImage(frame);
    shapes->setShapes({QRectF(480, 270, 960, 540)});
    QImage shown = view.grab().toImage();
    EXPECT_EQ(shown.pixelColor(400, 300), QColor(10, 200, 30));
    EXPECT_NE(shown.pixelColor(400, 70), QColor(10, 200, 30));
    EXPECT_EQ(shown.pixelColor(200, 300), QColor(0, 200, 83)); // the outline's left edge
    frame.fill(QColor(0, 0, 255));
    item->SetQImage(frame);
    EXPECT_EQ(view.grab().toImage().pixelColor(400, 300), QColor(0, 0, 255));
}

// One black pixel column in four is a quarter of the light at a quarter of the size, wherever the
// columns fall; at true size and above pixels stay what they are.
TEST(CamItem, AveragesWhenSmallAndStaysCrispWhenLarge)
{
    QImage stripes(400, 304, QImage::Format_RGB888);
    for (int y = 0; y < stripes.height(); ++y)
        for (int x = 0; x < stripes.width(); ++x)
            stripes.setPixelColor(x, y, x % 4 == 1 ? Qt::black : QColor(200, 200, 200));
    Gr_CamItem item;
    item.SetQImage(stripes);
    const auto painted = [&](QSize size, double pixelRatio) {
        QImage image(size * pixelRatio, QImage::Format_RGB32);
        image.setDevicePixelRatio(pixelRatio);
        QPainter painter(&image);
        item.setShowRect(0, 0, size.width(), size.height());
        item.paint(&painter, nullptr, nullptr);
        return image;
    };
    const QImage quarter = painted({100, 76}, 1);
    for (int x = 0; x < 100; ++x)
        EXPECT_NEAR(qRed(quarter.pixel(x, 40)), 150, 1);
    const QImage same = painted({200, 152}, 2); // as many device pixels as the frame has
    EXPECT_EQ(qRed(same.pixel(4, 0)), 200);
    EXPECT_EQ(qRed(same.pixel(5, 0)), 0);
    const QImage large = painted({1000, 760}, 1);
    for (int x = 0; x < 1000; ++x)
        EXPECT_TRUE(qRed(large.pixel(x, 9)) == 0 || qRed(large.pixel(x, 9)) == 200);

    // Somewhat smaller: as Qt samples the frame itself.
    QImage sampled(250, 190, QImage::Format_RGB32);
    QPainter painter(&sampled);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(QRectF(0, 0, 250, 190), stripes);
    const QImage smaller = painted({250, 190}, 1);
    for (int x = 0; x < 250; ++x)
        EXPECT_NEAR(qRed(smaller.pixel(x, 40)), qRed(sampled.pixel(x, 40)), 2) << x;
    QImage blue(3, 2, QImage::Format_RGB888), converted;
    blue.fill(QColor(10, 20, 230));
    boxShrink(blue, 1, converted);
    EXPECT_EQ(converted.pixelColor(2, 1), QColor(10, 20, 230));

    // Blocks cut off by the edge average what there is of them.
    QImage odd(7, 5, QImage::Format_RGB888), shrunk;
    odd.fill(QColor(90, 60, 30));
    boxShrink(odd, 3, shrunk);
    EXPECT_EQ(shrunk.size(), QSize(3, 2));
    EXPECT_EQ(shrunk.pixelColor(2, 1), QColor(90, 60, 30));
}

} // namespace
