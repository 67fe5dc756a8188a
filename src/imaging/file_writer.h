#pragma once

#include <cstddef>
#include <string>

/// A file under construction: a temporary beside `target` that takes the target's place in one
/// step. Without a commit it disappears, and an earlier file at `target` stays as it was.
class PendingFile
{
public:
    explicit PendingFile(std::string target);
    ~PendingFile();
    PendingFile(const PendingFile &) = delete;
    PendingFile &operator=(const PendingFile &) = delete;

    /// Where to write; the file exists, is empty and has the permissions of a new file. Empty when
    /// it could not be made: see error().
    const std::string &temporaryPath() const { return m_temporary; }
    const std::string &error() const { return m_error; }

    /// Flushes the temporary to the disk and renames it. False on failure, with the cause in
    /// error().
    bool commit();

private:
    std::string m_target, m_temporary, m_error;
};

/// Bytes in memory that belong to the caller.
struct ByteSpan
{
    const void *data = nullptr;
    std::size_t size = 0;
};

/// Writes `bytes` to `path` (UTF-8), whole or not at all. False on failure, with the cause in
/// `error` and in the log. Any thread.
bool writeWhole(const std::string &path, ByteSpan bytes, std::string &error);
