#include "app/paths.h"
#include "app/settings.h"
#include "app/state.h"
#include "mainwindow/fake_platform.h"
#include "mainwindow/mainwindow.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAbstractSlider>
#include <QComboBox>
#include <QFile>
#include <QGraphicsView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QSignalSpy>
#include <QStackedWidget>
#include <QTest>
#include <QTimer>

#include <gtest/gtest.h>

namespace {

constexpr int kDeadlineMs = 5000;

class Window : public testing::Test
{
protected:
    void SetUp() override
    {
        QFile::remove(settingsPath());
        setPlatform(std::make_unique<FakePlatform>());
        resetState();
    }
    void TearDown() override
    {
        window.reset();
        setPlatform(nullptr);
        resetState();
    }

    static void resetState()
    {
        fImgformat = fNameType = colorMode = sLanguage = BarQrCodeType = fNumIndex = 0;
        cutMode = 0;
        ImgQuality = 80;
        fRecformat = QStringLiteral("mov");
        isOpenCamera = false;
        isOpenAssistCam = isTimerDoing = false;
        op_width = op_height = 0;
    }

    void open()
    {
        window = std::make_unique<MainWindow>();
        window->show();
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }

    template <class T>
    T *find(const char *name) const
    {
        T *widget = window->findChild<T *>(QString::fromLatin1(name));
        EXPECT_NE(widget, nullptr) << name;
        return widget;
    }
    void click(const char *name) const { find<QAbstractButton>(name)->click(); }
    bool isEnabled(const char *name) const { return find<QWidget>(name)->isEnabled(); }
    int page() const { return find<QStackedWidget>("stackedWidget")->currentIndex(); }
    QString message() const
    {
        const QLabel *label = find<QLabel>("messageLabel");
        return label->isHidden() ? QString() : label->text();
    }

