#include "features/pdf_export.h"
#include "mainwindow/capture/capture_queue.h"
#include "mainwindow/capture/file_naming.h"
#include "mainwindow/lists/image_list.h"
#include "mainwindow/look/failure_text.h"
#include "mainwindow/mainwindow.h"
#include "mainwindow/preview/preview_feedback.h"
#include "ui_mainwindow.h"

#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>

#include <algorithm>

void MainWindow::preparePdfExport()
{
    m_pdfExport = new PdfExport(this);
    showExport(false);
    ui->bt_openpdf->hide();
    connect(ui->bt_cancelexport, &QAbstractButton::clicked, m_pdfExport, &PdfExport::cancel);
    connect(ui->bt_openpdf, &QAbstractButton::clicked, this, [this] {
        openWithSystem(m_exportedPdf);
        focusCentralWidget();
    });
    connect(ui->pdflistWidget, &ImageListWidget::choiceChanged, this,
            &MainWindow::showExportChoice);
    connect(m_pdfExport, &PdfExport::progress, this, [this](int done, int total) {
        ui->exportProgressBar->setMaximum(total);
        ui->exportProgressBar->setValue(done);
    });
    connect(m_pdfExport, &PdfExport::finished, this, &MainWindow::showExportResult);
}

void MainWindow::on_bt_exportpdf_clicked()
{
    if (m_pdfExport->isRunning()) {
        warn(tr("A PDF is being written. Wait for it, or cancel it."));
        return;
    }
    const QStringList selected = ui->pdflistWidget->chosenPaths();
    if (pagesToExport(selected).isEmpty())
        return;
    const QString target = askForPdf(partText(selected));
    if (target.isEmpty())
        return;
    if (m_captures->isIdle()) {
        startExport(selected, target);
        return;
    }
    // Behind the captures under way: some of them may be pages of it.
    m_captures->add(
        0, [] { return CaptureOutcome(); },
        [this, selected, target](const CaptureOutcome &) { startExport(selected, target); });
}

void MainWindow::startExport(const QStringList &selected, const QString &target)
{
    // Anew: captures go on while the dialog is open.
    const QStringList pages = pagesToExport(selected);
    if (pages.isEmpty() || !m_pdfExport->start(pages, target))
        return;
    m_exportedPages = tr("%1 of %2 pages").arg(pages.size()).arg(ui->pdflistWidget->paths().size());
    showExport(true);
}

// The selected pages, all when there are none; empty, and the user told, when they cannot be
// exported.
QStringList MainWindow::pagesToExport(const QStringList &selected)
{
    QStringList pages = selected.isEmpty() ? ui->pdflistWidget->paths() : selected;
    QStringList missing = missingPages(pages);
    missing.erase(
        std::remove_if(missing.begin(), missing.end(),
                       [this](const QString &page) { return ui->pdflistWidget->isUnderWay(page); }),
        missing.end());
    if (pages.isEmpty())
        warn(tr("There are no pages to export."));
    if (!missing.isEmpty()) {
        warn(tr("Not exported, since these pages are missing: %1")
                 .arg(missing.join(QStringLiteral(", "))));
        pages.clear();
    }
    return pages;
}

// "1 of 3 pages" when some pages stay behind, else empty.
QString MainWindow::partText(const QStringList &chosen) const
{
    const int all = ui->pdflistWidget->count();
    return chosen.isEmpty() || chosen.size() == all
               ? QString()
               : tr("%1 of %2 pages").arg(chosen.size()).arg(all);
}

void MainWindow::showExportChoice()
{
    const QString part = partText(ui->pdflistWidget->chosenPaths());
    ui->bt_exportpdf->setText(part.isEmpty() ? tr("Export") : tr("Export: %1").arg(part));
}

QString MainWindow::askForPdf(const QString &part)
{
    const QString ending = QStringLiteral("pdf");
    const QString title =
        part.isEmpty() ? tr("Export PDF") : tr("Export PDF") + QStringLiteral(" - ") + part;
    QFileDialog dialog(this, title, SaveFolderPath, tr("PDF files (*.pdf)"));
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setDefaultSuffix(ending); // before it asks whether a file may be replaced
    dialog.selectFile(FileNaming(fNumIndex).timeStamp() + QLatin1Char('.') + ending);
    const bool isChosen = dialog.exec() == QDialog::Accepted;
    focusCentralWidget();
    return isChosen ? dialog.selectedFiles().value(0) : QString();
}

void MainWindow::showExport(bool isRunning)
{
    ui->bt_exportpdf->setEnabled(!isRunning);
    ui->exportProgressBar->setVisible(isRunning);
    ui->exportProgressBar->setValue(0);
    ui->bt_cancelexport->setVisible(isRunning);
    if (isRunning)
        ui->bt_openpdf->hide();
}

void MainWindow::showExportResult(const PdfExportResult &result)
{
    showExport(false);
    if (result.state == PdfExportResult::State::Failed)
        showBox(QMessageBox::Warning, QString(), tr("Export PDF failed!"),
                failureText(result.cause.toStdString()));
    if (result.state != PdfExportResult::State::Done)
        return;
    m_exportedPdf = result.target;
    ui->bt_openpdf->show();
    const QString name = QFileInfo(result.target).fileName();
    addToImageList(result.target, name);
    m_feedback->say(tr("%1 is written, %2.").arg(name, m_exportedPages));
}
