#pragma once

#include <QDateTime>
#include <QString>

/// A file that is moved aside, within its folder, to make room for a new one of the same name,
/// until it is clear whether the new one has come about.
class SetAsideFile
{
public:
    explicit SetAsideFile(const QString &path);

    /// Moves the file aside, after what a killed program left aside under this name was put back.
    /// True when the name is free, also because nothing had it. A link is moved itself, wherever
    /// it leads; a folder, and a file that another process has open, stay where they are.
    bool setAside();

    bool isAside() const { return !m_aside.isEmpty(); }

    /// The new file has come about: the one that was set aside goes where replaced files go (see
    /// keepReplaced).
    void discard();

    /// Puts the file back to its name, which must be free.
    void restore();

private:
    const QString m_path;
    QString m_aside; ///< empty while nothing is set aside
};

/// Puts back what a killed program left aside in `folder`: where the new file is missing or holds
/// less than a picture, the earlier one gets its name again; else it is named after its time.
/// Nothing that another process writes is touched, nor what was set aside after `until`: that
/// belongs to a recording of this process, whose ffmpeg may not have made its file yet. Any thread.
void putBackSetAsideFiles(const QString &folder, const QDateTime &until);
