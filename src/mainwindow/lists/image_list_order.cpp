#include "mainwindow/lists/image_list.h"
#include "mainwindow/look/window_text.h"

#include <QDropEvent>
#include <QMimeData>
#include <QUrl>

// The order of an image list's entries, and what is dragged within it and dropped into it.

namespace {

QStringList localFiles(const QMimeData *data)
{
    QStringList files;
    for (const QUrl &url : data->urls())
        if (url.isLocalFile())
            files << url.toLocalFile();
    return files;
}

} // namespace

void ImageListWidget::moveRows(const QList<int> &rows, int before)
{
    int taken = 0;
    for (const int row : rows) {
        if (row < before)
            model()->moveRow({}, row - taken++, {}, before);
        else
            model()->moveRow({}, row, {}, before++);
    }
    viewport()->update(); // running numbers
    setChoice(false);
}

void ImageListWidget::setChoice(bool isChoice)
{
    m_isChoice = isChoice;
    emit choiceChanged();
}

void ImageListWidget::shiftUp()
{
    const QList<int> rows = selectedRows();
    for (int i = 0; i < rows.size(); ++i)
        if (rows[i] > i) // else it stands at the top already
            model()->moveRow({}, rows[i], {}, rows[i] - 1);
    viewport()->update();
    setChoice(false);
}

void ImageListWidget::shiftDown()
{
    const QList<int> rows = selectedRows();
    for (int i = rows.size() - 1, last = count() - 1; i >= 0; --i, --last)
        if (rows[i] < last)
            model()->moveRow({}, rows[i], {}, rows[i] + 2);
    viewport()->update();
    setChoice(false);
}

void ImageListWidget::dragEnterEvent(QDragEnterEvent *event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
    else if (event->source() == this)
        QListWidget::dragEnterEvent(event);
}

void ImageListWidget::dragMoveEvent(QDragMoveEvent *event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
    else if (event->source() == this)
        QListWidget::dragMoveEvent(event);
}

int ImageListWidget::rowForDrop(const QPoint &position) const
{
    const QModelIndex index = indexAt(position);
    if (!index.isValid())
        return count();
    return index.row() + (position.y() > visualRect(index).center().y() ? 1 : 0);
}

void ImageListWidget::dropEvent(QDropEvent *event)
{
    const int row = rowForDrop(event->pos());
    if (event->source() == this) {
        moveRows(selectedRows(), row);
        event->setDropAction(Qt::CopyAction); // after a move the base class removes the entries
        event->accept();
    } else if (event->mimeData()->hasUrls()) {
        const QStringList refused = insertFiles(localFiles(event->mimeData()), row);
        event->acceptProposedAction();
        if (!refused.isEmpty())
            m_tell(WindowText::tr("%n file(s) cannot be shown in this list: ", nullptr,
                                  refused.size()) +
                   refused.first());
    }
    setState(NoState);
    viewport()->update();
}
