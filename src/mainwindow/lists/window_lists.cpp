#include "mainwindow/lists/image_list.h"
#include "mainwindow/look/themed_icon.h"
#include "mainwindow/mainwindow.h"
#include "ui_mainwindow.h"

#include <QAction>
#include <QFileDialog>
#include <QFileInfo>

QAction *MainWindow::addListAction(ImageListWidget *list, const QString &icon, const char *text)
{
    auto *action = new QAction(themedIcon(icon), tr(text), list);
    action->setData(QByteArray(text));
    list->addAction(action);
    m_listActions.append(action);
    return action;
}

void MainWindow::CreatListWidgetMenu()
{
    ui->pdflistWidget->setKind(ListKind::PdfPages);
    for (ImageListWidget *list : {ui->listWidget1, ui->pdflistWidget}) {
        list->setContextMenuPolicy(Qt::ActionsContextMenu);
        list->setTell([this](const QString &text) { warn(text); });
        connect(addListAction(list, QStringLiteral("open"), QT_TR_NOOP("Open")),
                &QAction::triggered, list, &ImageListWidget::openSelected);
        connect(addListAction(list, QStringLiteral("folder_open"), QT_TR_NOOP("Open a folder")),
                &QAction::triggered, list, &ImageListWidget::openFolderOfSelected);
        connect(addListAction(list, QStringLiteral("delete"), QT_TR_NOOP("Delete")),
                &QAction::triggered, list, &ImageListWidget::deleteSelected);
    }
    ImageListWidget *pages = ui->pdflistWidget;
    connect(addListAction(pages, QStringLiteral("select_all"), QT_TR_NOOP("Select all")),
            &QAction::triggered, pages, &ImageListWidget::selectAll);
    connect(addListAction(pages, QStringLiteral("export"), QT_TR_NOOP("Export PDF")),
            &QAction::triggered, this, &MainWindow::on_bt_exportpdf_clicked);
    connect(addListAction(pages, QStringLiteral("insert_photo"), QT_TR_NOOP("Insert photo")),
            &QAction::triggered, this, &MainWindow::on_bt_addfile2_clicked);
    connect(addListAction(pages, QStringLiteral("shift_up"), QT_TR_NOOP("Shift up")),
            &QAction::triggered, pages, &ImageListWidget::shiftUp);
    connect(addListAction(pages, QStringLiteral("shift_down"), QT_TR_NOOP("Shift down")),
            &QAction::triggered, pages, &ImageListWidget::shiftDown);
}

void MainWindow::addToImageList(QString path, QString name)
{
    const int row = ui->listWidget1->addFile(path, name);
    if (row >= 0)
        ui->listWidget1->setCurrentRow(row, selectionOfNew(CaptureList::CapturedFiles));
}

// A new page is not selected: an export takes the selected pages only, and would lose the others.
QItemSelectionModel::SelectionFlags MainWindow::selectionOfNew(CaptureList list)
{
    return list == CaptureList::PdfPages ? QItemSelectionModel::Clear
                                         : QItemSelectionModel::ClearAndSelect;
}

void MainWindow::addToPdfImageList(QString path, QString name)
{
    const int row = ui->pdflistWidget->addFile(path, name);
    if (row >= 0)
        ui->pdflistWidget->setCurrentRow(row, selectionOfNew(CaptureList::PdfPages));
}

ImageListWidget *MainWindow::listOf(CaptureList list) const
{
    return list == CaptureList::PdfPages ? ui->pdflistWidget : ui->listWidget1;
}

// Behind the first file: captures that were pressed later may be listed already.
void MainWindow::addMultiCropImgToList(QString path, int mode)
{
    const CaptureList kind =
        mode == MultipdfMode ? CaptureList::PdfPages : CaptureList::CapturedFiles;
    ImageListWidget *list = listOf(kind);
    QString previous = path;
    for (const QString &file : m_capturedFiles) {
        if (file == path)
            continue;
        const bool isAtNewest = list->pathAt(list->currentRow()) == previous;
        const int row = list->addFileBehind(previous, file, QFileInfo(file).fileName());
        if (isAtNewest)
            list->setCurrentRow(row, selectionOfNew(kind));
        previous = file;
    }
}

// A key that means "the list" goes to the one the user works in.
ImageListWidget *MainWindow::listInUse() const
{
    if (ui->listWidget1->hasFocus() || !ui->pdflistWidget->isVisible())
        return ui->listWidget1;
    return ui->pdflistWidget;
}

void MainWindow::insertFiles(ImageListWidget *list, const QString &filter)
{
    const QStringList files =
        QFileDialog::getOpenFileNames(this, tr("Add file"), SaveFolderPath, filter);
    const QStringList refused = list->insertFiles(files);
    if (!refused.isEmpty())
        warn(tr("Not added, since they are no pictures: %1")
                 .arg(refused.join(QStringLiteral(", "))));
    focusCentralWidget();
}

void MainWindow::on_bt_delete_clicked()
{
    ui->listWidget1->deleteSelected();
}

void MainWindow::on_bt_selectall_clicked()
{
    ui->listWidget1->selectAll();
}

void MainWindow::on_bt_addfile_clicked()
{
    insertFiles(ui->listWidget1, QString());
}

void MainWindow::on_listWidget1_doubleClicked(QModelIndex)
{
    ui->listWidget1->openSelected();
}

void MainWindow::on_bt_delete2_clicked()
{
    ui->pdflistWidget->deleteSelected();
}

void MainWindow::on_bt_selectall2_clicked()
{
    ui->pdflistWidget->selectAll();
}

void MainWindow::on_bt_addfile2_clicked()
{
    insertFiles(ui->pdflistWidget, tr("Pictures (*.jpg *.jpeg *.png *.bmp *.tif *.tiff)"));
}

void MainWindow::on_pdflistWidget_doubleClicked(QModelIndex)
{
    ui->pdflistWidget->openSelected();
}
