#include "imaging/capture.h"
#include "imaging/pdf.h"
#include "mainwindow/look/failure_text.h"
#include "mainwindow/look/guide_window.h"
#include "mainwindow/preview/manual_cut_overlay.h"
#include "mainwindow/shown_window.h"

#include <QAction>
#include <QGroupBox>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QRegularExpression>
#include <QTextBlock>
#include <QTextBrowser>
#include <QTimer>
#include <QTranslator>

namespace {

/// Every text of the window that a user can meet, by widget and property.
QMap<QString, QString> texts(const MainWindow &window)
{
    QMap<QString, QString> found;
    int number = 0;
    for (const QObject *object : window.findChildren<QObject *>()) {
        for (const char *property : {"text", "title", "toolTip", "accessibleName",
                                     "accessibleDescription", "windowTitle", "placeholderText"})
        {
            const QString text = object->property(property).toString();
            if (!text.isEmpty() && !object->objectName().startsWith("qt_"))
                found[QStringLiteral("%1 %2.%3")
                          .arg(number, 4, 10, QLatin1Char('0'))
                          .arg(object->objectName(), QLatin1String(property))] = text;
        }
        ++number;
    }
    return found;
}

bool hasWord(const QString &text)
{
    static const QRegularExpression word(QStringLiteral("[A-Za-z]{2,}"));
    return text.contains(word);
}

/// Counts how often a widget disappears.
class HideCounter : public QObject
{
public:
    explicit HideCounter(QWidget *widget) { widget->installEventFilter(this); }
    bool eventFilter(QObject *, QEvent *event) override
    {
        hides += event->type() == QEvent::Hide ? 1 : 0;
        return false;
    }
    int hides = 0;
};

} // namespace

class Language : public ShownWindow
{
};

TEST_F(Language, ChineseLeavesNoTextInEnglish)
{
    open();
    // The fake camera tells nothing; what the window says of it must not come in between.
    ASSERT_TRUE(QTest::qWaitFor([] { return isProcessCmd; }));
    const QMap<QString, QString> english = texts(*window);
    speak(1);
    const QMap<QString, QString> chinese = texts(*window);
    ASSERT_EQ(english.keys(), chinese.keys());
    EXPECT_GT(english.size(), 180);
    for (auto entry = english.begin(); entry != english.end(); ++entry) {
        const bool isData = entry.key().contains("savepath") || entry.key().contains("Status");
        if (hasWord(entry.value()) && !isData) {
            EXPECT_NE(chinese[entry.key()], entry.value()) << entry.key().toStdString();
        }
    }
    EXPECT_EQ(QCoreApplication::translate("QPlatformTheme", "Cancel"), QString::fromUtf8("取消"));
    speak(0);
    const QMap<QString, QString> back = texts(*window);
    for (auto entry = english.begin(); entry != english.end(); ++entry) {
        if (!entry.key().contains("Status")) {
            EXPECT_EQ(back[entry.key()], entry.value()) << entry.key().toStdString();
        }
    }
}

TEST_F(Language, SwitchingKeepsEveryChoiceAndTellsTheBoxesTwice)
{
    open();
    ASSERT_TRUE(QTest::qWaitFor([] { return isProcessCmd; })); // as above
    op_width = 1600;
    op_height = 1200;
    window->resize(900, 700);
    QImage frame(1600, 1200, QImage::Format_RGB888);
    frame.fill(Qt::gray);
    window->slImage(frame);
    const char *names[] = {"cropComBox", "colorComBox", "nameComBox", "v_nameComBox",
                           "positionComBox"};
    const int choices[] = {ManualCrop, ColorOptimization, NameAsFolder, 2, 3};
    for (int i = 0; i < 5; ++i)
        find<QComboBox>(names[i])->setCurrentIndex(choices[i]);
    find<QLineEdit>("customTextEdit")->setText(QStringLiteral("kept"));
    auto *overlay = window->findChild<ManualCutOverlay *>();
    overlay->setFrameRect({100, 120, 640, 480});

    QVector<int> changes[5];
    int wrongCrops = 0;
    for (int i = 0; i < 5; ++i)
        QObject::connect(find<QComboBox>(names[i]),
                         QOverload<int>::of(&QComboBox::currentIndexChanged), window.get(),
                         [&, i](int index) {
                             changes[i].append(index);
                             wrongCrops += cutMode == ManualCrop ? 0 : 1;
                         });
    HideCounter counter(overlay);
    speak(1);
    for (int i = 0; i < 5; ++i) {
        EXPECT_EQ(find<QComboBox>(names[i])->currentIndex(), choices[i]) << names[i];
        EXPECT_EQ(changes[i], (QVector<int>{-1, choices[i]})) << names[i];
    }
    EXPECT_EQ(find<QComboBox>("positionComBox")->currentText(), QString::fromUtf8("中间"));
    EXPECT_EQ(wrongCrops, 0);
    EXPECT_EQ(cutMode, ManualCrop);
    EXPECT_EQ(colorMode, ColorOptimization);
    EXPECT_EQ(fNameType, NameAsFolder);
    EXPECT_EQ(recordNameType, 3);
    EXPECT_EQ(camCombinePos, 3);
    EXPECT_TRUE(overlay->isVisible());
    EXPECT_EQ(counter.hides, 0);
    EXPECT_EQ(overlay->frameRect(), QRect(100, 120, 640, 480));
    EXPECT_EQ(find<QLineEdit>("customTextEdit")->text(), QStringLiteral("kept"));
    EXPECT_FALSE(find<QLineEdit>("numTextEdit")->isEnabled());
}

