#include "video/assist_geometry.h"
#include "video/camtwo_view.h"

#include <QtTest>

#include <gtest/gtest.h>

namespace {

QRect combined(int position, int angle = 0, QRect picture = {100, 50, 960, 540})
{
    return assistCombineRect({{300, 100, 200, 150}, picture, {1920, 1080}, angle, position});
}

TEST(AssistGeometry, ScalesEveryPlacementToTheFrame)
{
    EXPECT_EQ(combined(AssistFree), QRect(400, 100, 400, 300));
    EXPECT_EQ(combined(AssistUpperLeft), QRect(0, 0, 400, 300));
    EXPECT_EQ(combined(AssistUpperRight), QRect(1520, 0, 400, 300));
    EXPECT_EQ(combined(AssistMiddle), QRect(760, 390, 400, 300));
    EXPECT_EQ(combined(AssistBottomLeft), QRect(0, 780, 400, 300));
    EXPECT_EQ(combined(AssistBottomRight), QRect(1520, 780, 400, 300));
    EXPECT_EQ(combined(99), combined(AssistFree));
    EXPECT_TRUE(combined(AssistFree, 0, QRect()).isEmpty());
}

TEST(AssistGeometry, TurnsTheFrameAndRoundsTowardZero)
{
    // Shown as 337 x 600: factors 1080 / 337 and 1920 / 600.
    const QRect upright(200, 50, 337, 600);
    EXPECT_EQ(combined(AssistFree, 90, upright), QRect(320, 160, 640, 480));
    EXPECT_EQ(combined(AssistFree, 270, upright), combined(AssistFree, 90, upright));
    EXPECT_EQ(combined(AssistBottomRight, 90, upright), QRect(439, 1440, 640, 480));
    // The rest of 137 is halved to 68 first: 68 * 3.2047 = 217.9.
    EXPECT_EQ(combined(AssistMiddle, 90, upright).topLeft(), QPoint(217, 720));
    // A view wider than the picture: -63 / 2 is -31, -31 * 14.01 is -434.4.
    EXPECT_EQ(combined(AssistMiddle, 0, {0, 0, 137, 600}).x(), -434);
    EXPECT_EQ(combined(AssistFree, 180).size(), QSize(400, 300));
}

TEST(AssistGeometry, HoldsTheViewInsideThePicture)
{
    const QRect picture(100, 50, 600, 450);
    EXPECT_EQ(clampAssistView({90, 40, 200, 150}, picture).topLeft(), QPoint(100, 50));
    EXPECT_EQ(clampAssistView({501, 351, 200, 150}, picture).topLeft(), QPoint(500, 350));
    EXPECT_EQ(clampAssistView({500, 350, 200, 150}, picture).topLeft(), QPoint(500, 350));
    EXPECT_EQ(clampAssistView({0, 0, 500, 375}, {100, 0, 337, 600}).x(), -63);

    EXPECT_EQ(assistViewSize(6), QSize(500, 375));
    EXPECT_EQ(assistViewSize(3), QSize(300, 225));
    EXPECT_EQ(assistViewSize(-1), QSize(200, 150));
    EXPECT_EQ(assistViewSize(7), QSize(200, 150));
}

TEST(AssistView, IsDraggedToThePicturesEdgeAndNoFurther)
{
    QWidget window;
    window.resize(900, 600);
    CamTwo_View view(&window);
    view.setPicture([] { return QRect(100, 50, 600, 450); });
    view.applySize(1);
    view.moveToPictureCorner();
    window.show();
    const auto mouse = [&](QEvent::Type type, QPoint inParent, Qt::MouseButtons held) {
        QMouseEvent event(type, view.mapFromParent(inParent), Qt::LeftButton, held, {});
        QApplication::sendEvent(&view, &event);
    };
    mouse(QEvent::MouseMove, {400, 300}, Qt::NoButton);
    EXPECT_EQ(view.pos(), QPoint(100, 50));
    mouse(QEvent::MouseButtonPress, {150, 100}, Qt::LeftButton);
    mouse(QEvent::MouseMove, {190, 130}, Qt::LeftButton);
    EXPECT_EQ(view.pos(), QPoint(140, 80));
    mouse(QEvent::MouseMove, {890, 590}, Qt::LeftButton);
    EXPECT_EQ(view.pos(), QPoint(500, 350));
    mouse(QEvent::MouseButtonRelease, {890, 590}, Qt::NoButton);
    mouse(QEvent::MouseMove, {100, 100}, Qt::LeftButton);
    EXPECT_EQ(view.pos(), QPoint(500, 350));
    view.applySize(6);
    EXPECT_EQ(view.geometry(), QRect(200, 125, 500, 375));
}

} // namespace
