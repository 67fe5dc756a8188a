#include "features/unfinished_work.h"
#include "mainwindow/lists/image_list.h"
#include "mainwindow/shown_window.h"

#include <QGraphicsView>
#include <QLineEdit>
#include <QListWidget>
#include <QLocale>
#include <QMessageBox>
#include <QSignalSpy>
#include <QTimer>

#include <algorithm>
#include <utility>

namespace {

constexpr int kDeadlineMs = 5000;

class Window : public ShownWindow
{
protected:
    void SetUp() override
    {
        ShownWindow::SetUp();
        open();
    }
    bool isEnabled(const char *name) const { return find<QWidget>(name)->isEnabled(); }
};

// The main camera tells its sizes one after the other.
class SlowProbePlatform : public FakePlatform
{
public:
    QList<CameraInfo> cameras() const override
    {
        return {{QStringLiteral("main-12090001"), QStringLiteral("Main")},
                {QStringLiteral("assist-120900a1"), QStringLiteral("Assist")}};
    }
    QString probeCommand(const QString &, int index) const override
    {
        const QString line = QStringLiteral("echo '[probe] %1@[15.0 15.0]fps'");
        return index != 0 ? QStringLiteral("true")
                          : QStringLiteral("sh -c \"%1; sleep 0.3; %2\"")
                                .arg(line.arg(QStringLiteral("1280x720")),
                                     line.arg(QStringLiteral("1920x1080")));
    }
};

} // namespace

TEST_F(Window, PagesFollowTheModeButtonsAndTheOverlays)
{
    const std::tuple<const char *, int, int, bool, bool> presses[] = {
        {"bt_multipdf", MultipdfMode, MultipdfMode, false, false},
        {"bt_set", SettingMode, MultipdfMode, true, false},
        {"bt_assistcam", AssistcamMode, MultipdfMode, false, true},
        {"bt_set", SettingMode, MultipdfMode, true, false},
        {"bt_set", MultipdfMode, MultipdfMode, false, false},
        {"bt_assistcam", AssistcamMode, MultipdfMode, false, true},
        {"bt_merge", MergeImageMode, MergeImageMode, false, false},
        {"bt_record", RecordMode, RecordMode, false, false},
        {"bt_document", DocumentMode, DocumentMode, false, false},
    };
    for (const auto &[button, page, mode, setting, assist] : presses) {
        find<QAbstractButton>(button)->click();
        EXPECT_EQ(find<QStackedWidget>("stackedWidget")->currentIndex(), page) << button;
        EXPECT_EQ(currentFunMode, mode) << button;
        EXPECT_EQ(isSettingFlag, setting) << button;
        EXPECT_EQ(isAssistcamFlag, assist) << button;
    }
}

TEST_F(Window, NamingRuleEnablesItsFields)
{
    BarQrCodeType = 1;
    const char *names[] = {"customLabel", "customTextEdit", "numLabel",
                           "numTextEdit", "barcodeRadioBt", "qrcodeRadioBt"};
    const char *const enabled[] = {"111100", "000000", "111000", "110000", "000011"}; // by rule
    for (const int rule : {4, 1, 2, 3, 0}) {
        find<QComboBox>("nameComBox")->setCurrentIndex(rule);
        EXPECT_EQ(fNameType, rule);
        for (int i = 0; i < 6; ++i)
            EXPECT_EQ(isEnabled(names[i]), enabled[rule][i] == '1') << names[i] << " by " << rule;
    }
    EXPECT_TRUE(find<QAbstractButton>("qrcodeRadioBt")->isChecked());
}

