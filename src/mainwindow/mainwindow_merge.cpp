#include "app/settings.h"
#include "features/avi_mender.h"
#include "features/merge_session.h"
#include "features/unfinished_work.h"
#include "mainwindow/busy_cursor.h"
#include "mainwindow/failure_text.h"
#include "mainwindow/file_naming.h"
#include "mainwindow/mainwindow.h"
#include "mainwindow/page_thumbnail.h"
#include "mainwindow/preview_feedback.h"
#include "ui_mainwindow.h"
#include "video/video_thread.h"

#include <QDir>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>
#include <QThreadPool>
#include <QTimer>

namespace {

constexpr int kMergeDelayMs = 20; ///< lets the last thumbnail be painted first
constexpr int kPageGap = 10;      ///< white between and around the pages, pixels

MergeSession mergeSession()
{
    return MergeSession({mergePages, mergeDir, mergeCount, combinePathList});
}

} // namespace

void MainWindow::SetMergeImageModeUI()
{
    for (QLabel *label : pageLabels())
        label->setScaledContents(true);
    ui->labelPage3->setEnabled(false);
    ui->labelPage4->setEnabled(false);
}

std::array<QLabel *, 4> MainWindow::pageLabels() const
{
    return {ui->labelPage1, ui->labelPage2, ui->labelPage3, ui->labelPage4};
}

void MainWindow::MergeImageCaptruePro()
{
    MergeSession session = mergeSession();
    if (!session.wantsPage()) {
        warn(tr("%1 pages are captured already. Choose more pages to go on.").arg(mergeCount));
        return;
    }
    const BusyCursor busy;
    if (cutMode == ManualCrop)
        passManualRect();
    const QString path = SaveFolderPath + QLatin1Char('/') + FileNaming(fNumIndex).timeStamp() +
                         QStringLiteral(".jpg");
    if (!videoThread)
        return;
    const QString page =
        QString::fromStdString(videoThread->CaptureImage(path.toUtf8().constData(), false));
    tellCapture(videoThread->lastCapture());
    if (page.isEmpty())
        return;
    noteUnfinished(UnfinishedWork::MergePages, page);
    listUnmergedDocuments();
    const MergeStep step = session.addPage(page);
    showMergePage(step.thumbnail, page);
    m_feedback->flash();
    m_isCaptured = true;
    if (step.job)
        scheduleMerge(*step.job);
}

// One press is one page: what else lay under the camera becomes a capture of its own.
void MainWindow::listUnmergedDocuments()
{
    const std::vector<std::string> &files = videoThread->lastCapture().files;
    for (size_t i = 1; i < files.size(); ++i) {
        const QString path = QString::fromStdString(files[i]);
        addToImageList(path, QFileInfo(path).fileName());
    }
    if (files.size() > 1)
        warn(tr("Only the largest document is merged. The others are in the list."));
}

void MainWindow::showMergePage(int page, const QString &path)
{
    const auto labels = pageLabels();
    if (page == 1)
        clearMergePages();
    QLabel *label = labels[static_cast<size_t>(page - 1)];
    label->setPixmap(pageThumbnail(path, label->contentsRect().size()));
    ui->labelsScrollArea->ensureWidgetVisible(label);
}

void MainWindow::clearMergePages()
{
    for (QLabel *label : pageLabels())
        label->clear();
}

void MainWindow::scheduleMerge(const CollectedPages &job)
{
    passOverTakenNames();
    const QString name = getNameForFile(fNameType) + extensionFor(fImgformat);
    const QString folder = fNameType == NameAsFolder ? getPath_NameByFolder() : SaveFolderPath;
    const QString path = folder + QLatin1Char('/') + name;
    QTimer::singleShot(kMergeDelayMs, this, [this, job, path, name] { merge(job, path, name); });
}

void MainWindow::merge(const CollectedPages &job, const QString &path, const QString &name)
{
    const BusyCursor busy;
    const int result =
        videoThread ? videoThread->combineImageFiles(path, job.pages, job.dir, kPageGap) : -1;
    addToImageList(path, name);
    UpdateNumberIndex();
    if (mergeSession().isEmpty())
        clearMergePages();
    if (result == 0)
        forgetUnfinished(UnfinishedWork::MergePages,
                         QStringList(job.pages.begin(), job.pages.end()));
    else
        offerMergeAgain(job);
}

void MainWindow::offerMergeAgain(const CollectedPages &job)
{
    QMessageBox *box =
        showBox(QMessageBox::Warning, QString(),
                tr("The pages were not merged: %1\nThey are kept in %2.")
                    .arg(videoThread ? failureText(videoThread->mergeError()) : QString(),
                         QDir::toNativeSeparators(QFileInfo(job.pages.front()).path())));
    QPushButton *again = box->addButton(tr("Try again"), QMessageBox::AcceptRole);
    box->button(QMessageBox::Ok)->setText(tr("Add the pages to the list"));
    box->setDefaultButton(again);
    connect(box, &QMessageBox::finished, this, [this, box, again, job] {
        if (box->clickedButton() == again)
            scheduleMerge(job);
        else
            listMergePages(QStringList(job.pages.begin(), job.pages.end()));
    });
}

void MainWindow::listMergePages(const QStringList &pages)
{
    for (const QString &page : pages)
        addToImageList(page, QFileInfo(page).fileName());
    forgetUnfinished(UnfinishedWork::MergePages, pages);
}

// Beside the window: counting the pictures of a long recording takes a second.
void MainWindow::takeUpUnfinishedWork()
{
    if (areSettingsReadOnly)
        return; // it is the other instance's, and may be under way
    const QStringList recordings = unfinishedFiles(UnfinishedWork::Recording);
    for (const QString &recording : recordings) {
        addToImageList(recording, QFileInfo(recording).fileName());
        QThreadPool::globalInstance()->start([recording] { mendAvi(recording); });
    }
    forgetUnfinished(UnfinishedWork::Recording, recordings);
    const QStringList pages = unfinishedFiles(UnfinishedWork::MergePages);
    listMergePages(pages);
    if (!pages.isEmpty())
        warn(tr("The pages of a merge that was not finished are in the list."));
}

void MainWindow::setMergePages(int pages)
{
    mergePages = pages;
    ui->labelPage3->setEnabled(pages >= 3);
    ui->labelPage4->setEnabled(pages >= 4);
}

void MainWindow::on_twoPageRadioBt_clicked(bool checked)
{
    if (checked)
        setMergePages(2);
    focusCentralWidget();
}

void MainWindow::on_threePageRadioBt_clicked(bool checked)
{
    if (checked)
        setMergePages(3);
    focusCentralWidget();
}

void MainWindow::on_fourPageRadioBt_clicked(bool checked)
{
    if (checked)
        setMergePages(4);
    focusCentralWidget();
}

void MainWindow::on_verticalRadioBt_clicked(bool checked)
{
    if (checked)
        mergeDir = 0;
    focusCentralWidget();
}

void MainWindow::on_horizontalRadioBt_clicked(bool checked)
{
    if (checked)
        mergeDir = 1;
    focusCentralWidget();
}
