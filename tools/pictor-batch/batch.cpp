#include "batch.h"

#include "app/state.h"
#include "imaging/document_finder.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QTemporaryDir>

#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <optional>

namespace {

// A JPEG without its end: the decoder would fill up the rest with gray and say nothing.
bool isCutOff(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return false;
    const QByteArray bytes = file.readAll();
    return bytes.startsWith("\xff\xd8") &&
           bytes.lastIndexOf("\xff\xd9") < bytes.lastIndexOf("\xff\xda");
}

// What is transparent becomes paper.
void layOnWhite(const QString &path, cv::Mat &image)
{
    if (QFileInfo(path).suffix().startsWith(QLatin1String("j"), Qt::CaseInsensitive))
        return; // JPEG knows nothing of the kind
    cv::Mat whole = cv::imread(path.toStdString(), cv::IMREAD_UNCHANGED);
    if (whole.channels() != 4 || whole.size() != image.size())
        return;
    whole.convertTo(whole, CV_32F, whole.depth() == CV_16U ? 1.0 / 65535 : 1.0 / 255);
    cv::Mat planes[4], alpha;
    cv::split(whole, planes);
    cv::merge(std::vector<cv::Mat>(3, planes[3]), alpha);
    cv::cvtColor(whole, whole, cv::COLOR_BGRA2BGR);
    whole = whole.mul(alpha) + cv::Scalar::all(1) - alpha;
    whole.convertTo(image, CV_8U, 255);
}

// A picture file as the camera would deliver it; empty when it cannot be read.
cv::Mat readFrame(const QString &path, int degrees)
{
    cv::Mat image = isCutOff(path) ? cv::Mat() : cv::imread(path.toStdString(), cv::IMREAD_COLOR);
    if (image.empty())
        return {};
    layOnWhite(path, image);
    if (degrees != 0)
        cv::rotate(image, image,
                   degrees == 90    ? cv::ROTATE_90_CLOCKWISE
                   : degrees == 180 ? cv::ROTATE_180
                                    : cv::ROTATE_90_COUNTERCLOCKWISE);
    cv::cvtColor(image, image, cv::COLOR_BGR2RGB);
    return image;
}

QJsonArray inJson(const std::vector<Outline> &outlines)
{
    QJsonArray list;
    for (const Outline &outline : outlines) {
        QJsonArray corners;
        for (const cv::Point &corner : outline)
            corners.append(QJsonArray{corner.x, corner.y});
        list.append(corners);
    }
    return list;
}

double milliseconds(const QElapsedTimer &timer)
{
    return std::round(static_cast<double>(timer.nsecsElapsed()) / 1e3) / 1e3;
}

QString canonical(const QString &path)
{
    const QFileInfo info(path);
    return info.exists() ? info.canonicalFilePath() : info.absoluteFilePath();
}

} // namespace

Batch::Batch(BatchOptions options)
    : m_options(std::move(options))
{
    m_keepsExisting = m_options.capture.nameByCode;
    const QString folder = canonical(m_options.folder);
    for (const QString &image : m_options.images) {
        m_taken.insert(canonical(image));
        m_keepsExisting = m_keepsExisting || QFileInfo(canonical(image)).path() == folder;
    }
}

bool Batch::prepare(QString &error) const
{
    if (QDir().mkpath(m_options.folder))
        return true;
    error = QStringLiteral("cannot make the folder %1").arg(m_options.folder);
    return false;
}

QString Batch::freeName(const QString &name) const
{
    const QFileInfo info(name);
    QString candidate = name;
    const auto isTaken = [this](const QString &path) {
        return m_taken.contains(canonical(path)) || (m_keepsExisting && QFileInfo::exists(path));
    };
    for (int i = 2; isTaken(QDir(m_options.folder).filePath(candidate)); ++i)
        candidate =
            QStringLiteral("%1-%2.%3").arg(info.completeBaseName()).arg(i).arg(info.suffix());
    return candidate;
}

QStringList Batch::moveIntoPlace(const std::vector<std::string> &files, QJsonObject &report,
                                 QString &error)
{
    QJsonArray replaced;
    const QDir folder(m_options.folder);
    QStringList moved;
    for (const std::string &file : files) {
        const QString from = QString::fromStdString(file);
        const QString to = folder.filePath(freeName(QFileInfo(from).fileName()));
        const bool exists = QFileInfo::exists(to);
        if (std::rename(file.c_str(), to.toUtf8().constData()) != 0) {
            error = QStringLiteral("cannot write %1: %2").arg(to, std::strerror(errno));
            continue;
        }
        if (exists)
            replaced.append(to);
        m_taken.insert(canonical(to));
        moved << to;
    }
    if (!replaced.isEmpty())
        report["replaced"] = replaced;
    return moved;
}

QJsonObject Batch::capture(int index)
{
    const QString &image = m_options.images[index];
    QJsonObject report{{"input", image}};
    cv::Mat frame;
    try {
        frame = readFrame(image, m_options.rotate);
        const size_t pages = frame.empty() ? 0 : cv::imcount(image.toStdString(), cv::IMREAD_COLOR);
        if (pages > 1)
            report["note"] = QStringLiteral("only the first of %1 pages is taken").arg(pages);
    } catch (const std::exception &exception) {
        report["error"] = QString::fromUtf8(exception.what());
        return report;
    }
    if (frame.empty()) {
        report["error"] = QStringLiteral("the picture cannot be read");
        return report;
    }
    report["size"] = QJsonArray{frame.cols, frame.rows};

    CaptureOptions options = m_options.capture;
    QElapsedTimer timer;
    timer.start();
    if (options.cropMode == AutomaticCrop || options.cropMode == MultiGraphCrop) {
        if (const auto found = DocumentFinder().find(frame, options.cropMode))
            options.outlines = found->outlines;
    }
    QJsonObject spent{{"detect", milliseconds(timer)}};
    report["outlines"] = inJson(options.outlines);

    // In a folder of its own first, so that only names of this very picture can meet.
    const QTemporaryDir scratch(QDir(m_options.folder).filePath(".pictor-batch-XXXXXX"));
    if (!scratch.isValid()) {
        report["error"] =
            QStringLiteral("cannot write into %1: %2").arg(m_options.folder, scratch.errorString());
        return report;
    }
    timer.restart();
    CaptureResult result =
        captureFrame(frame,
                     scratch.filePath(QFileInfo(image).completeBaseName() + "." + m_options.format)
                         .toStdString(),
                     options);
    spent["capture"] = milliseconds(timer);
    QString error = QString::fromStdString(result.error);
    report["files"] = QJsonArray::fromStringList(moveIntoPlace(result.files, report, error));
    report["code"] = QString::fromStdString(result.code);
    report["ms"] = spent;
    if (!result.note.empty())
        report["note"] = QString::fromStdString(result.note);
    if (!error.isEmpty())
        report["error"] = error;
    return report;
}
