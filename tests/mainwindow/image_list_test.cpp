#include "mainwindow/lists/image_list.h"
#include "mainwindow/lists/thumbnail_loader.h"
#include "support/files.h"
#include "support/temporary_home.h"

#include <QDropEvent>
#include <QImage>
#include <QMimeData>
#include <QUrl>
#include <QtTest>

#include <opencv2/imgcodecs.hpp>

namespace {

QString picture(const QString &path, QColor colour, QSize size = {640, 480})
{
    QImage image(size, QImage::Format_RGB888);
    image.fill(colour);
    EXPECT_TRUE(image.save(path)) << path.toStdString();
    return path;
}

class ImageList : public testing::Test
{
protected:
    void SetUp() override
    {
        list.setConfirm([this](int files) {
            asked << files;
            return isAllowed;
        });
        list.setOpener([this](const QString &path) {
            opened << path;
            return true;
        });
        list.setTell([this](const QString &message) { told << message; });
        list.resize(200, 560);
        list.show();
    }

    QString file(const QString &name) { return picture(home.path() + '/' + name, Qt::blue); }
    QStringList names() const
    {
        QStringList names;
        for (int row = 0; row < list.count(); ++row)
            names << list.item(row)->text();
        return names;
    }
    void select(const QList<int> &rows)
    {
        list.clearSelection();
        for (const int row : rows)
            list.item(row)->setSelected(true);
    }
    void addPages(const QString &letters)
    {
        list.setKind(ListKind::PdfPages);
        for (const QChar letter : letters)
            list.addFile(file(QString(letter) + ".png"), letter);
    }

    TemporaryHome home;
    ImageListWidget list;
    QList<int> asked;
    QStringList opened, told;
    bool isAllowed = true;
};

TEST_F(ImageList, KeepsPathsAndHoldsACaptureOnce)
{
    EXPECT_EQ(list.addFile("", "nothing"), -1);
    EXPECT_EQ(list.addFile(file("a.png"), "a.png"), 0);
    EXPECT_EQ(list.addFile(home.path() + "/never.jpg", "never.jpg"), 1);
    EXPECT_EQ(list.addFile(home.path() + "/a.png", "again"), 0);
    EXPECT_EQ(names(), QStringList({"again", "never.jpg"}));
    EXPECT_TRUE(list.isMissing(1));
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {},
                      list.visualItemRect(list.item(0)).center());
    list.openSelected();
    EXPECT_EQ(opened, QStringList({home.path() + "/a.png"}));
    select({1});
    list.setCurrentItem(list.item(1));
    list.openSelected();
    EXPECT_EQ(told.size(), 1);
    list.openFolderOfSelected();
    EXPECT_EQ(opened.last(), home.path());
}

TEST_F(ImageList, DeletesCapturedFilesOnlyIntoTheTrashAfterOneQuestion)
{
    for (const char *name : {"1.png", "2.png", "3.png"})
        list.addFile(file(name), name);
    list.addFile(file("own.png"), "own.png", EntryOrigin::Inserted);
    list.addFile(home.path() + "/never.jpg", "never.jpg");

    isAllowed = false;
    select({0, 1, 3, 4});
    QTest::keyClick(&list, Qt::Key_Delete);
    EXPECT_EQ(asked, QList<int>({2}));
    EXPECT_EQ(list.count(), 5);
    EXPECT_TRUE(QFile::exists(home.path() + "/1.png"));

    isAllowed = true;
    QTest::keyClick(&list, Qt::Key_Delete);
    EXPECT_EQ(asked, QList<int>({2, 2}));
    EXPECT_EQ(names(), QStringList({"3.png"}));
    EXPECT_FALSE(QFile::exists(home.path() + "/1.png"));
    EXPECT_TRUE(QFile::exists(home.path() + "/own.png"));
    const QDir trash(home.path() + "/.local/share/Trash/files");
    EXPECT_EQ(trash.entryList(QDir::Files), QStringList({"1.png", "2.png"}));

    // What cannot go to the trash stays, and the user hears of it.
    list.setTrash([](const QString &) { return false; });
    select({0});
    list.deleteSelected();
    EXPECT_EQ(names(), QStringList({"3.png"}));
    EXPECT_EQ(told.size(), 1);
    EXPECT_TRUE(told.value(0).contains("3.png"));
}

