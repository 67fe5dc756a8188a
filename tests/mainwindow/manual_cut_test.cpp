#include "mainwindow/preview/manual_cut_overlay.h"
#include "video/preview_test.h"

#include <cstdlib>

namespace {

TEST(ManualCutGeometry, MapsToTheRotatedFrameAtEveryZoomAndTurn)
{
    for (const int quarters : {0, 1, 2, 3}) {
        for (const int steps : {-9, 0, 13, 60}) {
            PreviewGeometry preview;
            preview.setScene({1024, 577});
            preview.setFrame({3264, 2448});
            preview.toSuitable();
            for (int i = 0; i < quarters; ++i)
                preview.rotate(RotateDirection::Right);
            for (int i = 0; i < std::abs(steps); ++i)
                preview.zoom(steps < 0 ? ZoomDirection::Out : ZoomDirection::In);
            preview.pan({37, -21});
            const ShownPicture shown{preview.showRect(), preview.rotatedFrame(), preview.angle()};

            ManualCutGeometry cut;
            cut.setPicture(shown);
            const QRect wanted(101, 203, 777, 555);
            cut.setRect(wanted);
            // The corners on the screen lie where those frame pixels are painted.
            const QRectF screen = cut.screenRect();
            EXPECT_NEAR((screen.left() - shown.rect.left()) / shown.rect.width(),
                        101.0 / shown.frame.width(), 1e-9);
            EXPECT_NEAR((screen.bottom() - shown.rect.top()) / shown.rect.height(),
                        758.0 / shown.frame.height(), 1e-9);
            EXPECT_EQ(cut.toFrame(screen), wanted);
            // A mouse that moves whole screen pixels hits the frame pixel under it.
            const double scale = shown.frame.width() / shown.rect.width();
            cut.drag(wanted, CutHandle::Inside, {40, 25});
            const QRect there = wanted.translated(qRound(40 * scale), qRound(25 * scale));
            EXPECT_TRUE(there.adjusted(-1, -1, 1, 1).contains(cut.rect()));
            EXPECT_TRUE(cut.rect().contains(there.adjusted(1, 1, -1, -1)));
        }
    }
}

TEST(ManualCutGeometry, TurnsWithThePictureAndScalesWithTheFrame)
{
    ManualCutGeometry cut;
    cut.setPicture({{0, 75, 800, 450}, {1920, 1080}, 0});
    EXPECT_EQ(cut.rect(), QRect(192, 108, 1536, 864));
    const QRect marked(10, 20, 300, 200);
    cut.setRect(marked);
    cut.setPicture({{231, 0, 337, 600}, {1080, 1920}, 90});
    EXPECT_EQ(cut.rect(), QRect(1080 - 220, 10, 200, 300));
    cut.setPicture({{0, 75, 800, 450}, {1920, 1080}, 180});
    EXPECT_EQ(cut.rect(), QRect(1920 - 310, 1080 - 220, 300, 200));
    cut.setPicture({{231, 0, 337, 600}, {1080, 1920}, 270});
    EXPECT_EQ(cut.rect(), QRect(20, 1920 - 310, 200, 300));
    cut.setPicture({{0, 75, 800, 450}, {1920, 1080}, 0});
    EXPECT_EQ(cut.rect(), marked);
    cut.setPicture({{0, 75, 800, 450}, {3840, 2160}, 0});
    EXPECT_EQ(cut.rect(), QRect(20, 40, 600, 400));
    cut.setPicture({{0, 75, 800, 450}, {1080, 1920}, 90}); // both at once
    EXPECT_EQ(cut.rect(), QRect(1080 - 220, 10, 200, 300));
}

TEST(ManualCutGeometry, StaysInsideTheFrameAndAboveItsLeastSize)
{
    constexpr int least = ManualCutGeometry::kMinimum;
    ManualCutGeometry cut;
    cut.setPicture({{0, 0, 800, 600}, {1600, 1200}, 0});
    const QRect start(100, 100, 200, 200);
    const auto dragged = [&](CutHandle handle, QPointF offset) {
        cut.drag(start, handle, offset);
        return cut.rect();
    };
    EXPECT_EQ(dragged(CutHandle::Inside, {-999, 999}), QRect(0, 1000, 200, 200));
    EXPECT_EQ(dragged(CutHandle::TopLeft, {-999, 10}), QRect(0, 120, 300, 180));
    EXPECT_EQ(dragged(CutHandle::Top, {50, 999}), QRect(100, 300 - least, 200, least));
    EXPECT_EQ(dragged(CutHandle::Left, {999, 50}), QRect(300 - least, 100, least, 200));
    EXPECT_EQ(dragged(CutHandle::BottomRight, {999, -999}), QRect(100, 100, 1500, least));
    EXPECT_EQ(dragged(CutHandle::TopRight, {5, 5}), QRect(100, 110, 210, 190));
    EXPECT_EQ(dragged(CutHandle::BottomLeft, {5, 5}), QRect(110, 100, 190, 210));
    EXPECT_EQ(dragged(CutHandle::Bottom, {5, 5}), QRect(100, 100, 200, 210));
    EXPECT_EQ(dragged(CutHandle::Right, {5, 5}), QRect(100, 100, 210, 200));
    cut.setRect({-50, 1190, 5000, 2});
    EXPECT_EQ(cut.rect(), QRect(0, 1200 - least, 1600, least));
    cut.setPicture({{0, 0, 800, 600}, {20, 10}, 0}); // smaller than the least size
    EXPECT_EQ(cut.rect().width(), 20);
    EXPECT_EQ(cut.rect().height(), 10);
    cut.drag(cut.rect(), CutHandle::TopLeft, {100, 100});
    EXPECT_EQ(cut.rect(), QRect(0, 0, 20, 10));
}

/// The overlay over a view, as the window builds them.
class Overlay : public PreviewTest
{
protected:
    Overlay()
        : PreviewTest({1600, 1200})
    {
        cutMode = ManualCrop;
        overlay.resize(800, 600);
        overlay.follow(&view);
        container.show();
    }

