#include "mainwindow/lists/image_list.h"

#include "app/replaced_file.h"
#include "mainwindow/lists/image_list_delegate.h"
#include "mainwindow/lists/image_list_item.h"
#include "mainwindow/lists/thumbnail_loader.h"
#include "mainwindow/look/window_text.h"

#include <QDesktopServices>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPainter>
#include <QScrollBar>
#include <QTimer>
#include <QUrl>

#include <algorithm>

namespace {

/// A folder that is being written to reports every step; one look suffices for all of them.
constexpr int kLookAgainMs = 150;
constexpr double kHintOpacity = 0.7; ///< of the text in an empty list

QString pathOf(const QListWidgetItem *item)
{
    return item->data(ImageListWidget::PathRole).toString();
}

} // namespace

ImageListWidget::ImageListWidget(QWidget *parent)
    : QListWidget(parent)
    , m_opener(
          [](const QString &path) { return QDesktopServices::openUrl(QUrl::fromLocalFile(path)); })
    , m_trash([](const QString &path) { return moveToTrash(path); })
    , m_thumbnails(new ThumbnailLoader(this))
    , m_watcher(new QFileSystemWatcher(this))
    , m_lookAgain(new QTimer(this))
{
    m_confirm = [this](int files) {
        return QMessageBox::question(window(), WindowText::tr("Delete"),
                                     WindowText::tr("Move %n captured file(s) to the trash?",
                                                    nullptr, files)) == QMessageBox::Yes;
    };
    m_tell = [this](const QString &message) {
        QMessageBox::warning(window(), WindowText::tr("Image list"), message);
    };
    setItemDelegate(new ImageListDelegate(m_thumbnails, this));
    setSelectionMode(ExtendedSelection);
    setUniformItemSizes(true);
    setVerticalScrollMode(ScrollPerPixel);
    verticalScrollBar()->setSingleStep(24);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setMouseTracking(true); // entries light up under the pointer
    setAcceptDrops(true);
    setKind(ListKind::CapturedFiles);

    m_lookAgain->setSingleShot(true);
    m_lookAgain->setInterval(kLookAgainMs);
    const auto repaint = [this] { viewport()->update(); };
    connect(m_lookAgain, &QTimer::timeout, m_thumbnails, &ThumbnailLoader::lookAgain);
    connect(m_lookAgain, &QTimer::timeout, this, repaint);
    connect(m_watcher, &QFileSystemWatcher::directoryChanged, this, [this] {
        if (!m_lookAgain->isActive())
            m_lookAgain->start();
    });
    connect(m_thumbnails, &ThumbnailLoader::loaded, this, repaint);
    connect(this, &QListWidget::itemSelectionChanged, this, [this] { setChoice(true); });
    for (const auto change : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved})
        connect(model(), change, this, &ImageListWidget::choiceChanged);
}

ImageListWidget::~ImageListWidget() = default;

void ImageListWidget::setKind(ListKind kind)
{
    m_kind = kind;
    const bool isReordered = kind == ListKind::PdfPages;
    setDragDropMode(isReordered ? DragDrop : DropOnly);
    setDefaultDropAction(isReordered ? Qt::MoveAction : Qt::CopyAction);
    setDropIndicatorShown(true);
}

void ImageListWidget::setConfirm(Confirm confirm)
{
    m_confirm = std::move(confirm);
}

void ImageListWidget::setOpener(Opener opener)
{
    m_opener = std::move(opener);
}

void ImageListWidget::setTrash(Trash trash)
{
    m_trash = std::move(trash);
}

void ImageListWidget::setTell(Tell tell)
{
    m_tell = std::move(tell);
}

// ---- entries ------------------------------------------------------------------------------------

QListWidgetItem *ImageListWidget::itemOf(const QString &path) const
{
    for (int row = 0; row < count(); ++row)
        if (pathOf(item(row)) == path)
            return item(row);
    return nullptr;
}

void ImageListWidget::insertEntry(int row, const QString &path, const QString &name,
                                  EntryOrigin origin)
{
    auto *entry = new ImageListItem(m_thumbnails, path, origin);
    entry->setText(name);
    insertItem(row, entry);
    watchFolderOf(path);
}

