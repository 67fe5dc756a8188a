#pragma once

#include <QMetaType>
#include <QObject>
#include <QString>
#include <QStringList>

#include <atomic>
#include <functional>
#include <memory>

class QThread;

/// How an export ended. When it failed or was cancelled nothing was written, and a file that
/// stood at the target before is untouched.
struct PdfExportResult
{
    enum class State { Done, Cancelled, Failed };
    State state = State::Failed;
    QString target;
    QString cause; ///< why it failed, for the user
};

Q_DECLARE_METATYPE(PdfExportResult)

/// The files of `pages` that do not exist, in order.
QStringList missingPages(const QStringList &pages);

/// Writes the picture files `pages` as one PDF to `target`, a page a picture in the given order.
/// JPEG and PNG files go in as they are; any other picture is converted without loss, every page
/// of a multi-page TIFF. `proceed` is called with the number of finished pages and cancels by
/// answering false. Any thread.
PdfExportResult exportPdf(const QStringList &pages, const QString &target,
                          const std::function<bool(int done)> &proceed);

/// One export at a time on a thread of its own, so that captures go on meanwhile. GUI thread.
class PdfExport : public QObject
{
    Q_OBJECT

public:
    explicit PdfExport(QObject *parent = nullptr);
    ~PdfExport() override; ///< cancels and waits for the thread

    /// False, and nothing happens, while an export runs.
    bool start(const QStringList &pages, const QString &target);
    void cancel();
    bool isRunning() const { return m_thread != nullptr; }

signals:
    void progress(int done, int total);
    void finished(const PdfExportResult &result);

private:
    void end();

    std::unique_ptr<QThread> m_thread;
    std::atomic<bool> m_cancelled{false};
    PdfExportResult m_result; // written by the worker, read after it has ended
};
