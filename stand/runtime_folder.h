#pragma once

#include <QString>

/// The stand's private folder in the user's runtime folder, held by this process alone for as
/// long as the object lives and emptied at its end. What a killed stand left is taken over.
class RuntimeFolder
{
public:
    RuntimeFolder();
    ~RuntimeFolder();
    RuntimeFolder(const RuntimeFolder &) = delete;
    RuntimeFolder &operator=(const RuntimeFolder &) = delete;

    /// Why the folder cannot be used, a sentence for the user; empty when it can.
    QString fault() const { return m_fault; }
    QString path() const { return m_path; }

private:
    QString take();
    void removeFiles();

    QString m_path;
    int m_lock = -1;
    QString m_fault; ///< last, because taking the folder sets the lock
};