void ImageListWidget::watchFolderOf(const QString &path)
{
    const QString folder = QFileInfo(path).absolutePath();
    if (!m_watcher->directories().contains(folder) && QFileInfo(folder).isDir())
        m_watcher->addPath(folder);
}

int ImageListWidget::addFile(const QString &path, const QString &name, EntryOrigin origin)
{
    if (path.isEmpty())
        return -1;
    const bool mayRepeat = m_kind == ListKind::PdfPages && origin == EntryOrigin::Inserted;
    QListWidgetItem *known = mayRepeat ? nullptr : itemOf(path);
    if (known) {
        known->setText(name);
        if (origin == EntryOrigin::Captured)
            known->setData(OriginRole, int(origin)); // its content is ours from now on
        known->setData(DoubtfulRole, false);
        m_thumbnails->lookAgain();
        viewport()->update();
    } else {
        insertEntry(count(), path, name, origin);
        known = item(count() - 1);
    }
    scrollToItem(known);
    return row(known);
}

void ImageListWidget::markDoubtful(const QString &path)
{
    if (QListWidgetItem *entry = itemOf(path))
        entry->setData(DoubtfulRole, true);
}

bool ImageListWidget::takes(const QString &path) const
{
    const FileKind kind = fileKind(path);
    const bool isTaken =
        m_kind == ListKind::PdfPages ? kind == FileKind::Picture : kind != FileKind::Other;
    return isTaken && QFileInfo(path).isFile();
}

QStringList ImageListWidget::insertFiles(const QStringList &paths, int row)
{
    const QList<int> selected = selectedRows();
    int next = row >= 0             ? std::min(row, count())
               : selected.isEmpty() ? count()
                                    : selected.last() + 1;
    const int before = count();
    QStringList refused;
    for (const QString &path : paths) {
        if (!takes(path))
            refused << path;
        else if (m_kind == ListKind::PdfPages || !itemOf(path))
            insertEntry(next++, path, QFileInfo(path).fileName(), EntryOrigin::Inserted);
    }
    if (count() > before)
        scrollToItem(item(next - 1));
    return refused;
}

QStringList ImageListWidget::paths() const
{
    QStringList paths;
    for (int row = 0; row < count(); ++row)
        paths << pathOf(item(row));
    return paths;
}

QString ImageListWidget::pathAt(int row) const
{
    const QListWidgetItem *entry = item(row);
    return entry ? pathOf(entry) : QString();
}

QList<int> ImageListWidget::selectedRows() const
{
    QList<int> rows;
    for (const QModelIndex &index : selectedIndexes())
        rows << index.row();
    std::sort(rows.begin(), rows.end());
    return rows;
}

QStringList ImageListWidget::selectedPaths() const
{
    QStringList paths;
    for (const int row : selectedRows())
        paths << pathAt(row);
    return paths;
}

bool ImageListWidget::isMissing(int row) const
{
    return !QFileInfo::exists(pathAt(row));
}

// ---- keys, painting ----------------------------------------------------------------------------

void ImageListWidget::keyPressEvent(QKeyEvent *event)
{
    if (event->matches(QKeySequence::Delete))
        deleteSelected();
    else
        QListWidget::keyPressEvent(event);
}

void ImageListWidget::mouseDoubleClickEvent(QMouseEvent *event)
{
    QListWidget::mouseDoubleClickEvent(event);
    setChoice(false);
}

void ImageListWidget::paintEvent(QPaintEvent *event)
{
    m_thumbnails->setSize(ImageListDelegate::kThumbnail * devicePixelRatioF());
    QListWidget::paintEvent(event);
    if (count() > 0)
        return;
    QPainter painter(viewport());
    QColor ink = palette().color(QPalette::Text);
    ink.setAlphaF(kHintOpacity);
    painter.setPen(ink);
    painter.drawText(
        viewport()->rect().adjusted(16, 16, -16, -16), Qt::AlignCenter | Qt::TextWordWrap,
        m_kind == ListKind::PdfPages
            ? WindowText::tr("The pages of the next PDF appear here.\nPress Captrue to "
                             "add one, or drop pictures in.")
            : WindowText::tr("Captured files appear here.\nPress Captrue or the "
                             "space bar to take the first one."));
}
