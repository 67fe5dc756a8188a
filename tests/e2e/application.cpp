#include "e2e/application.h"

#include "app/state.h"
#include "mainwindow/capture/capture_queue.h"
#include "video/video_thread.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProcess>
#include <QWindow>

#include <opencv2/imgproc.hpp>

#include <ostream>
#include <unistd.h>

Application::Application(const Setup &setup)
    : m_stand(setup.standArguments)
{
    // As a program finds it that has just been started.
    colorMode = fNameType = fImgformat = sLanguage = fNumIndex = 0;
    cutMode = NoCrop;
    fRecformat = "mov";
    ImgQuality = 80;
    BarQrCodeType = 0;
    isDelBlackedge = false;
    op_width = op_height = 0;
    isOpenAssistCam = isCamCombine = false;
    mergeCount = 0;
    if (!setup.settings.isEmpty()) {
        QFile file(m_home.documents() + "/scanner.ini");
        if (!file.open(QIODevice::WriteOnly))
            qFatal("cannot write the settings");
        file.write("[Set]\n" + setup.settings);
        if (!setup.settings.contains("SaveFolderPath"))
            file.write("SaveFolderPath=" + images().toUtf8() + '\n');
    }
    for (const QString &command : setup.standCommands)
        if (!m_stand.command(command))
            qFatal("%s: %s", qPrintable(command), qPrintable(m_stand.answer()));
    open();
}

Application::~Application() = default;

void Application::open()
{
    m_window = std::make_unique<MainWindow>();
    m_window->show();
    if (!QTest::qWaitForWindowExposed(m_window.get()))
        qFatal("the window does not appear");
}

void Application::close()
{
    m_window.reset();
}

QByteArray Application::log() const
{
    QFile file(documents() + "/scanerlog");
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool Application::waitForPicture(QSize size, int timeoutMs)
{
    return waitFor(
        [&] {
            const FramePtr frame = videoThread ? videoThread->lastFrame() : nullptr;
            return isOpenCamera && frame &&
                   (size.isEmpty() || QSize(frame->width, frame->height) == size);
        },
        timeoutMs);
}

bool Application::showScene(const QString &command)
{
    const auto outline = [](const FramePtr &frame) {
        cv::Mat coarse;
        cv::resize(frame->pixels, coarse, {64, 36}, 0, 0, cv::INTER_AREA);
        return coarse;
    };
    const cv::Mat before = outline(videoThread->lastFrame());
    return m_stand.command(command) && waitFor([&] {
               const FramePtr frame = videoThread->lastFrame();
               return frame && cv::norm(before, outline(frame), cv::NORM_INF) > 40;
           });
}

void Application::click(const char *name)
{
    QTest::mouseClick(find<QAbstractButton>(name), Qt::LeftButton);
    if (qstrcmp(name, "bt_captrue") == 0 && !waitForCaptures())
        qFatal("the captures do not end");
}

bool Application::waitForCaptures()
{
    return waitFor([this] { return find<CaptureQueue>("")->isIdle(); });
}

void Application::type(const char *name, const QString &text) const
{
    auto *edit = find<QLineEdit>(name);
    edit->setFocus();
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClicks(edit, text);
}

void Application::choose(const char *name, int index) const
{
    auto *box = find<QComboBox>(name);
    if (index >= box->count())
        qFatal("%s has no entry %d", name, index);
    box->setCurrentIndex(index);
}

void Application::drag(QWidget *widget, QPoint from, QPoint to)
{
    QWindow *target = m_window->windowHandle();
    const auto inWindow = [&](QPoint point) { return widget->mapTo(m_window.get(), point); };
    constexpr int steps = 4;
    QTest::mousePress(target, Qt::LeftButton, {}, inWindow(from));
    for (int i = 1; i <= steps; ++i)
        QTest::mouseMove(target, inWindow(from + (to - from) * i / steps));
    QTest::mouseRelease(target, Qt::LeftButton, {}, inWindow(to));
}

QString Application::message() const
{
    const auto *label = find<QLabel>("messageLabel");
    return label->isVisible() ? label->text() : QString();
}

QStringList Application::listed(const char *list) const
{
    const auto *widget = find<QListWidget>(list);
    QStringList names;
    for (int row = 0; row < widget->count(); ++row)
        names.append(widget->item(row)->text());
    return names;
}

QStringList Application::files(const QString &folder) const
{
    return QDir(folder.isEmpty() ? images() : folder)
        .entryList(QDir::Files | QDir::Hidden, QDir::Name);
}

void PrintTo(const QString &text, std::ostream *stream)
{
    *stream << '"' << qPrintable(text) << '"';
}

void PrintTo(const QSize &size, std::ostream *stream)
{
    *stream << size.width() << " x " << size.height();
}

bool waitFor(const std::function<bool()> &condition, int timeoutMs)
{
    return QTest::qWaitFor(condition, timeoutMs);
}

int openSockets()
{
    int count = 0;
    const QFileInfoList files =
        QDir("/proc/self/fd").entryInfoList(QDir::AllEntries | QDir::System);
    for (const QFileInfo &file : files)
        count += file.symLinkTarget().contains("socket:");
    return count;
}

int runningThreads()
{
    return QDir("/proc/self/task").entryList(QDir::Dirs | QDir::NoDotAndDotDot).size();
}

double residentMegabytes()
{
    QFile status("/proc/self/statm");
    if (!status.open(QIODevice::ReadOnly))
        return 0;
    return status.readAll().split(' ').value(1).toDouble() * double(sysconf(_SC_PAGESIZE)) / 1e6;
}

int run(const QString &program, const QStringList &arguments, QByteArray *output)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!process.waitForFinished(60000))
        return -1;
    if (output)
        *output = process.readAll();
    return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}