    ManualCutOverlay overlay{&container};
};

TEST_F(Overlay, IsMovedAndResizedByMouseAndKeys)
{
    QSignalSpy changed(&overlay, &ManualCutOverlay::rectChanged);
    EXPECT_EQ(overlay.frameRect(), QRect(160, 120, 1280, 960));
    drag(&overlay, {400, 300}, {410, 295}); // inside
    EXPECT_EQ(overlay.frameRect(), QRect(180, 110, 1280, 960));
    drag(&overlay, {730, 535}, {700, 500}); // bottom right handle
    EXPECT_EQ(overlay.frameRect(), QRect(180, 110, 1220, 890));
    drag(&overlay, {5, 5}, {100, 100}); // outside
    EXPECT_EQ(overlay.frameRect(), QRect(180, 110, 1220, 890));
    EXPECT_EQ(changed.size(), 2);
    QTest::keyClick(&overlay, Qt::Key_Left);
    QTest::keyClick(&overlay, Qt::Key_Down);
    QTest::keyClick(&overlay, Qt::Key_Right, Qt::ShiftModifier);
    QTest::keyClick(&overlay, Qt::Key_Up, Qt::ShiftModifier);
    EXPECT_EQ(overlay.frameRect(), QRect(179, 111, 1221, 889));
    EXPECT_EQ(changed.takeLast().at(0).toRect(), overlay.frameRect());
    EXPECT_FALSE(overlay.handleKey(Qt::Key_Left, Qt::ControlModifier));
    EXPECT_FALSE(overlay.handleKey(Qt::Key_Space, Qt::NoModifier));
    overlay.reset();
    EXPECT_EQ(overlay.frameRect(), QRect(160, 120, 1280, 960));
}

TEST_F(Overlay, FollowsTheViewAndLeavesItTheWheel)
{
    const QRect marked(200, 100, 400, 300);
    overlay.setFrameRect(marked);
    turnWheel(&overlay, 120);
    EXPECT_NEAR(view.zoomFactor(), 1.05, 1e-12);
    view.toTrueSize();
    EXPECT_EQ(overlay.frameRect(), marked);
    // At true size the picture begins at (-400, -300); the corner handle lies at (-200, -200).
    drag(&overlay, {0, -50}, {10, -40});
    EXPECT_EQ(overlay.frameRect(), marked.translated(10, 10));
    view.toRotate(1);
    EXPECT_EQ(overlay.frameRect(), QRect(1200 - 410, 210, 300, 400));
}

} // namespace
