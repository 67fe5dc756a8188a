#pragma once

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

/// All bytes of a file; none when it cannot be read.
inline QByteArray readFile(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// Makes or replaces a file and returns its path.
inline QString writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
    return path;
}

/// What the program has logged so far.
inline QByteArray readLog()
{
    return readFile(qEnvironmentVariable("HOME") + QStringLiteral("/Documents/scanerlog"));
}

/// A test with a folder of its own.
class FolderTest : public testing::Test
{
protected:
    QString path(const QString &name) const { return m_dir.filePath(name); }
    std::string file(const QString &name) const { return path(name).toStdString(); }
    QStringList names() const { return QDir(m_dir.path()).entryList(QDir::Files | QDir::Hidden); }

    const QTemporaryDir m_dir;
};
