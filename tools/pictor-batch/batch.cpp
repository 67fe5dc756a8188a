#include "batch.h"

#include "app/choices.h"
#include "imaging/document_finder.h"
#include "imaging/smart_cut.h"
#include "imaging/smart_finder.h"
#include "read_picture.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonObject>
#include <QTemporaryDir>

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <optional>

namespace {

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

QJsonArray inJson(const std::vector<std::string> &texts)
{
    QJsonArray list;
    for (const std::string &text : texts)
        list.append(QString::fromStdString(text));
    return list;
}

// The sheets seen, with what is known of each: corners, confidence, paper format; and those of them
// that are sure enough to be cut.
void findSheetsOf(const cv::Mat &rgb, CaptureOptions &options, QJsonObject &report)
{
    QJsonArray outlines, confidences, formats;
    for (const SmartSheet &sheet : findSheets(rgb).sheets) {
        const Quad corners = sharpenedCorners(rgb, sheet.corners);
        if (sheet.confidence >= kSmartCutMin)
            options.sheets.push_back(corners);
        QJsonArray points;
        for (const cv::Point2f &corner : corners)
            points.append(QJsonArray{cvRound(corner.x), cvRound(corner.y)});
        outlines.append(points);
        confidences.append(cvRound(sheet.confidence * 100) / 100.0);
        formats.append(QString::fromLatin1(sheetShape(corners, rgb.size()).format));
    }
    options.areSheetsGiven = true; // they are on the edges already
    report["outlines"] = outlines;
    report["confidence"] = confidences;
    report["formats"] = formats;
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
    const ReadPicture picture = readPicture(image, m_options.rotate);
    const cv::Mat &frame = picture.rgb;
    if (frame.empty()) {
        report["error"] = picture.error;
        return report;
    }
    report["size"] = QJsonArray{frame.cols, frame.rows};

    CaptureOptions options = m_options.capture;
    QElapsedTimer timer;
    timer.start();
    if (options.cropMode == AutomaticCrop || options.cropMode == MultiGraphCrop) {
        if (const auto found = DocumentFinder().find(frame, options.cropMode)) {
            options.outlines = found->outlines;
            options.documentsLeftOut = found->leftOut;
        }
    }
    if (options.cropMode == SmartCrop)
        findSheetsOf(frame, options, report);
    else
        report["outlines"] = inJson(options.outlines);
    QJsonObject spent{{"detect", milliseconds(timer)}};

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
    const auto shown = [&](const std::string &text) {
        return QString::fromStdString(text).replace(scratch.path(), m_options.folder);
    };
    QString error = shown(result.error);
    report["files"] = QJsonArray::fromStringList(moveIntoPlace(result.files, report, error));
    report["code"] = QString::fromStdString(result.code);
    if (result.codes.size() > 1)
        report["codes"] = inJson(result.codes);
    report["ms"] = spent;
    QStringList notes{picture.note, shown(result.note)};
    notes.removeAll({});
    if (!notes.isEmpty())
        report["note"] = notes.join(QStringLiteral("; "));
    if (!error.isEmpty())
        report["error"] = error;
    return report;
}
