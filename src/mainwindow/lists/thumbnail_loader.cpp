#include "mainwindow/lists/thumbnail_loader.h"

#include "app/log.h"
#include "mainwindow/lists/image_list_files.h"

#include <QFileInfo>
#include <QImageReader>

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <algorithm>

namespace {

FileStamp stampOf(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() ? FileStamp{info.lastModified(), info.size()} : FileStamp();
}

QSize fitted(QSize size, QSize box)
{
    return size.width() > box.width() || size.height() > box.height()
               ? size.scaled(box, Qt::KeepAspectRatio).expandedTo({1, 1})
               : size;
}

/// Formats that Qt cannot read, TIFF without its plug-in above all.
QImage readWithOpenCv(const QString &path, QSize box)
{
    try {
        const cv::Mat bgr = cv::imread(path.toStdString(), cv::IMREAD_REDUCED_COLOR_4);
        if (bgr.empty())
            return {};
        const QSize size = fitted({bgr.cols, bgr.rows}, box);
        cv::Mat small;
        cv::resize(bgr, small, cv::Size(size.width(), size.height()), 0, 0, cv::INTER_AREA);
        return QImage(small.data, small.cols, small.rows, int(small.step), QImage::Format_BGR888)
            .copy();
    } catch (const cv::Exception &error) {
        WriteLog((std::string("thumbnail: ") + error.what()).c_str());
        return {};
    }
}

QImage readSmall(const QString &path, QSize box)
{
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    const bool isTurned = reader.transformation() & QImageIOHandler::TransformationRotate90;
    if (!size.isEmpty())
        reader.setScaledSize(fitted(size, isTurned ? box.transposed() : box));
    const QImage image = reader.read();
    if (image.isNull())
        return readWithOpenCv(path, box);
    return image.size() == fitted(image.size(), box)
               ? image
               : image.scaled(box, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

} // namespace

ThumbnailLoader::ThumbnailLoader(QObject *parent)
    : QObject(parent)
    , m_cache(kCacheKiB)
    , m_thread(&ThumbnailLoader::serve, this)
{
}

ThumbnailLoader::~ThumbnailLoader()
{
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stop = true;
    }
    m_wake.notify_one();
    m_thread.join();
}

void ThumbnailLoader::setSize(QSize size)
{
    if (m_size == size)
        return;
    m_size = size;
    m_cache.clear();
}

const Thumbnail *ThumbnailLoader::thumbnail(const QString &path)
{
    const Thumbnail *known = m_cache.object(path);
    if ((!known || known->round != m_round) && !m_asked.contains(path))
        ask(path, known);
    return known;
}

void ThumbnailLoader::ask(const QString &path, const Thumbnail *known)
{
    Request request;
    request.path = path;
    request.size = m_size;
    request.round = m_round;
    if (known) {
        request.isKnown = true;
        request.known = known->stamp;
    }
    m_asked.insert(path);
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_waiting.push_back(request);
        if (m_waiting.size() > kQueueLength) {
            m_asked.remove(m_waiting.front().path);
            m_waiting.pop_front();
        }
    }
    m_wake.notify_one();
}

void ThumbnailLoader::serve()
{
    std::unique_lock<std::mutex> lock(m_mutex);
    for (;;) {
        m_wake.wait(lock, [this] { return m_stop || !m_waiting.empty(); });
        if (m_stop)
            return;
        const Request request = m_waiting.back();
        m_waiting.pop_back();
        lock.unlock();
        const Answer answer = look(request);
        // Dropped unheard when the object is gone by then.
        QMetaObject::invokeMethod(
            this, [this, request, answer] { take(request, answer); }, Qt::QueuedConnection);
        lock.lock();
    }
}

ThumbnailLoader::Answer ThumbnailLoader::look(const Request &request)
{
    Answer answer;
    answer.stamp = stampOf(request.path);
    answer.isChanged = !request.isKnown || !(answer.stamp == request.known);
    const bool isPicture = fileKind(request.path) == FileKind::Picture;
    if (answer.isChanged && isPicture && answer.stamp.bytes > 0)
        answer.image = readSmall(request.path, request.size);
    return answer;
}

void ThumbnailLoader::take(const Request &request, const Answer &answer)
{
    m_asked.remove(request.path);
    Thumbnail *known = m_cache.object(request.path);
    const bool isUsable = request.size == m_size && (answer.isChanged || known);
    if (isUsable && answer.isChanged) {
        known = new Thumbnail{QPixmap::fromImage(answer.image), answer.stamp, request.round};
        const qint64 kib = answer.image.sizeInBytes() / 1024 + 1;
        m_cache.insert(request.path, known, int(std::min<qint64>(kib, kCacheKiB)));
    } else if (isUsable) {
        known->round = request.round;
    }
    // A picture of another size or an older round is asked for again by whoever shows it.
    if (!isUsable || answer.isChanged || request.round != m_round)
        emit loaded(request.path);
}
