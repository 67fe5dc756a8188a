#include "e2e/application.h"

#include "app/state.h"
#include "video/video_thread.h"

#include <QAbstractButton>
#include <QDir>
#include <QFile>
#include <QProcess>

Application::Application(const Setup &setup) : m_stand(setup.standArguments) {
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

void Application::open() {
  m_window = std::make_unique<MainWindow>();
  m_window->show();
  if (!QTest::qWaitForWindowExposed(m_window.get()))
    qFatal("the window does not appear");
}

void Application::close() { m_window.reset(); }

QByteArray Application::log() const {
  QFile file(documents() + "/scanerlog");
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

bool Application::waitForPicture(QSize size, int timeoutMs) {
  return waitFor(
      [&] {
        const FramePtr frame = videoThread ? videoThread->lastFrame() : nullptr;
        return isOpenCamera && frame &&
               (size.isEmpty() || QSize(frame->width, frame->height) == size);
      },
      timeoutMs);
}

void Application::click(const char *name) {
  QTest::mouseClick(find<QAbstractButton>(name), Qt::LeftButton);
}

QStringList Application::files(const QString &folder) const {
  return QDir(folder.isEmpty() ? images() : folder)
      .entryList(QDir::Files, QDir::Name);
}

bool waitFor(const std::function<bool()> &condition, int timeoutMs) {
  return QTest::qWaitFor(condition, timeoutMs);
}

int run(const QString &program, const QStringList &arguments,
        QByteArray *output) {
  QProcess process;
  process.setProcessChannelMode(QProcess::MergedChannels);
  process.start(program, arguments);
  if (!process.waitForFinished(60000))
    return -1;
  if (output)
    *output = process.readAll();
  return process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
}