TEST_F(ImageList, APageListedTwiceKeepsItsFileUntilTheLastEntryGoes)
{
    addPages("a");
    EXPECT_TRUE(list.insertFiles({home.path() + "/a.png"}).isEmpty());
    EXPECT_EQ(list.count(), 2);
    select({0});
    list.deleteSelected();
    EXPECT_TRUE(asked.isEmpty());
    EXPECT_TRUE(QFile::exists(home.path() + "/a.png"));
    select({0});
    list.deleteSelected();
    EXPECT_EQ(asked, QList<int>({1}));
    EXPECT_FALSE(QFile::exists(home.path() + "/a.png"));
}

TEST_F(ImageList, ReordersWithoutLosingAPage)
{
    addPages("abcdef");
    select({0, 2, 3});
    list.shiftUp();
    EXPECT_EQ(names().join(""), "acdbef");
    EXPECT_EQ(list.selectedRows(), QList<int>({0, 1, 2}));
    list.shiftUp();
    EXPECT_EQ(names().join(""), "acdbef");
    list.shiftDown();
    EXPECT_EQ(names().join(""), "bacdef");
    select({4, 5});
    list.shiftDown();
    EXPECT_EQ(names().join(""), "bacdef");
    list.moveRows({0, 2, 5}, 4);
    EXPECT_EQ(names().join(""), "adbcfe");
    list.moveRows({1, 2}, 0);
    EXPECT_EQ(names().join(""), "dbacfe");
    list.moveRows({1}, 2); // onto itself
    EXPECT_EQ(names().join(""), "dbacfe");
    EXPECT_EQ(list.paths().first(), home.path() + "/d.png");
}

