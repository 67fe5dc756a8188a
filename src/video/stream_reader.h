#pragma once

#include "platform/platform.h"
#include "video/frame.h"

#include <atomic>
#include <memory>
#include <string>

/// Opens, reads, decodes and converts one camera stream. One thread only; it never blocks for
/// more than about 100 ms once the running flag is clear.
class StreamReader
{
public:
    enum class OpenError {
        None,
        NoContext,
        NoInputFormat,
        OpenInput,
        NoStreamInfo,
        NoVideoStream,
        NoDecoder,
        OpenDecoder
    };

    enum class Status {
        Picture,    ///< convert() may be called
        NoPicture,  ///< a packet was read, but it gave no picture
        NotReady,   ///< nothing to read just now
        Ended,      ///< the camera delivers nothing any more, or the flag was cleared
        DecodeError ///< the stream cannot be decoded
    };

    /// Receives one line of text for each step of opening.
    using StepLog = void (*)(const char *text);

    /// `running` is watched while the camera is waited for; it must outlive the reader.
    explicit StreamReader(const std::atomic<bool> &running);
    ~StreamReader();
    StreamReader(const StreamReader &) = delete;
    StreamReader &operator=(const StreamReader &) = delete;

    OpenError open(const CaptureSource &source, StepLog log);

    /// Text of the last failure of libavformat, with its number: "Couldn't open file ...".
    std::string openInputText() const;

    /// Reads one packet. A camera that sends none for three seconds has ended: nobody should take
    /// its last picture for the present one. Up to 25 packets in a row that cannot be decoded count
    /// as damage on the way and give no picture; after that the stream is given up.
    Status read();

    int width() const;  ///< of the decoded picture, pixels
    int height() const; ///< of the decoded picture, pixels

    /// Converts the decoded picture, turned clockwise by `angle` (0, 90, 180 or 270), into
    /// `pixels`, which must have the turned size (rows x cols x 3). False when the picture's
    /// format cannot be converted.
    bool convert(cv::Mat &pixels, int angle);

private:
    struct Impl;
    std::unique_ptr<Impl> m;
};

/// The line that is logged for `error`.
const char *openErrorText(StreamReader::OpenError error);
