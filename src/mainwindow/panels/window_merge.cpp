#include "app/settings.h"
#include "features/avi_mender.h"
#include "features/merge_session.h"
#include "features/unfinished_work.h"
#include "imaging/combine.h"
#include "mainwindow/capture/capture_plan.h"
#include "mainwindow/capture/capture_queue.h"
#include "mainwindow/capture/file_naming.h"
#include "mainwindow/capture/pending_capture.h"
#include "mainwindow/look/failure_text.h"
#include "mainwindow/mainwindow.h"
#include "mainwindow/panels/page_thumbnail.h"
#include "mainwindow/preview/preview_feedback.h"
#include "ui_mainwindow.h"
#include "video/shot.h"

#include <QDir>
#include <QFileInfo>
#include <QMessageBox>
#include <QPushButton>
#include <QThreadPool>

namespace {

constexpr int kPageGap = 10; ///< white between and around the pages, pixels

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
    pressMergePage(false);
}

MergeChoice MainWindow::mergeChoice() const
{
    return {captureSettings(), currentSaveOptions(), mergeDir};
}

bool MainWindow::pressMergePage(bool isTurnedPage)
{
    if (!mergeSession().wantsPage()) {
        warn(tr("%1 pages are captured already. Choose more pages to go on.").arg(mergeCount));
        return false;
    }
    const MergeChoice choice = mergeChoice();
    PendingCapture page;
    page.isTurnedPage = isTurnedPage;
    page.time = QTime::currentTime();
    page.step.needsManualRect = choice.settings.cropMode == ManualCrop;
    page.step.path = choice.settings.folder + QLatin1Char('/') + FileNaming(fNumIndex).timeStamp() +
                     QStringLiteral(".jpg");
    const Shot shot = shotFor(page.step);
    const QSize room = ui->labelPage1->contentsRect().size();
    m_captures->add(
        1,
        [shot, path = page.step.path.toStdString(), room] {
            CaptureOutcome outcome{takeShot(shot, path), {}, {}};
            if (!outcome.result.files.empty())
                outcome.thumbnail =
                    pageThumbnail(QString::fromStdString(outcome.result.path()), room);
            return outcome;
        },
        [this, page, choice](const CaptureOutcome &outcome) {
            finishMergePage(page, choice, outcome);
        });
    if (shot.frame)
        m_feedback->flash();
    return true;
}

void MainWindow::finishMergePage(const PendingCapture &capture, const MergeChoice &choice,
                                 const CaptureOutcome &outcome)
{
    tellCapture(outcome.result);
    if (!outcome.result.error.empty())
        m_isClosing = false; // he is to see it
    const QString page = QString::fromStdString(outcome.result.path());
    if (capture.isTurnedPage)
        finishTurnedPage(capture, !page.isEmpty(), !page.isEmpty());
    if (page.isEmpty())
        return;
    MergeSession session = mergeSession();
    if (!session.wantsPage()) { // fewer pages were chosen while it was being written
        addToImageList(page, QFileInfo(page).fileName());
        warn(tr("A page more than the merge takes is in the list."));
        return;
    }
    noteUnfinished(UnfinishedWork::MergePages, page);
    listUnmergedDocuments(outcome.result);
    MergeStep step = session.addPage(page);
    showMergePage(step.thumbnail, outcome.thumbnail);
    if (step.job) {
        step.job->dir = choice.direction;
        scheduleMerge(*step.job, choice);
    }
}

// One press is one page: what else lay under the camera becomes a capture of its own.
void MainWindow::listUnmergedDocuments(const CaptureResult &result)
{
    for (size_t i = 1; i < result.files.size(); ++i) {
        const QString path = QString::fromStdString(result.files[i]);
        addToImageList(path, QFileInfo(path).fileName());
    }
    if (result.files.size() > 1)
        warn(tr("Only the largest document is merged. The others are in the list."));
}

void MainWindow::showMergePage(int page, const QImage &thumbnail)
{
    const auto labels = pageLabels();
    if (page == 1)
        clearMergePages();
    QLabel *label = labels[static_cast<size_t>(page - 1)];
    label->setPixmap(QPixmap::fromImage(thumbnail));
    ui->labelsScrollArea->ensureWidgetVisible(label);
}

