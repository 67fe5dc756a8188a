#include "video/preview_geometry.h"

#include <gtest/gtest.h>

namespace {

PreviewGeometry geometry(QSize scene, QSize frame)
{
    PreviewGeometry result;
    result.setScene(scene);
    result.setFrame(frame);
    result.toSuitable();
    return result;
}

TEST(PreviewGeometry, FitsByIntegerArithmetic)
{
    PreviewGeometry view = geometry({800, 600}, {1920, 1080});
    EXPECT_EQ(view.showRect(), QRectF(0, 75, 800, 450));
    EXPECT_EQ(view.fit(1080, 1920), 337); // 337.5 truncated
    EXPECT_EQ(view.baseRect(), QRectF(231.5, 0, 337, 600));
    EXPECT_EQ(view.fit(800, 600), 600); // equal shapes fill the width
    view.setScene({1201, 777});
    EXPECT_EQ(view.fit(3264, 2448), 1036);
    EXPECT_EQ(view.baseRect(), QRectF(82.5, 0, 1036, 777));
    EXPECT_EQ(view.fit(0, 5), 0);
    EXPECT_EQ(view.baseRect(), QRectF(82.5, 0, 1036, 777));
}

TEST(PreviewGeometry, ZoomsInStepsBetweenItsLimits)
{
    PreviewGeometry view = geometry({800, 600}, {3264, 2448});
    view.zoom(ZoomDirection::In);
    view.zoom(ZoomDirection::In);
    EXPECT_NEAR(view.zoomFactor(), 1.1, 1e-12);
    EXPECT_NEAR(view.showRect().x(), -40, 1e-9);
    EXPECT_NEAR(view.showRect().height(), 660, 1e-9);
    for (int i = 0; i < 150; ++i)
        view.zoom(ZoomDirection::In);
    EXPECT_EQ(view.zoomFactor(), 6.0);
    for (int i = 0; i < 150; ++i)
        view.zoom(ZoomDirection::Out);
    EXPECT_EQ(view.zoomFactor(), 0.4);
    EXPECT_EQ(view.showRect(), QRectF(240, 180, 320, 240));
}

TEST(PreviewGeometry, TrueSizeCoversOneUnitPerPixel)
{
    PreviewGeometry view = geometry({800, 600}, {1920, 1080});
    view.pan({30, -10});
    view.toTrueSize();
    EXPECT_EQ(view.zoomFactor(), 2.4);
    EXPECT_EQ(view.showRect(), QRectF(-530, -250, 1920, 1080));
    view.rotate(RotateDirection::Right);
    view.toTrueSize();
    EXPECT_DOUBLE_EQ(view.zoomFactor(), 1920.0 / 600);
    EXPECT_EQ(view.showRect().height(), 1920);
    EXPECT_NEAR(view.showRect().width(), 337 * 3.2, 1e-9);

    // Beyond the limits at first; the next step comes back to them.
    PreviewGeometry small = geometry({160, 120}, {3264, 2448});
    small.toTrueSize();
    EXPECT_DOUBLE_EQ(small.zoomFactor(), 20.4);
    small.zoom(ZoomDirection::In);
    EXPECT_EQ(small.zoomFactor(), 6.0);
}

TEST(PreviewGeometry, TurningExchangesTheShownSidesWithoutDrift)
{
    PreviewGeometry view = geometry({800, 600}, {1920, 1080});
    view.zoom(ZoomDirection::In);
    view.pan({7, 9});
    const QPointF centre = view.centre();
    const int angles[] = {270, 180, 90, 0};
    for (int turn = 0; turn < 40; ++turn) {
        view.rotate(RotateDirection::Left);
        EXPECT_EQ(view.angle(), angles[turn % 4]);
        const bool upright = turn % 2 == 0;
        EXPECT_EQ(view.rotatedFrame(), upright ? QSize(1080, 1920) : QSize(1920, 1080));
        const QSizeF shown = view.showRect().size();
        EXPECT_NEAR(upright ? shown.height() : shown.width(), 840, 1e-6);
        EXPECT_NEAR(upright ? shown.width() : shown.height(), 472.5, 1); // one unit of truncation
        EXPECT_EQ(view.centre(), centre);
    }
    EXPECT_NEAR(view.zoomFactor(), 1.05, 1e-9);
    view.rotate(RotateDirection::Right);
    EXPECT_EQ(view.angle(), 90);
    view.toSuitable();
    EXPECT_EQ(view.showRect(), QRectF(231.5, 0, 337, 600));
}

TEST(PreviewGeometry, WithoutACameraOnlyTheAngleChanges)
{
    PreviewGeometry view;
    view.toSuitable();
    view.toTrueSize();
    view.rotate(RotateDirection::Right);
    view.zoom(ZoomDirection::In);
    EXPECT_TRUE(view.showRect().isEmpty());
    EXPECT_EQ(view.angle(), 90);
}

} // namespace
