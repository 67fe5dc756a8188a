#pragma once

#include <QString>

/// A file that is moved aside, within its folder, to make room for a new one of the same name,
/// until it is clear whether the new one has come about.
class SetAsideFile
{
public:
    explicit SetAsideFile(const QString &path);

    /// Moves the file aside. True when the name is free, also because nothing had it. A
    /// link is moved itself, wherever it leads; a folder stays where it is.
    bool setAside();

    bool isAside() const { return !m_aside.isEmpty(); }

    /// Removes the file that was set aside.
    void discard();

    /// Puts the file back to its name, which must be free.
    void restore();

private:
    const QString m_path;
    QString m_aside; ///< empty while nothing is set aside
};
