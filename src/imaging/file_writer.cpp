#include "imaging/file_writer.h"

#include "app/replaced_file.h"
#include "imaging/failure.h"

#include <QFile>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr int kNameAttempts = 100;
constexpr mode_t kNewFileMode = 0666; // the process's mask decides

std::string folderOf(const std::string &path)
{
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

const char *const kBeginning = ".pictor-";
const char *const kEnding = ".tmp";

// Begins the names of this machine's temporaries: a folder may be shared with others, whose
// processes cannot be asked.
std::string namesOfThisMachine()
{
    std::array<char, 20> host{};
    std::snprintf(host.data(), host.size(), "%lx", static_cast<unsigned long>(gethostid()));
    return kBeginning + std::string(host.data()) + '-';
}

// The name is independent of the target's, which may be as long as a file name can be.
std::string temporaryName()
{
    static std::atomic<unsigned> counter{0};
    return namesOfThisMachine() + std::to_string(getpid()) + '-' + std::to_string(counter++) +
           kEnding;
}

// An interrupted flush is repeated; file systems that know no flushing are taken as they are.
bool flush(int file)
{
    while (fsync(file) != 0) {
        if (errno != EINTR)
            return errno == EINVAL || errno == ENOTSUP;
    }
    return true;
}

bool writeAll(int file, const char *data, size_t size)
{
    while (size > 0) {
        const ssize_t written = write(file, data, size);
        if (written < 0 && errno == EINTR)
            continue;
        if (written < 0)
            return false;
        data += written;
        size -= static_cast<size_t>(written);
    }
    return true;
}

} // namespace

PendingFile::PendingFile(std::string target, Earlier earlier)
    : m_target(std::move(target))
    , m_earlier(earlier)
{
    for (int attempt = 0; attempt < kNameAttempts; ++attempt) {
        const std::string path = folderOf(m_target) + temporaryName();
        m_file = open(path.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kNewFileMode);
        if (m_file >= 0) {
            m_temporary = path;
            return;
        }
        if (errno != EEXIST)
            break;
    }
    m_error = withErrno("cannot write " + m_target);
}

PendingFile::~PendingFile()
{
    if (!m_temporary.empty() && isStillNamed())
        unlink(m_temporary.c_str());
    if (m_file >= 0)
        close(m_file);
}

std::string PendingFile::pathOfDescriptor() const
{
    return "/dev/fd/" + std::to_string(m_file);
}

// Whoever may write into the folder can put something else under the name.
bool PendingFile::isStillNamed() const
{
    struct stat opened = {}, named = {};
    return fstat(m_file, &opened) == 0 && lstat(m_temporary.c_str(), &named) == 0 &&
           opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

bool PendingFile::commit()
{
    if (m_temporary.empty())
        return false;
    errno = 0;
    if (!flush(m_file) || !isStillNamed()) {
        m_error = withErrno("cannot write " + m_target);
        return false;
    }
    // Replacing it would need no right to write it.
    if (::access(m_target.c_str(), F_OK) == 0 && ::access(m_target.c_str(), W_OK) != 0) {
        m_error = withErrno("cannot write " + m_target);
        return false;
    }
    if (!takePlace())
        return false;
    m_temporary.clear();
    return true;
}

// A folder of that name stays: the renaming refuses it.
bool PendingFile::takePlace()
{
    std::optional<ReplacedFile> replaced;
    struct stat target = {};
    if (m_earlier == Earlier::IsKept && lstat(m_target.c_str(), &target) == 0 &&
        !S_ISDIR(target.st_mode))
    {
        bool failed = false;
        replaced = keepReplaced(QString::fromStdString(m_target), failed);
        if (failed) {
            m_error = "cannot keep the earlier " + m_target;
            return false;
        }
    }
    if (std::rename(m_temporary.c_str(), m_target.c_str()) != 0) {
        m_error = withErrno("cannot write " + m_target);
        if (replaced)
            QFile::rename(replaced->keptAs, replaced->path);
        return false;
    }
    if (replaced)
        tellReplaced(*replaced);
    return true;
}

bool writeWhole(const std::string &path, ByteSpan bytes, std::string &error, Earlier earlier)
{
    PendingFile pending(path, earlier);
    if (pending.isOpen() &&
        !writeAll(pending.descriptor(), static_cast<const char *>(bytes.data), bytes.size))
    {
        error = loggedFailure(withErrno("cannot write " + path));
        return false;
    }
    if (pending.commit())
        return true;
    error = loggedFailure(pending.error());
    return false;
}

bool isAbandonedTemporary(const std::string &name)
{
    const std::string beginning = namesOfThisMachine();
    const std::string ending = kEnding;
    if (name.rfind(beginning, 0) != 0 || name.size() < beginning.size() + ending.size() ||
        name.compare(name.size() - ending.size(), ending.size(), ending) != 0)
        return false;
    const int process = std::atoi(name.c_str() + beginning.size());
    return process > 0 && kill(process, 0) != 0 && errno == ESRCH;
}
