#include "features/pdf_export.h"

#include "app/log.h"
#include "features/leftovers.h"
#include "imaging/pdf.h"

#include <QCoreApplication>
#include <QFile>
#include <QImageReader>
#include <QTemporaryDir>
#include <QThread>

#include <opencv2/core.hpp>
#include <opencv2/imgcodecs.hpp>
#include <opencv2/imgproc.hpp>

#include <optional>

namespace {

class Text
{
    Q_DECLARE_TR_FUNCTIONS(MainWindow)
};

/// Brings pictures into files that the PDF writer takes. What it made for one picture is removed
/// with the next one: hundreds of them would fill the folder for temporary files.
class PageSource
{
public:
    /// Takes the picture at `path`. False when it cannot be shown on pages: see cause().
    bool open(const QString &path)
    {
        clear();
        m_path = path;
        QImageReader reader(path);
        reader.setDecideFormatFromContent(true);
        m_turn = 0;
        if (reader.format() == "png")
            return takeAsItIs(QStringLiteral(".png"));
        if (reader.format() != "jpeg")
            return convert(cv::IMREAD_UNCHANGED);
        const std::optional<int> turn = turnOf(reader.transformation());
        if (!turn) // mirrored: decoded the right way round
            return convert(cv::IMREAD_COLOR);
        m_turn = *turn;
        return takeAsItIs(QStringLiteral(".jpg"));
    }

    /// Paths ending in jpg or png that together show all of the picture.
    const QStringList &files() const { return m_files; }
    int turn() const { return m_turn; } ///< by which they are to be shown turned, degrees clockwise
    const QString &cause() const { return m_cause; }

private:
    QString nextName(const QString &ending)
    {
        return m_folder.filePath(QString::number(m_count++) + ending);
    }

    void clear()
    {
        for (const QString &file : qAsConst(m_made))
            QFile::remove(file);
        m_made.clear();
        m_files.clear();
    }

    bool takeAsItIs(const QString &ending)
    {
        m_files = QStringList(m_path);
        if (m_path.endsWith(ending))
            return true;
        m_files = m_made = QStringList(nextName(ending));
        return QFile::link(QFileInfo(m_path).absoluteFilePath(), m_files.first()) || noRoom();
    }

    // How a photo says that the camera was held, degrees clockwise; nothing for a mirrored one.
    static std::optional<int> turnOf(QImageIOHandler::Transformations shown)
    {
        switch (int(shown)) {
        case QImageIOHandler::TransformationNone:
            return 0;
        case QImageIOHandler::TransformationRotate90:
            return 90;
        case QImageIOHandler::TransformationRotate180:
            return 180;
        case QImageIOHandler::TransformationRotate270:
            return 270;
        default:
            return std::nullopt;
        }
    }

    bool convert(int readMode)
    {
        try {
            const std::string path = m_path.toStdString();
            std::vector<cv::Mat> pictures;
            if (!cv::imreadmulti(path, pictures, readMode))
                pictures.assign(1, cv::imread(path, readMode));
            for (cv::Mat &picture : pictures) {
                if (picture.empty())
                    return noPicture();
                m_made += nextName(QStringLiteral(".png"));
                if (!cv::imwrite(m_made.last().toStdString(), withUsedAlpha(picture)))
                    return noRoom();
            }
        } catch (const cv::Exception &failure) {
            WriteLog(failure.what());
            return noPicture();
        }
        m_files = m_made;
        return true;
    }

    // Bitmaps of 32 bits leave the fourth byte unused, which would make them wholly transparent.
    static cv::Mat withUsedAlpha(const cv::Mat &picture)
    {
        if (picture.channels() != 4)
            return picture;
        cv::Mat alpha, opaque;
        cv::extractChannel(picture, alpha, 3);
        if (cv::countNonZero(alpha) > 0)
            return picture;
        cv::cvtColor(picture, opaque, cv::COLOR_BGRA2BGR);
        return opaque;
    }

    bool noPicture()
    {
        m_cause = Text::tr("%1 is not a picture that can be read.").arg(m_path);
        return false;
    }

    bool noRoom()
    {
        m_cause = Text::tr("%1 cannot be converted: there is no room in %2.")
                      .arg(m_path, m_folder.path());
        return false;
    }

    QTemporaryDir m_folder{exportFolderTemplate()};
    int m_count = 0, m_turn = 0;
    QString m_path, m_cause;
    QStringList m_files, m_made;
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
        if (!source.open(pages[done]))
            return failed(target, source.cause());
        for (const QString &file : source.files())
            if (!document.addPage(file.toStdString(), source.turn()))
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
