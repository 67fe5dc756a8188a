#include "imaging/file_writer.h"

#include "imaging/failure.h"

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace {

constexpr int kNameAttempts = 100;
constexpr mode_t kNewFileMode = 0666; // the process's mask decides

std::string folderOf(const std::string &path)
{
    const size_t slash = path.rfind('/');
    return slash == std::string::npos ? std::string() : path.substr(0, slash + 1);
}

// The name is independent of the target's, which may be as long as a file name can be.
std::string temporaryName()
{
    static std::atomic<unsigned> counter{0};
    return ".pictor-" + std::to_string(getpid()) + "-" + std::to_string(counter++) + ".tmp";
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

// `shownPath` is what the user knows the file by.
bool fill(const std::string &path, const std::string &shownPath, ByteSpan bytes, std::string &error)
{
    const int file = open(path.c_str(), O_WRONLY | O_CLOEXEC);
    const bool good =
        file >= 0 && writeAll(file, static_cast<const char *>(bytes.data), bytes.size);
    if (!good)
        error = loggedFailure(withErrno("cannot write " + shownPath));
    if (file >= 0)
        close(file);
    return good;
}

} // namespace

PendingFile::PendingFile(std::string target)
    : m_target(std::move(target))
{
    for (int attempt = 0; attempt < kNameAttempts; ++attempt) {
        const std::string path = folderOf(m_target) + temporaryName();
        const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kNewFileMode);
        if (file >= 0) {
            close(file);
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
    if (!m_temporary.empty())
        unlink(m_temporary.c_str());
}

bool PendingFile::commit()
{
    if (m_temporary.empty())
        return false;
    const int file = open(m_temporary.c_str(), O_WRONLY | O_CLOEXEC);
    bool good = file >= 0 && flush(file);
    if (!good)
        m_error = withErrno("cannot write " + m_target);
    if (file >= 0)
        close(file);
    // Replacing it would need no right to write it.
    if (good && ::access(m_target.c_str(), F_OK) == 0 && ::access(m_target.c_str(), W_OK) != 0) {
        m_error = withErrno("cannot write " + m_target);
        good = false;
    }
    if (good && std::rename(m_temporary.c_str(), m_target.c_str()) != 0) {
        m_error = withErrno("cannot write " + m_target);
        good = false;
    }
    if (good)
        m_temporary.clear();
    return good;
}

bool writeWhole(const std::string &path, ByteSpan bytes, std::string &error)
{
    PendingFile pending(path);
    if (!pending.temporaryPath().empty() && !fill(pending.temporaryPath(), path, bytes, error))
        return false;
    if (pending.commit())
        return true;
    error = loggedFailure(pending.error());
    return false;
}
