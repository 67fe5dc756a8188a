#include "mainwindow/capture/file_naming.h"

#include "app/choices.h"
#include "mainwindow/look/window_text.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <set>
#include <string>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace {

constexpr int kSequenceMax = 100000; ///< the largest number that can be typed
constexpr size_t kDigitsMax = 7;

/// 255 bytes is what file systems hold; the rest is for the extension, the number of a further
/// document ("_99") and the ending of a file that is still being written.
constexpr int kLongestNameBytes = 255 - 4 - 3 - 16;

bool cannotStandInName(QChar c)
{
    return c == '/' || c == '\\' || c == ':' || c.unicode() < 0x20 || c.unicode() == 0x7f;
}

} // namespace

FileNaming::FileNaming(int &counter, Clock clock)
    : m_counter(counter)
    , m_clock(std::move(clock))
{
}

QString FileNaming::timeStamp() const
{
    return m_clock().toString(QStringLiteral("yyyyMMddHHmmsszzz"));
}

QString FileNaming::nameFor(int rule, const NamingFields &fields)
{
    if (rule == NameCustom && !fields.custom.isEmpty())
        return fields.custom;
    if (rule != NameByNumber)
        return timeStamp();
    bool isNumber = false; // "+" may stand there while it is being typed
    const int typed = fields.number.toInt(&isNumber);
    if (isNumber && typed != m_counter - 1)
        m_counter = typed;
    return fields.custom + QString::number(m_counter);
}

QString FileNaming::advance(int rule)
{
    return rule == NameByNumber ? QString::number(m_counter++) : QString();
}

int nextNumberIn(const QString &folder, const QString &prefix, const QStringList &underWay)
{
    const QByteArray start = QFile::encodeName(prefix);
    std::set<int> taken;
    const auto note = [&](const std::string &name) {
        const auto first = static_cast<size_t>(start.size());
        if (name.compare(0, first, start.constData(), first) != 0)
            return;
        const size_t end = std::min(name.find_first_not_of("0123456789", first), name.size());
        if (end > first && end - first <= kDigitsMax &&
            (end == name.size() || name[end] == '.' || name[end] == '_'))
            taken.insert(std::stoi(name.substr(first, end - first)));
    };
    for (const QString &path : underWay)
        if (QFileInfo(path).path() == QFileInfo(folder + QStringLiteral("/x")).path())
            note(QFile::encodeName(QFileInfo(path).fileName()).toStdString());
    std::error_code
        error; // a folder that cannot be read holds nothing that a capture could replace
    std::filesystem::directory_iterator entry(QFile::encodeName(folder).toStdString(), error);
    for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error))
        note(entry->path().filename().string());
    const auto behind = taken.upper_bound(kSequenceMax);
    int next = behind == taken.begin() ? 0 : *std::prev(behind) + 1;
    while (taken.count(next) != 0)
        ++next;
    return next;
}

bool mayTakeName(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat info = {};
    return lstat(name.constData(), &info) != 0 ||
           (!S_ISDIR(info.st_mode) && (S_ISLNK(info.st_mode) || access(name, W_OK) == 0));
}

QString extensionFor(int format)
{
    return QString::fromLatin1(choiceOf(pictureFormats(), format).ending);
}

QString nameFolder(const QString &saveFolder, const QString &custom)
{
    return custom.isEmpty() ? saveFolder : saveFolder + '/' + custom;
}

QString makeNameFolder(const QString &saveFolder, const QString &custom)
{
    const QString folder = nameFolder(saveFolder, custom);
    if (!QFileInfo::exists(folder))
        QDir().mkdir(folder);
    return folder;
}

QString fileNameProblem(const QString &name)
{
    const auto bad = std::find_if(name.begin(), name.end(), cannotStandInName);
    if (bad != name.end()) {
        return bad->isPrint()
                   ? WindowText::tr(
                         "The name \"%1\" cannot be used: a file name cannot contain \"%2\".")
                         .arg(name, QString(*bad))
                   : WindowText::tr(
                         "The name cannot be used: it contains an invisible control character.");
    }
    if (name.startsWith('.'))
        return WindowText::tr(
                   "The name \"%1\" cannot be used: files whose name begins with a dot are hidden.")
            .arg(name);
    if (name.toUtf8().size() > kLongestNameBytes)
        return WindowText::tr("The name \"%1...\" is too long for a file name.").arg(name.left(40));
    return {};
}

QString namingProblem(int rule, const NamingFields &fields)
{
    switch (rule) {
    case NameByNumber:
        return fileNameProblem(fields.custom.isEmpty() ? QString() : fields.custom + fields.number);
    case NameCustom:
    case NameAsFolder:
        return fileNameProblem(fields.custom);
    default:
        return {};
    }
}
