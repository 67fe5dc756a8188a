#pragma once

#include <QByteArray>
#include <QString>

#include <opencv2/core.hpp>

/// Reads a camera's stream from its socket, as fast or as slowly as the test likes.
class MjpegReader
{
public:
    explicit MjpegReader(const QString &socketPath);
    ~MjpegReader();
    MjpegReader(const MjpegReader &) = delete;
    MjpegReader &operator=(const MjpegReader &) = delete;

    /// The next whole frame as it was sent; empty when none comes in time or the stream ends.
    QByteArray nextJpeg(int timeoutMs = 5000);

    /// The next frame decoded, gray; empty as above or when it cannot be decoded.
    cv::Mat nextPicture();

    /// True once the other side has closed the stream.
    bool waitForEnd(int timeoutMs = 5000);

private:
    bool readSome(int timeoutMs);

    int m_file = -1;
    bool m_isAtEnd = false;
    QByteArray m_bytes;
};
