#pragma once

#include <QDateTime>
#include <QString>

#include <functional>
#include <optional>

/// What became of a file whose name is taken by a newer one.
struct ReplacedFile
{
    QString path;           ///< the name it had
    QString keptAs;         ///< where it is now
    bool isInTrash = false; ///< of the system; else it lies beside, named after its time
};

/// Is told of every file that had to make room. Called in the thread that replaced it.
using ReplacedListener = std::function<void(const ReplacedFile &)>;

/// Files are kept from now on, and `listener` is told; an empty one ends that. GUI thread.
void setReplacedListener(ReplacedListener listener);

/// Whether somebody listens, so that replaced files are kept. Any thread.
bool areReplacedFilesKept();

/// Moves the file at `path` to the system's trash, making that where the home has none yet.
/// `keptAs` takes its place there. False when it stays. Any thread.
bool moveToTrash(const QString &path, QString *keptAs = nullptr);

/// The name beside `path` for a file of that name which has to go: with `time`, that of its last
/// change, and free.
QString nameWithTime(const QString &path, const QDateTime &time);

/// Makes room at `path` for a newer file: the one that is there goes to the trash, or, where there
/// is none, beside it under nameWithTime. Null when nobody listens, so that nothing is kept, or
/// nothing was there. `failed` is set when the file could neither go nor be renamed; it is still
/// there then. Any thread.
std::optional<ReplacedFile> keepReplaced(const QString &path, bool &failed);

/// Tells the listener, once the newer file has taken the place. Any thread.
void tellReplaced(const ReplacedFile &replaced);
