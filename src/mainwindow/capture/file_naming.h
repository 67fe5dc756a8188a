#pragma once

#include <QDateTime>
#include <QString>
#include <QStringList>

#include <functional>

/// What the user typed into the naming fields.
struct NamingFields
{
    QString custom; ///< free text: prefix, name or folder, depending on the rule
    QString number; ///< sequence number; empty when the field is
};

/// Names of captured files. A rule is a value of NameType.
///
/// The sequence counter belongs to the caller (`fNumIndex` in the program): it is the number the
/// next capture takes, while the number field shows the last one taken. Typing another number
/// restarts the sequence there.
class FileNaming
{
public:
    using Clock = std::function<QDateTime()>;

    explicit FileNaming(int &counter, Clock clock = &QDateTime::currentDateTime);

    /// Base name without extension. Under NameByNumber a typed number that is not the last one
    /// taken becomes the counter. The text is used as it stands; see fileNameProblem.
    QString nameFor(int rule, const NamingFields &fields);

    /// Advances the counter after a successful capture and answers what the number field shows
    /// from then on; a null text under any rule but NameByNumber, where nothing changes.
    QString advance(int rule);

    /// The time stamp: 17 digits, local time to the millisecond.
    QString timeStamp() const;

private:
    int &m_counter;
    Clock m_clock;
};

/// The number that the sequence goes on with in `folder`: the first one behind the highest that a
/// file of the name `prefix` + number has there, further documents ("_1") and every ending
/// included; 0 when there is none. Numbers above 100000, dates for example, are no part of a
/// sequence. `underWay`: files that are still being written, which count like those that are
/// there. GUI thread; reads the folder's names only.
int nextNumberIn(const QString &folder, const QString &prefix, const QStringList &underWay = {});

/// Whether a capture may take the name `path`: nothing is there, or a file that may be replaced.
bool mayTakeName(const QString &path);

/// Extension with dot for a value of `fImgformat`: ".jpg", ".bmp", ".png", ".tif" or ".pdf"; any
/// other value gives ".jpg".
QString extensionFor(int format);

/// Folder of the rule "Name as folder": `saveFolder`, or the subfolder named `custom` in it.
QString nameFolder(const QString &saveFolder, const QString &custom);

/// nameFolder, created (one level) when missing. A failure shows when the file is written.
QString makeNameFolder(const QString &saveFolder, const QString &custom);

/// Why `name` (base name or folder name, no path) cannot name a file, as a sentence for the user;
/// empty when it can. Refused are separators and control characters, a leading dot, which would
/// hide the file, and more bytes than a file name holds.
QString fileNameProblem(const QString &name);

/// The same for what the fields mean under `rule`; fields that the rule does not use are fine.
QString namingProblem(int rule, const NamingFields &fields);