    std::unique_ptr<MainWindow> window;
};

bool isControl(const QWidget *widget)
{
    return qobject_cast<const QAbstractButton *>(widget) ||
           qobject_cast<const QComboBox *>(widget) || qobject_cast<const QLineEdit *>(widget) ||
           qobject_cast<const QAbstractSlider *>(widget) ||
           qobject_cast<const QAbstractItemView *>(widget);
}

// Qt's own parts of a control, such as the button in a line edit, answer for their owner.
bool isPartOfControl(const QWidget *widget)
{
    for (const QWidget *w = widget->parentWidget(); w; w = w->parentWidget()) {
        if (isControl(w) || qobject_cast<const QAbstractScrollArea *>(w) ||
            w->inherits("QComboBoxPrivateContainer"))
            return w->objectName() != QLatin1String("labelswidget") &&
                   !widget->objectName().startsWith(QLatin1String("labelPage"));
    }
    return false;
}

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

TEST_F(Window, NamesAndExplainsEveryControl)
{
    open();
    int controls = 0;
    for (const QWidget *widget : window->findChildren<QWidget *>()) {
        if (!isControl(widget) || isPartOfControl(widget))
            continue;
        ++controls;
        const std::string name = widget->objectName().toStdString();
        EXPECT_FALSE(name.empty()) << widget->metaObject()->className();
        EXPECT_FALSE(widget->accessibleName().isEmpty()) << name;
        EXPECT_FALSE(widget->toolTip().isEmpty()) << name;
    }
    EXPECT_GT(controls, 45);
}

TEST_F(Window, PagesFollowTheModeButtonsAndTheOverlays)
{
    open();
    struct Press
    {
        const char *button;
        int page, mode;
        bool setting, assist;
    };
    const Press presses[] = {
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
    for (const Press &press : presses) {
        click(press.button);
        EXPECT_EQ(page(), press.page) << press.button;
        EXPECT_EQ(currentFunMode, press.mode) << press.button;
        EXPECT_EQ(isSettingFlag, press.setting) << press.button;
        EXPECT_EQ(isAssistcamFlag, press.assist) << press.button;
    }
}

TEST_F(Window, NamingRuleEnablesItsFields)
{
    open();
    BarQrCodeType = 1;
    const bool rows[5][5] = {
        // custom label, custom text, number label, number text, kinds of code
        {true, true, true, true, false},    {false, false, false, false, false},
        {true, true, true, false, false},   {true, true, false, false, false},
        {false, false, false, false, true},
    };
    for (const int rule : {4, 1, 2, 3, 0}) {
        find<QComboBox>("nameComBox")->setCurrentIndex(rule);
        EXPECT_EQ(fNameType, rule);
        const char *names[] = {"customLabel", "customTextEdit", "numLabel", "numTextEdit",
                               "barcodeRadioBt"};
        for (int i = 0; i < 5; ++i)
            EXPECT_EQ(isEnabled(names[i]), rows[rule][i]) << names[i] << " under rule " << rule;
        EXPECT_EQ(isEnabled("qrcodeRadioBt"), rows[rule][4]);
    }
    EXPECT_TRUE(find<QAbstractButton>("qrcodeRadioBt")->isChecked());
}

TEST_F(Window, ShortcutsRestWhileTextIsTyped)
{
    open();
    QSignalSpy captures(find<QAbstractButton>("bt_captrue"), &QAbstractButton::clicked);
    QSignalSpy settings(find<QAbstractButton>("bt_set"), &QAbstractButton::clicked);
    auto *text = find<QLineEdit>("customTextEdit");
    text->setFocus();
    for (const int key : {Qt::Key_A, Qt::Key_Space, Qt::Key_Return, Qt::Key_Delete})
        QTest::keyClick(text, static_cast<Qt::Key>(key));
    for (const int key : {Qt::Key_6, Qt::Key_L, Qt::Key_0})
        QTest::keyClick(text, static_cast<Qt::Key>(key), Qt::ControlModifier);
    EXPECT_EQ(captures.count() + settings.count(), 0);
    EXPECT_EQ(text->text(), QStringLiteral("a "));

    QWidget *centre = window->centralWidget();
    centre->setFocus();
    for (const int key : {Qt::Key_Space, Qt::Key_Return, Qt::Key_Enter})
        QTest::keyClick(centre, static_cast<Qt::Key>(key));
    EXPECT_EQ(captures.count(), 3);
    QTest::keyClick(centre, Qt::Key_6, Qt::ControlModifier);
    EXPECT_EQ(settings.count(), 1);

    auto *button = find<QAbstractButton>("bt_set");
    button->setFocus(Qt::TabFocusReason);
    QTest::keyClick(button, Qt::Key_Space);
    EXPECT_EQ(settings.count(), 2);
    EXPECT_EQ(captures.count(), 3) << "Space belongs to the button reached with Tab";
}

TEST_F(Window, RefusesToCaptureWithoutFolderOrUsableName)
{
    open();
    click("bt_captrue");
    EXPECT_TRUE(message().contains(QStringLiteral("no camera"))) << message().toStdString();
    isOpenCamera = true;
    SaveFolderPath.clear();
    click("bt_captrue");
    EXPECT_TRUE(message().contains(QStringLiteral("folder"))) << message().toStdString();
    SaveFolderPath = documentsPath();
    find<QComboBox>("nameComBox")->setCurrentIndex(NameCustom);
    find<QLineEdit>("customTextEdit")->setText(QStringLiteral("../other"));
    click("bt_captrue");
    EXPECT_FALSE(message().contains(QStringLiteral("folder"))) << message().toStdString();
    EXPECT_EQ(find<QListWidget>("listWidget1")->count(), 0);
}

TEST_F(Window, ShowsWhyACaptureFailedAndListsItAsMissing)
{
    open();
    isOpenCamera = true;
    click("bt_captrue"); // no stream runs
    EXPECT_FALSE(message().isEmpty());
    EXPECT_EQ(find<QListWidget>("listWidget1")->count(), 1);
    EXPECT_EQ(fNumIndex, 0) << "a failed capture takes no number";
}

TEST_F(Window, SelectsTheNewestFileAndLeavesPagesUnselected)
{
    open();
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

TEST_F(Window, KeepsSettingsOverARestart)
{
    open();
    find<QComboBox>("formatComBox")->setCurrentIndex(4);
    find<QComboBox>("v_formatComBox")->setCurrentIndex(2);
    find<QComboBox>("cropComBox")->setCurrentIndex(ManualCrop);
    find<QAbstractSlider>("qualitySlider")->setValue(35);
    EXPECT_TRUE(find<QWidget>("manualCutLabel")->isVisible());
    window.reset();
    resetState();
    open();
    EXPECT_EQ(fImgformat, 4);
    EXPECT_EQ(fRecformat, QStringLiteral("mp4"));
    EXPECT_EQ(find<QComboBox>("v_formatComBox")->currentIndex(), 2);
    EXPECT_EQ(find<QComboBox>("cropComBox")->currentText(), QStringLiteral("Manual crop"));
    EXPECT_EQ(find<QLabel>("jpgQualityLabel")->text(), QStringLiteral("35%"));
    EXPECT_TRUE(find<QWidget>("manualCutLabel")->isVisible());
}

TEST_F(Window, SurvivesASettingsFileThatIsNone)
{
    QFile file(settingsPath());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray(4096, '\x8f'));
    file.close();
    open();
    EXPECT_TRUE(SaveFolderPath.isEmpty());
    EXPECT_EQ(ImgQuality, 0);
}

TEST_F(Window, LaysTheOverlaysOutWithTheWindow)
{
    open();
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

TEST_F(Window, CountdownRunsOnceAndOutlivesAChange)
{
    open();
    QSignalSpy steps(window->findChild<QTimer *>(QStringLiteral("countdownTimer")),
                     &QTimer::timeout);
    const QLabel *label = find<QLabel>("wiseTimeLabel");
    window->wiseCaptrueEvent(true);
    EXPECT_EQ(label->text(), QStringLiteral("3"));
    ASSERT_TRUE(steps.wait(kDeadlineMs));
    window->wiseCaptrueEvent(true);
    window->wiseCaptrueEvent(false);
    EXPECT_EQ(label->text(), QStringLiteral("2")) << "a second signal restarts nothing";
    EXPECT_TRUE(label->isVisible());
    ASSERT_TRUE(QTest::qWaitFor([] { return !isTimerDoing; }, kDeadlineMs));
    EXPECT_EQ(label->text(), QStringLiteral("Wait for the next page..."));
    EXPECT_EQ(steps.count(), 3);
    window->wiseCaptrueEvent(false);
    EXPECT_FALSE(label->isVisible());

    isWiseCaptrue = true;
    window->wiseCaptrueEvent(true);
    find<QAbstractButton>("bt_wiseCaptrue")->click();
    EXPECT_FALSE(isTimerDoing) << "stopped in the middle: no capture comes";
    EXPECT_FALSE(window->findChild<QTimer *>(QStringLiteral("countdownTimer"))->isActive());
    EXPECT_FALSE(label->isVisible());
}

TEST_F(Window, LanguageChangesTheBoxesAndKeepsTheirChoice)
{
    open();
    find<QComboBox>("cropComBox")->setCurrentIndex(MultiGraphCrop);
    find<QComboBox>("languageComBox")->setCurrentIndex(1);
    EXPECT_EQ(find<QComboBox>("cropComBox")->currentText(), QString::fromUtf8("多图裁切"));
    EXPECT_EQ(cutMode, MultiGraphCrop);
    EXPECT_EQ(find<QComboBox>("formatComBox")->itemText(0), QStringLiteral("JPG"));
    EXPECT_EQ(find<QLabel>("recTimeLabel")->text(), QStringLiteral("00:00:00"));
}

TEST_F(Window, OpeningTheAssistCameraDoesNotBreakOffTheMainCamerasProbe)
{
    setPlatform(std::make_unique<SlowProbePlatform>());
    open();
    ASSERT_EQ(allCameraCount, 2);
    find<QAbstractButton>("bt_cam2_on")->click();
    const auto *sizes = find<QComboBox>("resolutionComBox");
    EXPECT_TRUE(QTest::qWaitFor([&] { return sizes->count() == 2; }, kDeadlineMs));
    EXPECT_EQ(sizes->currentText(), QStringLiteral("1920x1080"));
}
