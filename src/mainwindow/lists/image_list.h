#pragma once

#include <QListWidget>
#include <QStringList>

#include <functional>

class ThumbnailLoader;
class QFileSystemWatcher;
class QTimer;

/// A captured file belongs to this program and is moved to the trash when its entry is deleted;
/// an inserted one merely leaves the list.
enum class EntryOrigin { Captured, Inserted };

/// What a list is for. `CapturedFiles` holds each path once, in order of capture; `PdfPages` may
/// hold a page twice, takes pictures only, and is reordered by dragging.
enum class ListKind { CapturedFiles, PdfPages };

/// A list of files with thumbnail, running number and name. The text of an item is the name;
/// Qt::UserRole holds the path. Thumbnails are decoded elsewhere, and only for entries in sight.
/// GUI thread.
class ImageListWidget : public QListWidget
{
    Q_OBJECT

public:
    enum Role {
        PathRole = Qt::UserRole,
        OriginRole,
        DoubtfulRole,
        UnderWayRole,   ///< number of captures that will write this file and have not yet
        PlaceHolderRole ///< no such file was listed before
    };

    /// Asked once before `fileCount` captured files go to the trash; false keeps everything.
    using Confirm = std::function<bool(int fileCount)>;
    /// Opens a file or folder with the system's program for it; false when that failed.
    using Opener = std::function<bool(const QString &path)>;
    /// Moves a file to the trash; false when that failed.
    using Trash = std::function<bool(const QString &path)>;
    /// Tells the user something.
    using Tell = std::function<void(const QString &message)>;

    explicit ImageListWidget(QWidget *parent = nullptr);
    ~ImageListWidget() override;

    void setKind(ListKind kind); ///< CapturedFiles at first
    ListKind kind() const { return m_kind; }

    void setConfirm(Confirm confirm); ///< at first a message box
    void setOpener(Opener opener);    ///< at first QDesktopServices
    void setTrash(Trash trash);       ///< at first QFile::moveToTrash
    void setTell(Tell tell);          ///< at first a message box

    /// Appends an entry and scrolls to it; the selection stays. A path captured again refreshes its
    /// entry instead. An empty path is not added. Returns the row, -1 when nothing was added.
    int addFile(const QString &path, const QString &name,
                EntryOrigin origin = EntryOrigin::Captured);

    /// Holds the place of a captured file that is still being written; as addFile() otherwise.
    int addUnderWay(const QString &path, const QString &name);

    /// The capture announced as `path` is done and wrote `written`, listed as `name`; an empty
    /// `written` takes its place away again. Where the user has deleted the entry meanwhile, one
    /// is added: nobody has seen that file yet.
    void settle(const QString &path, const QString &written, const QString &name);

    /// Inserts a captured file behind the entry of `previous`, at the end when that is none;
    /// otherwise as addFile().
    int addFileBehind(const QString &previous, const QString &path, const QString &name);

    /// Inserts the user's own files before `row` (-1: behind the selection, at the end without
    /// one). Returns the paths that the list does not take.
    QStringList insertFiles(const QStringList &paths, int row = -1);

    /// Appends an entry for a page that could not be captured; `text` tells it from others. No
    /// later capture takes its place. Until it is deleted, an export names it as missing.
    /// Stands where `path` was announced, otherwise at the end.
    void addLostPage(const QString &text, const QString &path = QString());

    /// Marks the entry of a captured file as one to look at, until it is captured again.
    void markDoubtful(const QString &path);

    bool isUnderWay(const QString &path) const;

    QStringList paths() const; ///< of all entries, in order
    QString pathAt(int row) const;
    QList<int> selectedRows() const; ///< ascending
    QStringList selectedPaths() const;
    /// The selected paths, as far as the user chose them as such: what a drag, a shift or a double
    /// click leaves selected is no choice.
    QStringList chosenPaths() const { return m_isChoice ? selectedPaths() : QStringList(); }
    bool isMissing(int row) const; ///< the file does not exist (any more)
    /// Moves the entries in `rows` (ascending), together, before the entry that is at `before`.
    void moveRows(const QList<int> &rows, int before);

signals:
    void choiceChanged(); ///< of chosenPaths(), or of the number of entries

public slots:
    void deleteSelected();
    void openSelected();
    void openFolderOfSelected();
    void shiftUp();
    void shiftDown();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void paintEvent(QPaintEvent *event) override;

private:
    QListWidgetItem *itemOf(const QString &path) const;
    void insertEntry(int row, const QString &path, const QString &name, EntryOrigin origin);
    QStringList filesToTrash(const QList<int> &rows) const;
    void removeEntries(const QList<int> &rows, const QStringList &kept);
    bool takes(const QString &path) const;
    int rowForDrop(const QPoint &position) const;
    void open(const QString &path);
    QString chosenPath() const;
    void watchFolderOf(const QString &path);

    void setChoice(bool isChoice);

    bool m_isChoice = true; ///< the selection was made to choose
    ListKind m_kind = ListKind::CapturedFiles;
    Confirm m_confirm;
    Opener m_opener;
    Trash m_trash;
    Tell m_tell;
    ThumbnailLoader *m_thumbnails;
    QFileSystemWatcher *m_watcher;
    QTimer *m_lookAgain;
};
