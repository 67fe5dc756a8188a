#include "app/state.h"
#include "e2e/application.h"
#include "mainwindow/preview/manual_cut_overlay.h"
#include "video/gr_view.h"
#include "video/video_thread.h"

#include <QImage>
#include <QLabel>
#include <QListWidget>
#include <QRegularExpression>
#include <QTest>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

Application::Setup withScene(const QString &scene)
{
    return {{"--modes", "1280x720@30", "--scene", scene}, {}, {}};
}

bool waitForOutlines(size_t count)
{
    return waitFor([&] {
        const FramePtr frame = videoThread->lastFrame();
        return frame && frame->outlines.size() == count;
    });
}

QSize sizeOf(const Application &app, const QString &name)
{
    return QImage(app.images() + '/' + name).size();
}

struct CropCase
{
    const char *scene;
    size_t automatic, multi; ///< documents found
    QStringList multiNames;
};

class CropOfScene : public testing::TestWithParam<CropCase>
{
};

TEST_P(CropOfScene, WritesAndListsOneFilePerDocument)
{
    const CropCase &expected = GetParam();
    Application app(withScene(expected.scene));
    ASSERT_TRUE(app.waitForPicture());
    app.choose("cropComBox", MultiGraphCrop);
    ASSERT_TRUE(waitForOutlines(expected.multi));
    app.click("bt_captrue");
    QStringList sorted = expected.multiNames;
    sorted.sort();
    EXPECT_EQ(app.files(), sorted);
    EXPECT_EQ(app.listed(), expected.multiNames);

    // The same number again: a file name of its own, since the first capture has taken its number.
    app.choose("cropComBox", AutomaticCrop);
    ASSERT_TRUE(waitForOutlines(expected.automatic));
    app.click("bt_captrue");
    ASSERT_EQ(app.listed().size(), expected.multiNames.size() + 1);
    const QImage sheet(app.images() + "/1.jpg");
    ASSERT_FALSE(sheet.isNull()) << app.message().toStdString();
    EXPECT_LT(sheet.width(), 1000);
    app.choose("cropComBox", NoCrop);
    app.click("bt_captrue");
    EXPECT_EQ(sizeOf(app, "2.jpg"), QSize(1280, 720));
}

INSTANTIATE_TEST_SUITE_P(Crop, CropOfScene,
                         testing::Values(CropCase{"page", 1, 1, {"0.jpg"}},
                                         CropCase{"three", 1, 3, {"0.jpg", "0_1.jpg", "0_2.jpg"}},
                                         CropCase{"nine",
                                                  1,
                                                  8,
                                                  {"0.jpg", "0_1.jpg", "0_2.jpg", "0_3.jpg",
                                                   "0_4.jpg", "0_5.jpg", "0_6.jpg", "0_7.jpg"}}),
                         [](const auto &testCase) { return std::string(testCase.param.scene); });

TEST(MultiCropForAPdf, MakesEachDocumentAPage)
{
    Application app(withScene("three"));
    ASSERT_TRUE(app.waitForPicture());
    app.choose("cropComBox", MultiGraphCrop);
    app.click("bt_multipdf");
    ASSERT_TRUE(waitForOutlines(3));
    app.click("bt_captrue");
    EXPECT_EQ(app.listed("pdflistWidget").size(), 3);
    EXPECT_TRUE(app.listed().isEmpty());

    // Keys go to the list the user works in.
    app.window().addToImageList(app.images() + "/other.jpg", "other.jpg");
    auto *files = app.find<QListWidget>("listWidget1");
    files->setFocus();
    QTest::keyClick(files, Qt::Key_A, Qt::ControlModifier);
    ASSERT_EQ(files->selectedItems().size(), 1);
    ASSERT_TRUE(app.find<QListWidget>("pdflistWidget")->selectedItems().isEmpty());
    QTest::keyClick(files, Qt::Key_Delete);
    EXPECT_TRUE(app.listed().isEmpty());
    EXPECT_EQ(app.listed("pdflistWidget").size(), 3);
}

