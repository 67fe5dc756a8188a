#include "features/set_aside_file.h"

#include <QFile>
#include <QFileInfo>

namespace {

// A link that leads nowhere has the name as well: whoever writes into it makes its target.
bool isTaken(const QString &path)
{
    const QFileInfo info(path);
    return info.isSymLink() || info.exists();
}

} // namespace

SetAsideFile::SetAsideFile(const QString &path)
    : m_path(path)
{
}

bool SetAsideFile::setAside()
{
    if (!isTaken(m_path))
        return true;
    if (const QFileInfo info(m_path); !info.isSymLink() && !info.isFile())
        return false;
    QString aside = m_path + QStringLiteral(".previous");
    for (int i = 2; isTaken(aside); ++i)
        aside = m_path + QStringLiteral(".previous%1").arg(i);
    if (!QFile::rename(m_path, aside))
        return false;
    m_aside = aside;
    return true;
}

void SetAsideFile::discard()
{
    if (!m_aside.isEmpty() && QFile::remove(m_aside))
        m_aside.clear();
}

void SetAsideFile::restore()
{
    if (!m_aside.isEmpty() && QFile::rename(m_aside, m_path))
        m_aside.clear();
}
