#include "support/temporary_home.h"

#include <QDir>
#include <QFile>

TemporaryHome::TemporaryHome()
    : m_oldHome(qgetenv("HOME"))
    , m_oldRuntime(qgetenv("XDG_RUNTIME_DIR"))
{
    const QString runtime = m_dir.path() + QStringLiteral("/run");
    QDir().mkpath(documents());
    QDir().mkpath(runtime);
    QFile::setPermissions(runtime, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    qputenv("HOME", m_dir.path().toUtf8());
    qputenv("XDG_RUNTIME_DIR", runtime.toUtf8());
    qunsetenv("XDG_CONFIG_HOME");
    qunsetenv("XDG_DOCUMENTS_DIR");
}

TemporaryHome::~TemporaryHome()
{
    qputenv("HOME", m_oldHome);
    qputenv("XDG_RUNTIME_DIR", m_oldRuntime);
}
