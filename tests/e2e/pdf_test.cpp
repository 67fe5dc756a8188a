#include "app/state.h"
#include "e2e/application.h"
#include "mainwindow/lists/image_list.h"
#include "support/file_size_limit.h"

#include <QAction>
#include <QFile>
#include <QFileDialog>
#include <QImage>
#include <QLineEdit>
#include <QMessageBox>
#include <QProgressBar>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTimer>

#include <gtest/gtest.h>
#include <opencv2/imgcodecs.hpp>

namespace {

/// Types `text` into the next file dialog and accepts it with the Return key, also where that
/// replaces a file.
class FileDialogAnswer
{
public:
    explicit FileDialogAnswer(const QString &text)
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this, text] {
            auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            if (!dialog || m_answered)
                return;
            m_answered = true;
            m_replace.start(20);
            m_proposal = dialog->selectedFiles().value(0);
            auto *edit = dialog->findChild<QLineEdit *>("fileNameEdit");
            edit->setText(text);
            QTest::keyClick(edit, Qt::Key_Return);
            if (dialog->isVisible()) // the completer's list took the key
                QTest::keyClick(edit, Qt::Key_Return);
        });
        m_timer.start(20);
        QObject::connect(&m_replace, &QTimer::timeout, [] {
            if (auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget()))
                box->button(QMessageBox::Yes)->click();
        });
    }
    bool wasAsked() const { return m_answered; }
    QString proposal() const { return m_proposal; }

private:
    QTimer m_timer, m_replace;
    bool m_answered = false;
    QString m_proposal;
};

/// The text of the message box in sight, which is closed.
QString closedBox()
{
    QString text;
    waitFor([&] {
        for (QWidget *widget : QApplication::topLevelWidgets()) {
            auto *box = qobject_cast<QMessageBox *>(widget);
            if (!box || !box->isVisible())
                continue;
            text = box->text();
            box->accept();
            return true;
        }
        return false;
    });
    return text;
}

class Pdf : public testing::Test
{
protected:
    void SetUp() override
    {
        ASSERT_TRUE(m_app.waitForPicture());
        m_app.click("bt_multipdf");
        m_pages = m_app.find<ImageListWidget>("pdflistWidget");
    }

    QString picture(const QString &name, QSize size, QColor colour)
    {
        const QString path = m_app.home() + '/' + name;
        cv::Mat pixels(size.height(), size.width(), CV_8UC3,
                       cv::Scalar(colour.blue(), colour.green(), colour.red()));
        EXPECT_TRUE(cv::imwrite(path.toStdString(), pixels));
        return path;
    }

    void insert(const QStringList &paths)
    {
        const FileDialogAnswer answer('"' + paths.join("\" \"") + '"');
        m_app.click("bt_addfile2");
        EXPECT_TRUE(answer.wasAsked());
    }

    void trigger(const char *action)
    {
        for (QAction *entry : m_pages->actions())
            if (entry->text() == action)
                return entry->trigger();
        FAIL() << action;
    }

    bool exportTo(const QString &path)
    {
        const FileDialogAnswer answer(path);
        m_app.click("bt_exportpdf");
        m_proposal = answer.proposal();
        return answer.wasAsked();
    }

    bool isExporting() const { return m_app.find<QPushButton>("bt_cancelexport")->isVisible(); }
    bool waitForEnd()
    {
        return waitFor([this] { return !isExporting(); }, 20000);
    }

    Application m_app{{{"--modes", "1280x720@30"}, {}, {}}};
    ImageListWidget *m_pages = nullptr;
    QString m_proposal;
};

