#pragma once

#include "mainwindow/mainwindow.h"
#include "support/stand_process.h"
#include "support/temporary_home.h"

#include <QTest>

#include <functional>
#include <iosfwd>
#include <memory>

/// The whole product as a user meets it: a home of its own, the virtual stand
/// as a process of its own, and the real window (offscreen), worked through its
/// widgets only.
class Application
{
public:
    /// What stands before the window is opened.
    struct Setup
    {
        QStringList standArguments;
        QByteArray settings; ///< lines of the group "Set"; `SaveFolderPath` is
                             ///< added unless given
        QStringList standCommands;
    };

    explicit Application(const Setup &setup = {});
    ~Application();

    /// Starts the window; again after `close()`.
    void open();
    void close();

    template <typename Widget>
    Widget *find(const char *name) const
    {
        auto *widget = m_window->findChild<Widget *>(QString::fromLatin1(name));
        if (!widget)
            qFatal("no widget %s", name);
        return widget;
    }

    MainWindow &window() const { return *m_window; }
    StandProcess &stand() { return m_stand; }
    QString documents() const { return m_home.documents(); }
    QString images() const { return m_home.documents() + QStringLiteral("/Image"); }
    QString home() const { return m_home.path(); }
    QByteArray log() const;

    /// Waits for frames to arrive at `size`, or at any size when it is empty.
    bool waitForPicture(QSize size = {}, int timeoutMs = 10000);

    /// Sends `command` to the stand and waits until the live picture has changed clearly.
    bool showScene(const QString &command);

    /// Clicks the button `name` with the mouse. Captures are then waited for.
    void click(const char *name);
    /// Until all captures that were pressed are written, or have failed.
    bool waitForCaptures();

    /// Puts `text` into the line edit `name` by keys.
    void type(const char *name, const QString &text) const;

    /// Chooses entry `index` of the box `name`.
    void choose(const char *name, int index) const;

    /// Presses the mouse at `from`, moves it to `to` in steps and lets it go; both in coordinates
    /// of `widget`. The events go to the window, so whatever lies on top takes them.
    void drag(QWidget *widget, QPoint from, QPoint to);

    /// The message over the preview; empty when none is in sight.
    QString message() const;

    /// Names of the entries of a list, in order.
    QStringList listed(const char *list = "listWidget1") const;

    /// File names in `folder` (the output folder by default), sorted.
    QStringList files(const QString &folder = {}) const;

private:
    TemporaryHome m_home;
    StandProcess m_stand;
    std::unique_ptr<MainWindow> m_window;
};

/// Readable failures.
void PrintTo(const QString &text, std::ostream *stream);
void PrintTo(const QSize &size, std::ostream *stream);

/// Waits until `condition` holds; false when it did not in time.
bool waitFor(const std::function<bool()> &condition, int timeoutMs = 5000);

/// Open sockets and running threads of this process, and its resident memory in MB.
int openSockets();
int runningThreads();
double residentMegabytes();

/// Runs `program` and gives its exit code, -1 when it cannot be started;
/// `output` takes what it printed.
int run(const QString &program, const QStringList &arguments, QByteArray *output = nullptr);