TEST_F(Window, BoxesAndButtonsSetWhatTheySay)
{
    find<QAbstractButton>("TrimCheckBox")->click();
    EXPECT_TRUE(isDelBlackedge);
    find<QAbstractButton>("TrimCheckBox")->click();
    EXPECT_FALSE(isDelBlackedge);
    for (const auto &[button, direction] :
         {std::pair("horizontalRadioBt", 1), std::pair("verticalRadioBt", 0)})
    {
        find<QAbstractButton>(button)->click();
        EXPECT_EQ(mergeDir, direction);
    }
    for (const auto &[button, pages] :
         {std::pair("fourPageRadioBt", 4), std::pair("threePageRadioBt", 3),
          std::pair("twoPageRadioBt", 2)})
    {
        find<QAbstractButton>(button)->click();
        EXPECT_EQ(mergePages, pages);
    }
}

TEST_F(Window, ShortcutsRestWhileTextIsTyped)
{
    QSignalSpy captures(find<QAbstractButton>("bt_captrue"), &QAbstractButton::clicked);
    QSignalSpy settings(find<QAbstractButton>("bt_set"), &QAbstractButton::clicked);
    auto *text = find<QLineEdit>("customTextEdit");
    text->setFocus();
    for (const Qt::Key key : {Qt::Key_A, Qt::Key_Space, Qt::Key_Delete})
        QTest::keyClick(text, key);
    EXPECT_EQ(text->text(), QStringLiteral("a "));
    auto *number = find<QLineEdit>("numTextEdit");
    for (QLineEdit *field : {text, number}) {
        for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
            field->setFocus();
            QTest::keyClick(field, key);
            EXPECT_FALSE(field->hasFocus()) << key;
        }
    }
    number->selectAll();
    QTest::keyClicks(number, QStringLiteral("100001"));
    EXPECT_EQ(number->text(), QStringLiteral("10000"));
    EXPECT_EQ(captures.count() + settings.count(), 0);
    text->setFocus();
    QTest::keyClick(text, Qt::Key_6, Qt::ControlModifier);
    EXPECT_EQ(settings.count(), 1) << "no text";
    auto *path = find<QLineEdit>("savepathLineEdit");
    path->setFocus();
    QTest::keyClick(path, Qt::Key_Space);
    EXPECT_EQ(captures.count(), 1) << "read only";
    settings.clear();
    captures.clear();

    QWidget *centre = window->centralWidget();
    centre->setFocus();
    for (const Qt::Key key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter})
        QTest::keyClick(centre, key);
    EXPECT_EQ(captures.count(), 3);
    // A busy window sees the repeats of a held key as releases and presses of one time.
    const auto takesPress = [centre](ulong released, ulong pressed) {
        QKeyEvent up(QEvent::KeyRelease, Qt::Key_Space, Qt::NoModifier);
        up.setTimestamp(released);
        QApplication::sendEvent(centre, &up);
        QKeyEvent down(QEvent::ShortcutOverride, Qt::Key_Space, Qt::NoModifier);
        down.setTimestamp(pressed);
        down.ignore();
        QApplication::sendEvent(centre, &down);
        return down.isAccepted();
    };
    EXPECT_TRUE(takesPress(5000, 5000));
    EXPECT_FALSE(takesPress(5000, 5200)) << "pressed again: a capture";
    captures.clear();
    for (int repeat = 0; repeat < 5; ++repeat)
        QTest::simulateEvent(centre, true, Qt::Key_Space, Qt::NoModifier, QStringLiteral(" "),
                             true);
    EXPECT_EQ(captures.count(), 0) << "held down";
    QTest::keyClick(centre, Qt::Key_6, Qt::ControlModifier);
    EXPECT_EQ(settings.count(), 1);

    auto *button = find<QAbstractButton>("bt_set");
    button->setFocus(Qt::TabFocusReason);
    QTest::keyClick(button, Qt::Key_Space);
    EXPECT_EQ(settings.count(), 2);
    EXPECT_EQ(captures.count(), 0) << "Space belongs to the button reached with Tab";
}

