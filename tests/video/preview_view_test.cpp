#include "app/state.h"
#include "video/box_shrink.h"
#include "video/gr_cam_item.h"
#include "video/gr_shape_item.h"
#include "video/gr_view.h"

#include <QPainter>
#include <QWheelEvent>
#include <QtTest>

#include <gtest/gtest.h>

namespace {

/// A view as the window builds it, on a camera of 1920 x 1080.
class Preview : public testing::Test
{
protected:
    void SetUp() override
    {
        SceneShowWidth = 800;
        SceneShowHeight = 600;
        op_width = 1920;
        op_height = 1080;
        isOpenCameraTwo = false;
        cutMode = NoCrop;
        scene.setSceneRect(0, 0, 800, 600);
        scene.addItem(item);
        scene.addItem(shapes);
        view.setScene(&scene);
        view.setCamItem(item);
        view.setShapeItem(shapes);
        view.resize(800, 600);
        view.show();
        view.toSuitable();
    }
    void TearDown() override { op_width = op_height = 0; }

    void wheel(int delta)
    {
        QWheelEvent event({400, 300}, view.mapToGlobal({400, 300}), {}, {0, delta}, Qt::NoButton,
                          {}, Qt::NoScrollPhase, false);
        QApplication::sendEvent(view.viewport(), &event);
    }

    void drag(QPoint from, QPoint to)
    {
        QTest::mousePress(view.viewport(), Qt::LeftButton, {}, from);
        QMouseEvent move(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton, {});
        QApplication::sendEvent(view.viewport(), &move);
        QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, to);
    }

    QGraphicsScene scene;
    Gr_CamItem *item = new Gr_CamItem;
    Gr_ShapeItem *shapes = new Gr_ShapeItem;
    Gr_View view;
};

TEST_F(Preview, WheelAndDragMoveThePictureUnlessSomethingElseHasTheMouse)
{
    EXPECT_EQ(view.viewport()->size(), QSize(800, 600));
    wheel(120);
    wheel(960);
    EXPECT_NEAR(view.zoomFactor(), 1.1, 1e-12);
    wheel(-1);
    EXPECT_NEAR(view.zoomFactor(), 1.05, 1e-12);
    view.toSuitable();
    drag({400, 300}, {450, 280});
    EXPECT_EQ(item->getShowGeometry(), QRect(50, 55, 800, 450));

    cutMode = ManualCrop;
    drag({400, 300}, {450, 280});
    EXPECT_EQ(item->getShowGeometry(), QRect(50, 55, 800, 450));
    wheel(120);
    EXPECT_NEAR(view.zoomFactor(), 1.05, 1e-12);

    cutMode = NoCrop;
    isOpenCameraTwo = true;
    view.toSuitable();
    wheel(120);
    drag({400, 300}, {450, 280});
    EXPECT_EQ(item->getShowGeometry(), QRect(0, 75, 800, 450));
}

TEST_F(Preview, TellsOfTurnsAndOfEveryNewPlace)
{
    QSignalSpy rotated(&view, &Gr_View::rotated);
    QSignalSpy moved(&view, &Gr_View::showRectChanged);
    view.toRotate(0);
    EXPECT_EQ(rotated.takeFirst().at(0).toInt(), 270);
    EXPECT_EQ(view.rotateAngle(), 270);
    view.toRotate(7);
    EXPECT_EQ(rotated.takeFirst().at(0).toInt(), 0);
    view.toZoom(1);
    view.toTrueSize();
    EXPECT_EQ(moved.size(), 4);
    EXPECT_EQ(view.shownPicture().frame, QSize(1920, 1080));
    EXPECT_EQ(view.shownPicture().rect, QRectF(-560, -240, 1920, 1080));
    EXPECT_EQ(item->boundingRect(), view.shownPicture().rect);
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

    QImage drawn(800, 600, QImage::Format_RGB888);
    drawn.fill(Qt::black);
    drag({250, 200}, {300, 200});
    QTest::mousePress(view.viewport(), Qt::LeftButton, {}, {100, 100});
    view.paint(drawn);
    QTest::mouseRelease(view.viewport(), Qt::LeftButton);
    EXPECT_EQ(item->GetQImage().pixelColor(200, 200), QColor(0, 255, 0));
    EXPECT_EQ(item->GetQImage().pixelColor(200, 150), QColor(Qt::black));

    view.setPaintRegionInit(64, 48);
    EXPECT_EQ(view.paintLayer().size(), QSize(64, 48));
    EXPECT_EQ(view.paintLayer().pixelColor(63, 47).alpha(), 0);
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

    // Blocks cut off by the edge average what there is of them.
    QImage odd(7, 5, QImage::Format_RGB888), shrunk;
    odd.fill(QColor(90, 60, 30));
    boxShrink(odd, 3, shrunk);
    EXPECT_EQ(shrunk.size(), QSize(3, 2));
    EXPECT_EQ(shrunk.pixelColor(2, 1), QColor(90, 60, 30));
}

} // namespace
