#include "mainwindow/lists/image_list.h"
#include "mainwindow/lists/image_list_item.h"
#include "mainwindow/lists/thumbnail_loader.h"
#include "mainwindow/look/window_text.h"

#include <algorithm>

// Entries of captures that are still under way, and of those that came to nothing.

namespace {

int filesToCome(const QListWidgetItem *entry)
{
    return entry->data(ImageListWidget::UnderWayRole).toInt();
}

// Also for those who hear the list instead of seeing it.
void setFilesToCome(QListWidgetItem *entry, int files)
{
    entry->setData(ImageListWidget::UnderWayRole, files);
    entry->setData(Qt::AccessibleTextRole,
                   files > 0 ? WindowText::tr("%1, being written").arg(entry->text()) : QVariant());
}

} // namespace

int ImageListWidget::addUnderWay(const QString &path, const QString &name)
{
    const int before = count();
    const int row = addFile(path, name);
    if (row < 0)
        return row;
    QListWidgetItem *entry = item(row);
    setFilesToCome(entry, filesToCome(entry) + 1);
    if (count() > before)
        entry->setData(PlaceHolderRole, true);
    return row;
}

void ImageListWidget::settle(const QString &path, const QString &written, const QString &name)
{
    QListWidgetItem *entry = itemOf(path);
    if (entry)
        setFilesToCome(entry, std::max(0, filesToCome(entry) - 1));
    const bool isPlaceHolder =
        entry && filesToCome(entry) == 0 && entry->data(PlaceHolderRole).toBool();
    QListWidgetItem *known = written.isEmpty() || written == path ? nullptr : itemOf(written);
    if (isPlaceHolder && (written.isEmpty() || known)) {
        delete takeItem(row(entry));
        entry = nullptr;
    } else if (isPlaceHolder) {
        entry->setData(PathRole, written);
        entry->setToolTip(written);
        entry->setText(name);
        entry->setData(PlaceHolderRole, false);
    }
    if (!written.isEmpty() && (known || !itemOf(written)))
        addFile(written, name);
    m_thumbnails->lookAgain();
    viewport()->update();
}

int ImageListWidget::addFileBehind(const QString &previous, const QString &path,
                                   const QString &name)
{
    const QListWidgetItem *before = itemOf(previous);
    if (!before || path.isEmpty() || itemOf(path))
        return addFile(path, name);
    const int place = row(before) + 1;
    insertEntry(place, path, name, EntryOrigin::Captured);
    scrollToItem(item(place));
    return place;
}

bool ImageListWidget::isUnderWay(const QString &path) const
{
    const QListWidgetItem *entry = itemOf(path);
    return entry && filesToCome(entry) > 0;
}

void ImageListWidget::addLostPage(const QString &text, const QString &path)
{
    const QListWidgetItem *announced = path.isEmpty() ? nullptr : itemOf(path);
    const int place = announced ? row(announced) : count();
    auto *entry = new ImageListItem(m_thumbnails, text, EntryOrigin::Captured);
    entry->setText(text);
    insertItem(place, entry);
    scrollToItem(entry);
    if (announced)
        settle(path, QString(), QString());
}