void MainWindow::clearMergePages()
{
    for (QLabel *label : pageLabels())
        label->clear();
}

// Named as the user wanted it when he pressed for the last page. A number is the next one of now:
// other captures may have taken some since.
PendingCapture MainWindow::nameMerge(const CaptureSettings &settings)
{
    NamingFields fields = settings.fields;
    const bool isNumbered = settings.nameType == NameByNumber;
    const bool isSequenceOver = isNumbered && (settings.folder != SaveFolderPath ||
                                               fields.custom != ui->customTextEdit->text());
    PendingCapture capture;
    if (isSequenceOver) { // another one has been begun since: this number is none of its
        fields.custom +=
            QString::number(nextNumberIn(settings.folder, settings.fields.custom, m_pathsUnderWay));
    } else if (isNumbered) {
        passOverTakenNames(settings);
        fields.number = ui->numTextEdit->text();
    }
    const int rule = isSequenceOver ? int(NameCustom) : settings.nameType;
    capture.step.name =
        FileNaming(fNumIndex).nameFor(rule, fields) + extensionFor(settings.imageFormat);
    capture.step.folder = settings.nameType == NameAsFolder && !fields.custom.isEmpty()
                              ? nameFolder(settings.folder, fields.custom)
                              : QString();
    capture.step.path = (capture.step.folder.isEmpty() ? settings.folder : capture.step.folder) +
                        QLatin1Char('/') + capture.step.name;
    capture.number = takeNumber(rule);
    return capture;
}

void MainWindow::scheduleMerge(const CollectedPages &pages, const MergeChoice &choice)
{
    const PendingCapture capture = nameMerge(choice.settings);
    MergeJob job;
    job.outPath = capture.step.path.toStdString();
    for (const QString &page : pages.pages)
        job.files.push_back(page.toStdString());
    job.direction = pages.dir == 0 ? MergeDirection::Vertical : MergeDirection::Horizontal;
    job.gap = kPageGap;
    job.save = choice.save;
    m_pathsUnderWay.append(capture.step.path);
    listUnderWay(capture.step);
    m_captures->add(
        0,
        [job, folder = capture.step.folder] {
            CaptureOutcome outcome;
            if (!folder.isEmpty())
                QDir().mkdir(folder); // a failure shows when the file is written
            if (mergeImageFiles(job, outcome.result.error) == MergeDone)
                outcome.result.files.push_back(job.outPath);
            return outcome;
        },
        [this, capture, pages](const CaptureOutcome &outcome) {
            finishMerge(capture, pages, outcome.result);
        });
}

void MainWindow::finishMerge(const PendingCapture &capture, const CollectedPages &pages,
                             const CaptureResult &result)
{
    m_pathsUnderWay.removeOne(capture.step.path);
    ui->listWidget1->settle(capture.step.path, capture.step.path, capture.step.name);
    if (mergeSession().isEmpty())
        clearMergePages();
    if (!result.files.empty()) {
        forgetUnfinished(UnfinishedWork::MergePages,
                         QStringList(pages.pages.begin(), pages.pages.end()));
        return;
    }
    m_isClosing = false; // he is asked
    giveBackNumber(capture.number);
    offerMergeAgain(pages, QString::fromStdString(result.error));
}

// The next try takes what is chosen by then: another folder may be what helps.
void MainWindow::offerMergeAgain(const CollectedPages &pages, const QString &cause)
{
    QMessageBox *box =
        showBox(QMessageBox::Warning, QString(),
                tr("The pages were not merged: %1\nThey are kept in %2.")
                    .arg(failureText(cause.toStdString()),
                         QDir::toNativeSeparators(QFileInfo(pages.pages.front()).path())));
    QPushButton *again = box->addButton(tr("Try again"), QMessageBox::AcceptRole);
    box->button(QMessageBox::Ok)->setText(tr("Add the pages to the list"));
    box->setDefaultButton(again);
    connect(box, &QMessageBox::finished, this, [this, box, again, pages] {
        if (box->clickedButton() == again)
            scheduleMerge(pages, mergeChoice());
        else
            listMergePages(QStringList(pages.pages.begin(), pages.pages.end()));
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
