#include "features/pdf_export.h"

#include "app/log.h"
#include "imaging/pdf.h"

#include <QCoreApplication>
#include <QFile>
#include <QImageReader>
#include <QTemporaryDir>
#include <QThread>

#include <opencv2/imgcodecs.hpp>

namespace {

class Text
{
    Q_DECLARE_TR_FUNCTIONS(MainWindow)
};

QByteArray formatOf(const QString &path)
{
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    return reader.format();
}

/// Brings pictures into files that the PDF writer takes.
class PageSource
{
public:
    /// Paths ending in jpg or png that together show all of `path`; empty when it is no picture.
    QStringList filesFor(const QString &path)
    {
        const QByteArray format = formatOf(path);
        if (format == "jpeg")
            return asItIs(path, QStringLiteral(".jpg"));
        if (format == "png")
            return asItIs(path, QStringLiteral(".png"));
        return converted(path);
    }

private:
    QString nextName(const QString &ending)
    {
        return m_folder.filePath(QString::number(m_count++) + ending);
    }

    QStringList asItIs(const QString &path, const QString &ending)
    {
        if (path.endsWith(ending))
            return {path};
        const QString link = nextName(ending);
        return QFile::link(QFileInfo(path).absoluteFilePath(), link) ? QStringList{link}
                                                                     : QStringList();
    }

    QStringList converted(const QString &path)
    {
        QStringList files;
        try {
            std::vector<cv::Mat> pictures;
            if (!cv::imreadmulti(path.toStdString(), pictures, cv::IMREAD_UNCHANGED))
                pictures.assign(1, cv::imread(path.toStdString(), cv::IMREAD_UNCHANGED));
            for (const cv::Mat &picture : pictures) {
                files += nextName(QStringLiteral(".png"));
                if (picture.empty() || !cv::imwrite(files.last().toStdString(), picture))
                    return {};
            }
        } catch (const cv::Exception &failure) {
            WriteLog(failure.what());
            return {};
        }
        return files;
    }

    QTemporaryDir m_folder;
    int m_count = 0;
};

PdfExportResult failed(const QString &target, const QString &cause)
{
    WriteLog(("PDF export to " + target + ": " + cause).toUtf8().constData());
    return {PdfExportResult::State::Failed, target, cause};
}

} // namespace

QStringList missingPages(const QStringList &pages)
{
    QStringList missing;
    for (const QString &page : pages)
        if (!QFile::exists(page))
            missing += page;
    return missing;
}

PdfExportResult exportPdf(const QStringList &pages, const QString &target,
                          const std::function<bool(int done)> &proceed)
{
    const QStringList missing = missingPages(pages);
    if (!missing.isEmpty())
        return failed(target, Text::tr("These pages are missing:") + '\n' + missing.join('\n'));
    if (pages.isEmpty())
        return failed(target, Text::tr("There is no page to export."));

    PdfDocument document(target.toStdString());
    PageSource source;
    for (int done = 0; done < pages.size(); ++done) {
        if (!proceed(done))
            return {PdfExportResult::State::Cancelled, target, {}};
        const QStringList files = source.filesFor(pages[done]);
        if (files.isEmpty())
            return failed(target,
                          Text::tr("%1 is not a picture that can be read.").arg(pages[done]));
        for (const QString &file : files)
            if (!document.addPage(file.toStdString()))
                return failed(target,
                              pages[done] + ": " + QString::fromStdString(document.error()));
    }
    if (!proceed(pages.size()))
        return {PdfExportResult::State::Cancelled, target, {}};
    if (!document.save())
        return failed(target, QString::fromStdString(document.error()));
    return {PdfExportResult::State::Done, target, {}};
}

PdfExport::PdfExport(QObject *parent)
    : QObject(parent)
{
}

PdfExport::~PdfExport()
{
    cancel();
    if (m_thread)
        m_thread->wait();
}

bool PdfExport::start(const QStringList &pages, const QString &target)
{
    if (m_thread)
        return false;
    m_cancelled = false;
    m_thread.reset(QThread::create([this, pages, target] {
        m_result = exportPdf(pages, target, [&](int done) {
            emit progress(done, pages.size());
            return !m_cancelled;
        });
    }));
    connect(m_thread.get(), &QThread::finished, this, &PdfExport::end);
    m_thread->start();
    return true;
}

void PdfExport::cancel()
{
    m_cancelled = true;
}

void PdfExport::end()
{
    m_thread->wait();
    m_thread.reset();
    emit finished(m_result);
}
