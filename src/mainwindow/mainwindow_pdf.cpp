#include "features/pdf_export.h"
#include "mainwindow/failure_text.h"
#include "mainwindow/file_naming.h"
#include "mainwindow/image_list.h"
#include "mainwindow/mainwindow.h"
#include "mainwindow/preview_feedback.h"
#include "ui_mainwindow.h"

#include <QDesktopServices>
#include <QFileDialog>
#include <QFileInfo>
#include <QUrl>

void MainWindow::preparePdfExport()
{
    m_pdfExport = new PdfExport(this);
    showExport(false);
    ui->bt_openpdf->hide();
    connect(ui->bt_cancelexport, &QAbstractButton::clicked, m_pdfExport, &PdfExport::cancel);
    connect(ui->bt_openpdf, &QAbstractButton::clicked, this, [this] {
        QDesktopServices::openUrl(QUrl::fromLocalFile(m_exportedPdf));
        focusCentralWidget();
    });
    connect(m_pdfExport, &PdfExport::progress, this, [this](int done, int total) {
        ui->exportProgressBar->setMaximum(total);
        ui->exportProgressBar->setValue(done);
    });
    connect(m_pdfExport, &PdfExport::finished, this, &MainWindow::showExportResult);
}

void MainWindow::on_bt_exportpdf_clicked()
{
    const QStringList all = ui->pdflistWidget->paths();
    const QStringList selected = ui->pdflistWidget->selectedPaths();
    const QStringList &pages = selected.isEmpty() ? all : selected;
    if (pages.isEmpty()) {
        warn(tr("There are no pages to export."));
        return;
    }
    if (const QStringList missing = missingPages(pages); !missing.isEmpty()) {
        warn(tr("Not exported, since these pages are missing: %1")
                 .arg(missing.join(QStringLiteral(", "))));
        return;
    }
    const QString target = askForPdf();
    if (target.isEmpty())
        return;
    m_exportedPages = tr("%1 of %2 pages").arg(pages.size()).arg(all.size());
    showExport(m_pdfExport->start(pages, target));
}

QString MainWindow::askForPdf()
{
    const QString ending = QStringLiteral(".pdf");
    const QString proposal =
        SaveFolderPath + QLatin1Char('/') + FileNaming(fNumIndex).timeStamp() + ending;
    QString target =
        QFileDialog::getSaveFileName(this, tr("Export PDF"), proposal, tr("PDF files (*.pdf)"));
    if (!target.isEmpty() && !target.endsWith(ending, Qt::CaseInsensitive))
        target += ending;
    focusCentralWidget();
    return target;
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
