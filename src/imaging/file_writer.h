#pragma once

#include <cstddef>
#include <string>

/// A file whose place a new one takes: it is the user's and kept (see keepReplaced), or a part of
/// the same work, of which only the result counts.
enum class Earlier { IsKept, IsPartOfTheWork };

/// A file under construction: a temporary beside `target` that takes the target's place in one
/// step. Without a commit it disappears, and an earlier file at `target` stays as it was.
class PendingFile
{
public:
    explicit PendingFile(std::string target, Earlier earlier = Earlier::IsKept);
    ~PendingFile();
    PendingFile(const PendingFile &) = delete;
    PendingFile &operator=(const PendingFile &) = delete;

    /// False when the temporary could not be made: see error(). It is empty at first and has the
    /// permissions of a new file.
    bool isOpen() const { return m_file >= 0; }

    /// The open temporary, for reading and writing; belongs to this object.
    int descriptor() const { return m_file; }

    /// A path that opens the same file, for libraries that want a name: whatever has taken the
    /// temporary's name meanwhile is not written to.
    std::string pathOfDescriptor() const;

    const std::string &error() const { return m_error; }

    /// Flushes the temporary to the disk and renames it. False on failure, with the cause in
    /// error().
    bool commit();

private:
    bool isStillNamed() const;
    bool takePlace();

    std::string m_target, m_temporary, m_error;
    Earlier m_earlier;
    int m_file = -1;
};

/// Bytes in memory that belong to the caller.
struct ByteSpan
{
    const void *data = nullptr;
    std::size_t size = 0;
};

/// Writes `bytes` to `path` (UTF-8), whole or not at all. False on failure, with the cause in
/// `error` and in the log. Any thread.
bool writeWhole(const std::string &path, ByteSpan bytes, std::string &error,
                Earlier earlier = Earlier::IsKept);

/// Whether `name` (no path) is that of a temporary which a process of this machine left behind
/// that is gone.
bool isAbandonedTemporary(const std::string &name);
