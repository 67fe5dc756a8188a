#pragma once

#include <QCache>
#include <QDateTime>
#include <QImage>
#include <QObject>
#include <QPixmap>
#include <QSet>
#include <QSize>
#include <QString>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

/// What tells one state of a file from another.
struct FileStamp
{
    QDateTime modified;
    qint64 bytes = -1; ///< -1: no such file

    bool operator==(const FileStamp &other) const
    {
        return bytes == other.bytes && modified == other.modified;
    }
};

/// A small picture of a file, made off the GUI thread.
struct Thumbnail
{
    QPixmap pixmap; ///< null for a file that is missing, damaged or no picture
    FileStamp stamp;
    int round = 0; ///< the lookAgain() since which it is known to be current

    bool isMissing() const { return stamp.bytes < 0; }
};

/// Decodes thumbnails at reduced size on one thread of its own and keeps the newest of them.
///
/// Ask only for what is in sight: the newest request is served first, and of more than
/// kQueueLength waiting ones the oldest are forgotten. The thread ends with the object, after the
/// file it is working on. All functions: GUI thread.
class ThumbnailLoader : public QObject
{
    Q_OBJECT

public:
    static constexpr size_t kQueueLength = 128;
    static constexpr int kCacheKiB = 16 * 1024;

    explicit ThumbnailLoader(QObject *parent = nullptr);
    ~ThumbnailLoader() override;

    /// Longest sides of the pictures, device pixels. A change forgets what was decoded.
    void setSize(QSize size);

    /// What is known of `path`, or null. What is not known, or not since the last lookAgain(), is
    /// asked for, and loaded() tells when there is something new.
    const Thumbnail *thumbnail(const QString &path);

    /// Files may have changed: each is looked at again when it is next asked for. Known pictures
    /// are served until then, and files that are the same are not decoded again.
    void lookAgain() { ++m_round; }

signals:
    void loaded(const QString &path);

private:
    struct Request
    {
        QString path;
        QSize size;
        FileStamp known;
        bool isKnown = false;
        int round = 0;
    };
    struct Answer
    {
        bool isChanged = false;
        FileStamp stamp;
        QImage image;
    };

    void ask(const QString &path, const Thumbnail *known);
    void serve();
    void take(const Request &request, const Answer &answer);
    static Answer look(const Request &request);

    QSize m_size{160, 120};
    int m_round = 0;
    QCache<QString, Thumbnail> m_cache; ///< cost in KiB
    QSet<QString> m_asked;              ///< waiting or being worked on

    std::mutex m_mutex; ///< guards m_waiting and m_stop
    std::deque<Request> m_waiting;
    bool m_stop = false;
    std::condition_variable m_wake;
    std::thread m_thread;
};