TEST_F(Window, SelectsTheNewestFileAndLeavesPagesUnselected)
{
    const auto *files = find<QListWidget>("listWidget1");
    const auto *pages = find<QListWidget>("pdflistWidget");
    for (const char *name : {"1.jpg", "2.jpg"}) {
        const QString path = documentsPath() + QLatin1Char('/') + QLatin1String(name);
        window->addToImageList(path, QLatin1String(name));
        window->addToPdfImageList(path, QLatin1String(name));
    }
    ASSERT_EQ(files->selectedItems().size(), 1);
    EXPECT_EQ(files->row(files->selectedItems().first()), 1);
    EXPECT_EQ(pages->count(), 2);
    EXPECT_TRUE(pages->selectedItems().isEmpty()) << "an export would lose the first page";
}

TEST_F(Window, LaysTheOverlaysOutWithTheWindow)
{
    auto *view = find<QGraphicsView>("graphicsView");
    const QRectF sceneBefore = view->sceneRect();
    window->resize(1300, 900);
    const QWidget *area = find<QWidget>("displayWidget");
    ASSERT_TRUE(QTest::qWaitFor([&] { return view->size() == area->size(); }, kDeadlineMs));
    EXPECT_EQ(area->mapTo(window.get(), QPoint(0, 0)), QPoint(200, 0));
    EXPECT_EQ(QSize(SceneShowWidth, SceneShowHeight), view->size());
    EXPECT_EQ(view->sceneRect(), sceneBefore) << "no camera resolution is known";
    const QWidget *label = find<QWidget>("manualCutLabel");
    EXPECT_EQ(label->x(), (area->width() - label->width()) / 2);
    EXPECT_EQ(label->y(), (area->height() - label->height()) / 2);
    op_width = 1920;
    op_height = 1080;
    window->resize(1200, 800);
    EXPECT_TRUE(QTest::qWaitFor([&] { return view->sceneRect().size().toSize() == area->size(); },
                                kDeadlineMs));
    window->resize(400, 300);
    EXPECT_EQ(window->size(), QSize(860, 660));
}

TEST_F(ShownWindow, PagesOfAMergeThatWasNotFinishedAreListedOnceAtTheNextStart)
{
    const QString page = documentsPath() + QStringLiteral("/page.jpg");
    ASSERT_TRUE(QImage(8, 8, QImage::Format_RGB888).save(page));
    noteUnfinished(UnfinishedWork::MergePages, page);
    noteUnfinished(UnfinishedWork::MergePages, page + QStringLiteral(".gone"));
    for (const int count : {1, 0}) {
        open();
        EXPECT_EQ(find<ImageListWidget>("listWidget1")->count(), count);
        window.reset();
    }
    QFile::remove(page);
}

TEST_F(Window, CountdownRunsOnceAndOutlivesAChange)
{
    QSignalSpy steps(find<QTimer>("countdownTimer"), &QTimer::timeout);
    const QLabel *label = find<QLabel>("wiseTimeLabel");
    window->wiseCaptrueEvent(true);
    EXPECT_EQ(label->text(), QStringLiteral("3"));
    ASSERT_TRUE(steps.wait(kDeadlineMs));
    window->wiseCaptrueEvent(true);
    window->wiseCaptrueEvent(false);
    EXPECT_EQ(label->text(), QStringLiteral("2")) << "a second signal restarts nothing";
    EXPECT_FALSE(label->isVisible()) << "it would cover the hint that there is no picture";
    window->slImage(QImage(64, 48, QImage::Format_RGB888));
    EXPECT_TRUE(label->isVisible());
    ASSERT_TRUE(QTest::qWaitFor([] { return !isTimerDoing; }, kDeadlineMs));
    EXPECT_EQ(label->text(), QStringLiteral("not captured")) << "there is no camera";
    EXPECT_EQ(steps.count(), 3);
    const auto *files = find<ImageListWidget>("listWidget1");
    ASSERT_EQ(files->count(), 1) << "the lost page";
    EXPECT_TRUE(files->item(0)->text().startsWith(QStringLiteral("Not captured, ")));
    EXPECT_TRUE(files->isMissing(0));
    const auto boxes = window->findChildren<QMessageBox *>();
    EXPECT_TRUE(std::any_of(boxes.begin(), boxes.end(), [](const QMessageBox *box) {
        return box->text() == QLatin1String("A page was not captured.");
    }));
    window->wiseCaptrueEvent(false);
    EXPECT_FALSE(label->isVisible());

    isWiseCaptrue = true;
    window->wiseCaptrueEvent(true);
    find<QAbstractButton>("bt_wiseCaptrue")->click();
    EXPECT_FALSE(isTimerDoing) << "stopped in the middle: no capture comes";
    EXPECT_FALSE(window->findChild<QTimer *>(QStringLiteral("countdownTimer"))->isActive());
    EXPECT_FALSE(label->isVisible());
}