TEST_F(Pdf, HoldsThePagesInTheOrderOfTheList)
{
    for (int i = 0; i < 3; ++i)
        m_app.click("bt_captrue");
    ASSERT_EQ(m_pages->count(), 3);
    EXPECT_EQ(m_app.files().size(), 3);
    for (const QString &name : m_app.files())
        EXPECT_TRUE(QRegExp("\\d{17}\\.jpg").exactMatch(name)) << qPrintable(name);

    m_pages->clearSelection();
    const QString red = picture("red.png", {300, 200}, Qt::red),
                  green = picture("green one.bmp", {200, 300}, Qt::green),
                  blue = picture("blue.tif", {250, 250}, Qt::blue);
    insert({red, green, blue});
    insert({red}); // the same photo may be two pages
    ASSERT_EQ(m_pages->count(), 7);

    // Blue to the top, the first capture away with its file.
    m_pages->setCurrentRow(5);
    for (int i = 0; i < 6; ++i)
        trigger("Shift up");
    EXPECT_EQ(m_pages->pathAt(0), blue);
    m_pages->setCurrentRow(1);
    const QString deleted = m_pages->pathAt(1);
    QTimer::singleShot(0, [] {
        waitFor([] { return qobject_cast<QMessageBox *>(QApplication::activeModalWidget()); });
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        QTest::keyClick(box->button(QMessageBox::Yes), Qt::Key_Space);
    });
    m_app.click("bt_delete2");
    EXPECT_FALSE(QFile::exists(deleted));
    ASSERT_EQ(m_pages->count(), 6); // blue, capture, capture, red, green, red
    m_pages->setCurrentRow(3);
    trigger("Shift down"); // leaves it selected, which is no choice
    EXPECT_EQ(m_app.find<QPushButton>("bt_exportpdf")->text(), "Export");

    const QString target = m_app.images() + "/all pages.pdf";
    ASSERT_TRUE(exportTo(target));
    EXPECT_TRUE(QRegExp(".*/Image/\\d{17}\\.pdf").exactMatch(m_proposal)) << qPrintable(m_proposal);
    const int before = m_app.files().size();
    m_app.click("bt_captrue");
    EXPECT_GT(m_app.files().size(), before) << "captures go on meanwhile";
    ASSERT_TRUE(waitForEnd());
    EXPECT_TRUE(m_app.find<QPushButton>("bt_openpdf")->isVisible());

    QByteArray report;
    EXPECT_EQ(run("qpdf", {"--check", target}, &report), 0) << report.constData();
    const QString drawn = m_app.home() + "/drawn";
    ASSERT_EQ(run("pdftoppm", {"-r", "72", "-png", target, drawn}), 0);
    const QSize sizes[] = {{250, 250}, {1280, 720}, {1280, 720},
                           {200, 300}, {300, 200},  {300, 200}};
    const QColor colours[] = {Qt::blue, {}, {}, Qt::green, Qt::red, Qt::red};
    for (int page = 0; page < 6; ++page) {
        const QImage image(QString("%1-%2.png").arg(drawn).arg(page + 1));
        EXPECT_EQ(image.size(), sizes[page]) << page;
        if (colours[page].isValid()) {
            EXPECT_EQ(image.pixelColor(image.rect().center()), colours[page]) << page;
        }
    }
    EXPECT_FALSE(QFile::exists(drawn + "-7.png"));

    // Only what is selected.
    m_pages->setCurrentRow(4);
    m_pages->setCurrentRow(3);
    EXPECT_EQ(m_app.find<QPushButton>("bt_exportpdf")->text(), "Export: 1 of 7 pages");
    ASSERT_TRUE(exportTo(target));
    ASSERT_TRUE(waitForEnd());
    run("pdfinfo", {target}, &report);
    EXPECT_TRUE(report.contains("200 x 300 pts")) << report.constData();
}

TEST_F(Pdf, FailuresLeaveWhatWasThere)
{
    const QString target = m_app.images() + "/kept.pdf";
    const QString gone = picture("gone.png", {300, 200}, Qt::red);
    m_app.click("bt_captrue");
    m_pages->clearSelection();
    ASSERT_TRUE(exportTo(target));
    ASSERT_TRUE(waitForEnd());
    QFile file(target);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    const QByteArray before = file.readAll();
    const QStringList files = m_app.files();

    insert({gone});
    m_pages->clearSelection();
    QFile::remove(gone);
    m_app.click("bt_exportpdf");
    EXPECT_TRUE(m_app.message().contains("gone.png")) << m_app.message().toStdString();
    m_pages->setCurrentRow(1);
    m_app.click("bt_delete2");
    ASSERT_EQ(m_pages->count(), 1);
    m_pages->clearSelection();

    {
        const FileSizeLimit full(30000);
        ASSERT_TRUE(exportTo(target));
        EXPECT_EQ(closedBox(), "Export PDF failed!");
    }
    QStringList many;
    for (int i = 0; i < 12; ++i)
        many += picture(QString("%1.bmp").arg(i), {1600, 1200}, Qt::gray);
    insert(many);
    m_pages->clearSelection();
    ASSERT_TRUE(exportTo(target));
    ASSERT_TRUE(isExporting());
    const auto askedBox = [] {
        return qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
    };
    QTimer::singleShot(0, [&] {
        EXPECT_TRUE(waitFor([&] { return askedBox(); })) << "closing gives the export up";
        if (askedBox())
            askedBox()->button(QMessageBox::Cancel)->click();
    });
    m_app.window().close();
    EXPECT_TRUE(m_app.window().isVisible());
    m_app.click("bt_cancelexport");
    ASSERT_TRUE(waitForEnd());
    EXPECT_FALSE(m_app.find<QPushButton>("bt_openpdf")->isVisible());

    QFile again(target);
    ASSERT_TRUE(again.open(QIODevice::ReadOnly));
    EXPECT_TRUE(again.readAll() == before);
    EXPECT_EQ(m_app.files(), files) << "nothing half written";
}

} // namespace
