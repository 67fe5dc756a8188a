#pragma once

#include <QString>
#include <QTemporaryDir>

/// A home folder and a runtime folder of one's own for as long as the object lives, so that tests
/// neither see nor touch the user's files nor each other's. The Documents folder exists.
class TemporaryHome
{
public:
    TemporaryHome();
    ~TemporaryHome();
    TemporaryHome(const TemporaryHome &) = delete;
    TemporaryHome &operator=(const TemporaryHome &) = delete;

    QString path() const { return m_dir.path(); }
    QString documents() const { return m_dir.path() + QStringLiteral("/Documents"); }

private:
    QTemporaryDir m_dir;
    QByteArray m_oldHome, m_oldRuntime;
};