TEST_F(Window, TheFreeSpaceIsThatOfTheFolderInUse)
{
    const auto *space = find<QLabel>("spaceStatusLabel");
    const QString folder = std::exchange(SaveFolderPath, QStringLiteral("/proc"));
    const QString none = QLocale().formattedDataSize(0, 1, QLocale::DataSizeSIFormat);
    const auto tellsNone = [&] { return space->text().startsWith(none); };
    EXPECT_TRUE(QTest::qWaitFor(tellsNone, kDeadlineMs));
    SaveFolderPath = folder;
    EXPECT_TRUE(QTest::qWaitFor([&] { return !tellsNone(); }, kDeadlineMs));
}

TEST_F(Window, TheChosenCameraRecordsAndFocuses)
{
    window.reset();
    auto *fake = FakePlatform::install();
    fake->cameraList = {{QStringLiteral("main-12090001"), {}},
                        {QStringLiteral("assist-120900a1"), {}}};
    fake->probe = QStringLiteral("true");
    fake->canFocusAll = true;
    open();
    find<QComboBox>("deviceComBox")->setCurrentIndex(1);
    find<QAbstractButton>("Bt_StartRec")->click();
    EXPECT_EQ(fake->recordedCamera, 1);
    auto *focus = find<QAbstractButton>("Bt_Focus");
    ASSERT_TRUE(QTest::qWaitFor([&] { return focus->isEnabled(); }, kDeadlineMs));
    focus->click();
    EXPECT_TRUE(QTest::qWaitFor([&] { return fake->focusedCamera == 1; }, kDeadlineMs));
}

TEST_F(Window, AReturnInAnOpenListChoosesAndCapturesNothing)
{
    auto *box = find<QComboBox>("cropComBox");
    box->showPopup();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(box->view()->window()));
    QTest::keyClick(box->view(), Qt::Key_Down);
    QTest::keyClick(box->view(), Qt::Key_Return);
    EXPECT_EQ(box->currentIndex(), AutomaticCrop);
    EXPECT_FALSE(find<QLabel>("messageLabel")->isVisible()) << "says why nothing is captured";
}

TEST_F(Window, ThePreviewFillsItsAreaAtEverySizeAndInBothLanguages)
{
    const auto *area = find<QWidget>("displayWidget");
    const auto *view = find<QWidget>("graphicsView");
    for (const QSize size : {QSize(1024, 680), QSize(860, 660), QSize(1024, 680)}) {
        window->resize(size);
        for (const int language : {1, 0}) {
            speak(language);
            EXPECT_TRUE(QTest::qWaitFor([&] { return view->size() == area->size(); }, 1000))
                << size.width() << ", language " << language;
        }
    }
}

TEST_F(Window, OpeningTheAssistCameraDoesNotBreakOffTheMainCamerasProbe)
{
    window.reset();
    setPlatform(std::make_unique<SlowProbePlatform>());
    open();
    ASSERT_EQ(allCameraCount, 2);
    find<QAbstractButton>("bt_cam2_on")->click();
    const auto *sizes = find<QComboBox>("resolutionComBox");
    EXPECT_TRUE(QTest::qWaitFor([&] { return sizes->count() == 2; }, kDeadlineMs));
    EXPECT_EQ(sizes->currentText(), QStringLiteral("1920x1080"));
}
