#include "app/replaced_file.h"
#include "features/leftovers.h"
#include "mainwindow/capture/capture_plan.h"
#include "mainwindow/capture/file_naming.h"
#include "mainwindow/mainwindow.h"
#include "ui_mainwindow.h"

#include <QFileInfo>
#include <QThreadPool>

// The names of captures, and what becomes of the files that had them.

NamingFields MainWindow::namingFields() const
{
    return {ui->customTextEdit->text(), ui->numTextEdit->text()};
}

QString MainWindow::getNameForFile(int nameType)
{
    return FileNaming(fNumIndex).nameFor(nameType, namingFields());
}

void MainWindow::UpdateNumberIndex()
{
    takeNumber(fNameType);
}

// The number belongs to the press, not to the moment at which the file is there.
std::optional<TakenNumbers::Taken> MainWindow::takeNumber(int rule)
{
    const QString before = ui->numTextEdit->text();
    const int number = fNumIndex;
    const QString shown = FileNaming(fNumIndex).advance(rule);
    if (shown.isNull())
        return std::nullopt;
    ui->numTextEdit->setText(shown);
    return m_takenNumbers.take(number, before);
}

// The capture failed. What the user types meanwhile is his.
void MainWindow::giveBackNumber(const std::optional<TakenNumbers::Taken> &taken)
{
    if (!taken || ui->numTextEdit->text() != QString::number(fNumIndex - 1))
        return;
    const auto rest = m_takenNumbers.giveBack(*taken, fNumIndex);
    if (!rest)
        return;
    fNumIndex = rest->next;
    ui->numTextEdit->setText(rest->shown);
}

QString MainWindow::getPath_NameByFolder()
{
    return makeNameFolder(SaveFolderPath, ui->customTextEdit->text());
}

// In a folder that holds captures of another day their sequence goes on.
void MainWindow::restartNumbering()
{
    m_numberedPrefix = ui->customTextEdit->text();
    fNumIndex = nextNumberIn(SaveFolderPath, m_numberedPrefix, m_pathsUnderWay);
    m_takenNumbers.restart();
    ui->numTextEdit->setText(QString::number(fNumIndex));
}

void MainWindow::watchNumbering()
{
    setReplacedListener([this](const ReplacedFile &replaced) {
        QMetaObject::invokeMethod(this, [this, replaced] { tellReplacedFile(replaced); });
    });
    connect(ui->customTextEdit, &QLineEdit::editingFinished, this, [this] {
        if (fNameType == NameByNumber && ui->customTextEdit->text() != m_numberedPrefix)
            restartNumbering();
    });
    QThreadPool::globalInstance()->start([folder = SaveFolderPath] { clearLeftovers(folder); });
    restartNumbering();
}

// Before a capture that takes the next number: a folder or a protected file keeps its name.
void MainWindow::passOverTakenNames(const CaptureSettings &settings)
{
    if (settings.nameType != NameByNumber || settings.mode == MultipdfMode ||
        SaveFolderPath.isEmpty())
        return;
    if (ui->customTextEdit->text() != m_numberedPrefix)
        restartNumbering(); // a shortcut captured while the prefix was being typed
    const QString ending = extensionFor(settings.imageFormat);
    QString first;
    for (QString name = getNameForFile(NameByNumber);
         !mayTakeName(SaveFolderPath + '/' + name + ending); name = getNameForFile(NameByNumber))
    {
        if (first.isEmpty())
            first = name + ending;
        UpdateNumberIndex();
    }
    if (!first.isEmpty())
        warn(tr("%1 cannot be replaced, the next number is taken.").arg(first));
}

void MainWindow::tellReplacedFile(const ReplacedFile &replaced)
{
    const QString name = QFileInfo(replaced.path).fileName();
    warn(replaced.isInTrash
             ? tr("The earlier %1 is in the trash.").arg(name)
             : tr("The earlier %1 is now %2.").arg(name, QFileInfo(replaced.keptAs).fileName()));
}
