#include "app/log.h"
#include "mainwindow/lists/image_list.h"
#include "mainwindow/look/window_text.h"

#include <QFileInfo>
#include <QSet>

// What is done with an image list's entries: opened, deleted.

namespace {

bool isCaptured(const QListWidgetItem *item)
{
    return item->data(ImageListWidget::OriginRole).toInt() == int(EntryOrigin::Captured);
}

QString pathOf(const QListWidgetItem *item)
{
    return item->data(ImageListWidget::PathRole).toString();
}

} // namespace

QString ImageListWidget::chosenPath() const
{
    const QListWidgetItem *current = currentItem();
    const QStringList selected = selectedPaths();
    if (current && current->isSelected())
        return pathOf(current);
    return selected.isEmpty() ? QString() : selected.first();
}

void ImageListWidget::open(const QString &path)
{
    if (path.isEmpty())
        return;
    if (!QFileInfo::exists(path))
        m_tell(WindowText::tr("\"%1\" does not exist (any more).").arg(path));
    else if (!m_opener(path))
        m_tell(WindowText::tr("No program could be found to open \"%1\".").arg(path));
}

void ImageListWidget::openSelected()
{
    open(chosenPath());
}

void ImageListWidget::openFolderOfSelected()
{
    const QString path = chosenPath();
    if (!path.isEmpty())
        open(QFileInfo(path).absolutePath());
}

/// Captured files of these entries that no other entry holds.
QStringList ImageListWidget::filesToTrash(const QList<int> &rows) const
{
    QSet<QString> held;
    for (int row = 0; row < count(); ++row)
        if (!rows.contains(row))
            held << pathAt(row);
    QStringList files;
    for (const int row : rows) {
        const QString path = pathAt(row);
        if (isCaptured(item(row)) && !held.contains(path) && !files.contains(path) &&
            QFileInfo::exists(path))
            files << path;
    }
    return files;
}

void ImageListWidget::deleteSelected()
{
    const QList<int> rows = selectedRows();
    const QStringList files = filesToTrash(rows);
    if (rows.isEmpty() || (!files.isEmpty() && !m_confirm(files.size())))
        return;
    QStringList kept;
    for (const QString &file : files) {
        if (m_trash(file))
            continue;
        kept << file;
        WriteLog(("cannot move to the trash: " + file).toUtf8().constData());
    }
    removeEntries(rows, kept);
    if (!kept.isEmpty())
        m_tell(WindowText::tr("%n file(s) could not be moved to the trash and stay in the list: ",
                              nullptr, kept.size()) +
               kept.first());
}

void ImageListWidget::removeEntries(const QList<int> &rows, const QStringList &kept)
{
    for (auto row = rows.crbegin(); row != rows.crend(); ++row) {
        const QListWidgetItem *entry = item(*row);
        const QString path = pathOf(entry);
        if (kept.contains(path))
            continue;
        const bool wasCaptured = isCaptured(entry);
        delete takeItem(*row);
        // A page that is listed twice keeps its file until its last entry goes.
        QListWidgetItem *other = wasCaptured ? itemOf(path) : nullptr;
        if (other)
            other->setData(OriginRole, int(EntryOrigin::Captured));
    }
    clearSelection();
    for (int row = 0; row < count(); ++row)
        if (kept.contains(pathAt(row)))
            item(row)->setSelected(true);
}
