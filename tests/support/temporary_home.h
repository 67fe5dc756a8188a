#pragma once

#include <QDir>
#include <QTemporaryDir>

/// A home folder and a runtime folder of one's own for as long as the object lives, so that tests
/// neither see nor touch the user's files nor each other's. The Documents folder exists.
class TemporaryHome
{
public:
    TemporaryHome()
    {
        const QString runtime = path() + QStringLiteral("/run");
        QDir().mkpath(documents());
        QDir().mkpath(runtime);
        QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        qputenv("HOME", path().toUtf8());
        qputenv("XDG_RUNTIME_DIR", runtime.toUtf8());
        qunsetenv("XDG_CONFIG_HOME");
        qunsetenv("XDG_DATA_HOME");
        qunsetenv("XDG_DOCUMENTS_DIR");
    }
    ~TemporaryHome()
    {
        qputenv("HOME", m_oldHome);
        qputenv("XDG_RUNTIME_DIR", m_oldRuntime);
    }
    TemporaryHome(const TemporaryHome &) = delete;
    TemporaryHome &operator=(const TemporaryHome &) = delete;

    QString path() const { return m_dir.path(); }
    QString documents() const { return m_dir.path() + QStringLiteral("/Documents"); }

private:
    const QTemporaryDir m_dir;
    const QByteArray m_oldHome = qgetenv("HOME"), m_oldRuntime = qgetenv("XDG_RUNTIME_DIR");
};