TEST_F(Language, AnUnknownLanguageIsEnglish)
{
    sLanguage = 5;
    open();
    sLanguage = 5;
    window->updateUiLanguage();
    EXPECT_EQ(find<QComboBox>("cropComBox")->itemText(3), QStringLiteral("Multi-graph crop"));
    EXPECT_EQ(find<QAbstractButton>("bt_captrue")->text(), QStringLiteral("Captrue"));
}

// The sentences are made by the image work and come here as they are.
TEST_F(Language, FailuresOfTheImageWorkAreTranslated)
{
    open();
    speak(1);
    const QString folder = documentsPath();
    const std::string path = (folder + "/a: b; c.jpg").toStdString();
    const std::string missing = (folder + "/missing/a.jpg").toStdString();
    const cv::Mat page(120, 160, CV_8UC3, cv::Scalar(200, 200, 200));
    CaptureOptions plain, automatic, manual;
    automatic.cropMode = AutomaticCrop;
    manual.cropMode = ManualCrop;
    manual.manualRect = {500, 500, 10, 10};
    PdfDocument empty((folder + "/empty.pdf").toStdString());
    empty.save();
    PdfDocument damaged((folder + "/damaged.pdf").toStdString());
    QFile noPicture(folder + "/damaged.jpg");
    ASSERT_TRUE(noPicture.open(QIODevice::WriteOnly));
    noPicture.write("no picture");
    noPicture.close();
    damaged.addPage(noPicture.fileName().toStdString());
    const std::string replaced = "The code \"A/B; C\" is no file name, used instead: \"A_B; C\"; "
                                 "An earlier file was replaced: /x/A_B; C.jpg";
    const std::string reports[] = {
        captureFrame(cv::Mat(), path, plain).error,
        captureFrame(page, path, automatic).error,
        captureFrame(page, path, manual).error,
        captureFrame(page, missing, plain).error,
        captureFrame(page, (folder + "/missing/a.pdf").toStdString(), plain).error,
        empty.error(),
        damaged.error(),
        "document 2: the outline cannot be cut out of the frame; cannot write /x; y: z/q.jpg",
        replaced,
    };
    static const QRegularExpression names(QStringLiteral("/[^：]*\\.(jpg|pdf)|“[^”]*”|JPE?G|PDF"));
    for (const std::string &report : reports) {
        ASSERT_FALSE(report.empty());
        QString shown = failureText(report);
        shown.remove(names);
        EXPECT_FALSE(hasWord(shown)) << report << " became " << failureText(report).toStdString();
    }
    EXPECT_EQ(failureText("something: new"), QStringLiteral("something: new"));
}

TEST_F(Language, HintSaysWhatToDoAndFollowsTheLanguage)
{
    open();
    const QLabel *hint = find<QLabel>("hintLabel");
    const QString before = hint->text();
    EXPECT_FALSE(before.isEmpty());
    speak(1);
    EXPECT_FALSE(hasWord(hint->text())) << hint->text().toStdString();
    setPlatform(nullptr); // no stand runs either: the camera has gone
    ASSERT_TRUE(QTest::qWaitFor([&] { return hint->text().contains("USB"); }, 10000));
    EXPECT_TRUE(hint->text().startsWith(QString::fromUtf8("没有摄像头！")));
    EXPECT_GE(hint->height(), hint->heightForWidth(hint->width()));
}

TEST_F(Language, GuideHasTheSameChaptersInBothLanguages)
{
    open();
    QTest::keyClick(window->centralWidget(), Qt::Key_F1);
    auto *guide = window->findChild<GuideWindow *>();
    ASSERT_NE(guide, nullptr);
    const auto *chapters = guide->findChild<QListWidget *>();
    auto *text = guide->findChild<QTextBrowser *>();
    const int count = chapters->count();
    EXPECT_GT(count, 8);
    EXPECT_TRUE(text->toPlainText().contains(QStringLiteral("one extra")));
    speak(1);
    EXPECT_EQ(chapters->count(), count);
    EXPECT_TRUE(text->toPlainText().contains(QString::fromUtf8("多拍一张")));
    guide->findChild<QListWidget *>()->setCurrentRow(count - 2);
    EXPECT_EQ(text->textCursor().block().text(), chapters->item(count - 2)->text());
}

TEST_F(Language, AboutNamesTheLibrariesAndTheLog)
{
    open();
    QString said;
    QTimer::singleShot(0, window.get(), [&] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        said = box->text();
        box->accept();
    });
    find<QAbstractButton>("bt_about")->click();
    for (const char *part :
         {"Qt 5.", "OpenCV ", "FFmpeg ", "zbar 0.", "zxing-cpp 1.", "libharu 2.", "scanerlog"})
        EXPECT_TRUE(said.contains(QLatin1String(part))) << part;
}