TEST_F(ImageList, TakesDroppedPicturesWhereTheyAreDropped)
{
    addPages("ab");
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(file("x.png")), QUrl("https://example.org/y.png"),
                  QUrl::fromLocalFile(home.path() + "/gone.png"), QUrl::fromLocalFile("/")});
    const QRect second = list.visualItemRect(list.item(1));
    const QPoint place = second.topLeft() + QPoint(20, 5);
    QDragEnterEvent enter(place, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(list.viewport(), &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop(place, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(list.viewport(), &drop);
    EXPECT_EQ(names().join(""), "ax.pngb");
    EXPECT_EQ(told.size(), 1);
    EXPECT_FALSE(list.insertFiles({home.path() + "/film.mp4"}).isEmpty());
    select({0});
    list.insertFiles({home.path() + "/b.png"});
    EXPECT_EQ(names().join(""), "ab.pngx.pngb");

    // Onto an entry's lower half: behind it.
    data.setUrls({QUrl::fromLocalFile(file("z.png"))});
    const QPoint lower = list.visualItemRect(list.item(0)).bottomLeft() + QPoint(20, -5);
    QDragEnterEvent again(lower, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(list.viewport(), &again);
    QDropEvent below(lower, Qt::CopyAction, &data, Qt::LeftButton, {});
    QApplication::sendEvent(list.viewport(), &below);
    EXPECT_EQ(names().join("").toStdString(), "az.pngb.pngx.pngb");
}

// ---- thumbnails ---------------------------------------------------------------------------------

const Thumbnail *loaded(ThumbnailLoader &loader, const QString &path)
{
    QSignalSpy spy(&loader, &ThumbnailLoader::loaded);
    const Thumbnail *known = loader.thumbnail(path);
    while (!known && spy.wait(5000))
        known = loader.thumbnail(path);
    return known;
}

TEST(Thumbnails, ShowWhatAFileHolds)
{
    const TemporaryHome home;
    ThumbnailLoader loader;
    loader.setSize({100, 80});
    const Thumbnail *jpeg =
        loaded(loader, picture(home.path() + "/wide.jpg", Qt::red, {3264, 1000}));
    ASSERT_TRUE(jpeg);
    EXPECT_EQ(jpeg->pixmap.size(), QSize(100, 30));
    const QString path = home.path() + "/tall.tif";
    cv::imwrite(path.toStdString(), cv::Mat(800, 200, CV_8UC3, cv::Scalar(200, 100, 50)));
    const Thumbnail *tiff = loaded(loader, path);
    ASSERT_TRUE(tiff);
    EXPECT_EQ(tiff->pixmap.size(), QSize(20, 80));
    EXPECT_EQ(tiff->pixmap.toImage().pixelColor(9, 40), QColor(50, 100, 200));
    const Thumbnail *damaged =
        loaded(loader, writeFile(home.path() + "/damaged.jpg", "no picture at all"));
    EXPECT_TRUE(damaged && damaged->pixmap.isNull() && !damaged->isMissing());
    const Thumbnail *gone = loaded(loader, home.path() + "/gone.jpg");
    EXPECT_TRUE(gone && gone->isMissing());
}

TEST(Thumbnails, FollowTheFileOnTheDisk)
{
    const TemporaryHome home;
    ImageListWidget list;
    list.resize(200, 400);
    const QString path = picture(home.path() + "/page.png", Qt::red);
    list.addFile(path, "page");
    list.show();
    const auto shown = [&](QColor colour) {
        const QImage image = list.viewport()->grab().toImage();
        return image.pixelColor(list.visualItemRect(list.item(0)).center()) == colour;
    };
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown(Qt::red); }, 5000));
    picture(path, Qt::green, {641, 480});
    list.addFile(path, "page"); // captured over it
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown(Qt::green); }, 5000));
    // Another program changes and removes it.
    picture(home.path() + "/other.png", Qt::blue);
    QFile::remove(path);
    QFile::rename(home.path() + "/other.png", path);
    EXPECT_TRUE(QTest::qWaitFor([&] { return shown(Qt::blue); }, 5000));
    QFile::remove(path);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !shown(Qt::blue); }, 5000));
}

TEST(Thumbnails, EndWithWorkWaiting)
{
    const TemporaryHome home;
    for (int i = 0; i < 40; ++i)
        picture(home.path() + QString("/%1.bmp").arg(i), Qt::red);
    auto loader = std::make_unique<ThumbnailLoader>();
    for (int i = 0; i < 400; ++i)
        EXPECT_EQ(loader->thumbnail(home.path() + QString("/%1.bmp").arg(i % 40)), nullptr);
    loader.reset();
    QCoreApplication::processEvents();
}

TEST_F(ImageList, CapturesUnderWayKeepTheirPlaceUntilTheirFilesAreThere)
{
    const QString kept = file("kept.png"), later = home.path() + "/later.png";
    for (const char *name : {"coded", "lost", "none"})
        list.addUnderWay(home.path() + '/' + name, name);
    list.addFile(kept, "kept");
    list.addUnderWay(kept, "kept"); // captured again under the same name
    EXPECT_TRUE(list.isUnderWay(kept) && list.isUnderWay(home.path() + "/lost"));
    list.settle(home.path() + "/coded", file("4711.png"), "4711.png");
    list.addFileBehind(home.path() + "/4711.png", file("4711_1.png"), "4711_1.png");
    list.addLostPage("lost page", home.path() + "/lost");
    list.settle(home.path() + "/none", QString(), QString());
    list.settle(kept, QString(), QString()); // failed: the earlier one is still there
    EXPECT_EQ(names(), QStringList({"4711.png", "4711_1.png", "lost page", "kept"}));
    EXPECT_FALSE(list.isUnderWay(kept));

    list.addUnderWay(later, "later.png");
    select({4});
    list.deleteSelected();
    list.settle(later, file("later.png"), "later.png");
    EXPECT_EQ(names().last(), "later.png") << "its file was written all the same";
}

} // namespace
