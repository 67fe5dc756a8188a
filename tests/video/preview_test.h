#pragma once

#include "app/state.h"
#include "support/mouse.h"
#include "video/gr_view.h"

#include <gtest/gtest.h>

/// A view of 800 x 600 as the window builds it, on a camera with frames of `frame`.
class PreviewTest : public testing::Test
{
public:
    ~PreviewTest() override
    {
        op_width = op_height = 0;
        cutMode = NoCrop;
    }

protected:
    explicit PreviewTest(QSize frame)
    {
        SceneShowWidth = 800;
        SceneShowHeight = 600;
        op_width = frame.width();
        op_height = frame.height();
        isOpenCameraTwo = false;
        scene.setSceneRect(0, 0, 800, 600);
        container.resize(800, 600);
        view.setScene(&scene);
        view.resize(800, 600);
        view.toSuitable();
    }

    QWidget container;
    QGraphicsScene scene;
    Gr_View view{&container};
};
