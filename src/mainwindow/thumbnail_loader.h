#pragma once

#include <QCache>
#include <QDateTime>
#include <QImage>
#include <QObject>
#include <QPixmap>
#include <QSize>
#include <QString>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

/// A small picture of a file, made off the GUI thread.
struct Thumbnail
{
    enum class State { Picture, Other, Missing };
    State state = State::Other; ///< Other: a file that is no picture, or a damaged one
    QPixmap pixmap;             ///< for Picture only
    QDateTime modified;         ///< of the file that was read
    qint64 bytes = 0;           ///< length of the file that was read
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
    static constexpr int kQueueLength = 128;
    static constexpr int kCacheKiB = 16 * 1024;

    explicit ThumbnailLoader(QObject *parent = nullptr);
    ~ThumbnailLoader() override;

    /// Longest sides of the pictures, device pixels. A change forgets what was decoded.
    void setSize(QSize size);

    /// What is known of `path`, or null; then it is asked for, and loaded() tells when it is there.
    const Thumbnail *thumbnail(const QString &path);
    /// Looks at the file again; loaded() tells only if it changed. The old picture stays until then.
    void refresh(const QString &path);

signals:
    void loaded(const QString &path);

private:
    struct Request
    {
        QString path;
        QSize size;
        QDateTime modified; ///< of what is known already
        qint64 bytes = -1;
    };
    struct Answer
    {
        Request request;
        Thumbnail::State state = Thumbnail::State::Other;
        QImage image;
    };

    void ask(Request request);
    void serve();
    void take(const Answer &answer);
    static bool look(Answer &answer);

    QSize m_size{160, 120};
    QCache<QString, Thumbnail> m_cache; ///< cost in KiB

    std::mutex m_mutex; ///< guards the two below
    std::deque<Request> m_waiting;
    bool m_stop = false;
    std::condition_variable m_wake;
    std::thread m_thread;
};