/// Mean brightness of a part of a picture; the part in shares of its sides.
double brightness(const QImage &image, const QRectF &part)
{
    const QImage one =
        image
            .copy(QRectF(part.x() * image.width(), part.y() * image.height(),
                         part.width() * image.width(), part.height() * image.height())
                      .toRect())
            .scaled(1, 1, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    return qGray(one.pixel(0, 0));
}

TEST(AutomaticCropOfAPage, IsUprightWithTheSheetsProportions)
{
    Application app({{"--modes", "1920x1080@30"}, {}, {}});
    ASSERT_TRUE(app.waitForPicture());
    app.choose("cropComBox", AutomaticCrop);
    ASSERT_TRUE(waitForOutlines(1));
    app.click("bt_captrue");
    const QImage sheet(app.images() + "/0.jpg");
    ASSERT_FALSE(sheet.isNull()) << app.message().toStdString();
    EXPECT_NEAR(double(sheet.height()) / sheet.width(), 297.0 / 210, 0.04) << "A4, not on its side";
    for (const QRectF &corner : {QRectF(0.02, 0.02, 0.05, 0.03), QRectF(0.93, 0.02, 0.05, 0.03),
                                 QRectF(0.02, 0.95, 0.05, 0.03), QRectF(0.93, 0.95, 0.05, 0.03)})
        EXPECT_GT(brightness(sheet, corner), 150) << "no desk left in the corners";
}

TEST(SmartCropOfAPage, HoldsADraggedCornerUntilEscOrAnotherSheet)
{
    Application app({{"--modes", "1920x1080@30"}, {}, {}});
    ASSERT_TRUE(app.waitForPicture());
    QVector<QPolygonF> shown;
    bool areFixed = false;
    QObject::connect(videoThread, &IVideoTread::sheetsChanged, &app.window(),
                     [&](const QVector<QPolygonF> &sheets, bool fixed) {
                         shown = sheets;
                         areFixed = fixed;
                     });
    app.choose("cropComBox", SmartCrop);
    ASSERT_TRUE(waitFor([&] { return shown.size() == 1; }, 10000));
    app.click("bt_captrue");
    const QImage sheet(app.images() + "/0.jpg");
    ASSERT_FALSE(sheet.isNull()) << app.message().toStdString();
    EXPECT_NEAR(double(sheet.height()) / sheet.width(), 297.0 / 210, 0.02) << "A4, not on its side";

    auto *view = app.find<Gr_View>("graphicsView");
    const ShownPicture picture = view->shownPicture();
    const double scale = picture.rect.width() / picture.frame.width();
    const QPointF found = shown[0][0];
    const QPoint grip = (picture.rect.topLeft() + found * scale).toPoint();
    app.drag(view->viewport(), grip, grip - QPoint(20, 10));
    ASSERT_TRUE(waitFor([&] { return areFixed; }));
    EXPECT_NEAR(shown[0][0].x(), found.x() - 20 / scale, 6);
    app.click("bt_captrue");
    EXPECT_GT(QImage(app.images() + "/1.jpg").width(), sheet.width());
    QTest::keyClick(&app.window(), Qt::Key_Escape);
    EXPECT_TRUE(waitFor([&] { return !areFixed && shown.size() == 1; }));
    ASSERT_TRUE(app.showScene("scene empty"));
    ASSERT_TRUE(waitFor([&] { return shown.isEmpty(); }, 10000));
    app.click("bt_captrue");
    EXPECT_EQ(QImage(app.images() + "/2.jpg").size(), QSize(1920, 1080));
    EXPECT_FALSE(app.message().isEmpty()) << "that nothing was cut is told";
}

TEST(SmartCropOfAPage, WorksInPdfsMergesNamesByCodeAndPageTurning)
{
    Application app({{"--modes", "1920x1080@30", "--scene", "three"}, {}, {}});
    ASSERT_TRUE(app.waitForPicture());
    app.choose("cropComBox", SmartCrop);
    app.click("bt_multipdf");
    app.click("bt_captrue");
    EXPECT_EQ(app.listed("pdflistWidget").size(), 3) << "each sheet is a page";

    ASSERT_TRUE(app.showScene("scene code128"));
    app.click("bt_document");
    app.choose("nameComBox", NameByBarcode);
    app.click("bt_captrue");
    const QString named = app.listed().value(0);
    EXPECT_TRUE(named.startsWith("BOX-")) << qPrintable(named);
    EXPECT_LT(QImage(app.images() + '/' + named).width(), 1920);

    app.choose("nameComBox", 0);
    app.click("bt_merge");
    ASSERT_TRUE(app.showScene("scene page"));
    app.click("bt_captrue");
    app.click("bt_captrue");
    ASSERT_TRUE(waitFor([&] { return app.listed().size() == 2; }));
    const QImage merged(app.images() + '/' + app.listed()[1]);
    EXPECT_NEAR(double(merged.height()) / merged.width(), 2 * 297.0 / 210, 0.1) << "two pages";

    ASSERT_TRUE(app.showScene("scene book"));
    app.click("bt_document");
    app.click("bt_wiseCaptrue");
    ASSERT_TRUE(waitFor([&] { return app.listed().size() == 3; }, 15000));
    ASSERT_TRUE(app.stand().command("turn"));
    ASSERT_TRUE(waitFor([&] { return app.listed().size() == 4; }, 15000));
    app.click("bt_wiseCaptrue");
    for (const int page : {2, 3})
        EXPECT_LT(QImage(app.images() + '/' + app.listed()[page]).width(), 1900) << "cut";
}

/// The size that the window names while the crop rectangle is drawn.
QSize namedSize(const Application &app)
{
    const auto *label = app.find<QLabel>("manualCutLabel");
    const auto match = QRegularExpression("(\\d+) x (\\d+)").match(label->text());
    return {match.captured(1).toInt(), match.captured(2).toInt()};
}

/// Drags the bottom right handle of the crop rectangle by `offset` screen pixels.
void dragCorner(Application &app, QPoint offset)
{
    auto *overlay = app.window().findChild<ManualCutOverlay *>();
    const ShownPicture shown = app.find<Gr_View>("graphicsView")->shownPicture();
    const double scale = shown.rect.width() / shown.frame.width();
    const QRect rect = overlay->frameRect();
    const QPointF corner =
        shown.rect.topLeft() + QPointF(rect.x() + rect.width(), rect.y() + rect.height()) * scale;
    app.drag(overlay, corner.toPoint(), corner.toPoint() + offset);
}

TEST(ManualCrop, SavesTheSizeThatTheLabelNamesHoweverThePictureLies)
{
    Application app(withScene("page"));
    ASSERT_TRUE(app.waitForPicture());
    EXPECT_FALSE(app.find<QLabel>("manualCutLabel")->isVisible());
    app.choose("cropComBox", ManualCrop);
    auto *overlay = app.window().findChild<ManualCutOverlay *>();
    ASSERT_TRUE(waitFor([&] { return overlay->isVisible(); }));
    EXPECT_TRUE(app.find<QLabel>("manualCutLabel")->isVisible());
    const QRect first = overlay->frameRect();

    const auto captureAndCompare = [&](const char *name) {
        app.click("bt_captrue");
        EXPECT_EQ(sizeOf(app, name), namedSize(app)) << name;
    };
    dragCorner(app, {-83, -41});
    EXPECT_LT(overlay->frameRect().width(), first.width() - 83) << "screen pixels are larger";
    EXPECT_EQ(overlay->frameRect().topLeft(), first.topLeft());
    captureAndCompare("0.jpg");

    app.click("Bt_RightRotate");
    ASSERT_TRUE(app.waitForPicture({720, 1280}));
    dragCorner(app, {-20, -37});
    captureAndCompare("1.jpg");

    const QRect before = overlay->frameRect();
    const QRectF picture = app.find<Gr_View>("graphicsView")->shownPicture().rect;
    app.drag(overlay, {4, 4}, {34, 24});
    const QPointF moved =
        app.find<Gr_View>("graphicsView")->shownPicture().rect.topLeft() - picture.topLeft();
    EXPECT_LE((moved - QPointF(30, 20)).manhattanLength(), 2) << "a drag outside moves the picture";
    EXPECT_EQ(overlay->frameRect(), before);
    const QWidget *label = app.find<QLabel>("manualCutLabel");
    EXPECT_LE(
        (label->geometry().center() - overlay->screenRect().toRect().center()).manhattanLength(),
        2);
    overlay->setFrameRect({300, 300, 32, 32}); // some 13 screen pixels
    const QPoint middle = overlay->screenRect().center().toPoint();
    app.drag(overlay, middle, middle + QPoint(50, 0));
    EXPECT_EQ(overlay->frameRect().size(), QSize(32, 32)) << "moved, not resized";
    EXPECT_GT(overlay->frameRect().x(), 350);
    overlay->setFrameRect(before);

    for (int i = 0; i < 5; ++i)
        app.click("Bt_ZoomOut");
    dragCorner(app, {-9, -11});
    captureAndCompare("2.jpg");

    // Beyond the frame's edge: as large as the frame allows.
    dragCorner(app, {4000, 4000});
    const QRect widest = overlay->frameRect();
    EXPECT_EQ(widest.bottomRight(), QPoint(719, 1279));
    captureAndCompare("3.jpg");

    ASSERT_TRUE(app.stand().command("unplug main"));
    EXPECT_TRUE(waitFor([&] { return !overlay->isVisible() && !label->isVisible(); }));
    ASSERT_TRUE(app.stand().command("plug main"));
    EXPECT_TRUE(waitFor([&] { return overlay->isVisible(); }, 10000));
    EXPECT_EQ(overlay->frameRect(), widest);

    app.choose("cropComBox", NoCrop);
    EXPECT_FALSE(overlay->isVisible());
    EXPECT_FALSE(app.find<QLabel>("manualCutLabel")->isVisible());
}

} // namespace
