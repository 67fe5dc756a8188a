#pragma once

#include "platform/platform.h"
#include "video/frame.h"
#include "video/jpeg_decoder.h"
#include "video/picture_sink.h"

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
        OpenDecoder,
        Silent ///< opening took more than five seconds
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
    /// its last picture for the present one. So has one that sends 64 MB without the end of a
    /// picture. Up to 25 damaged pictures in a row are left out;
    /// after that the stream is given up.
    Status read();

    /// The last open() or read() ended because the camera sent nothing for so long.
    bool isSilent() const;

    /// Size of the camera's picture, before any turn, pixels.
    cv::Size size() const;

    /// The picture as the camera sent it; null when it sends another format than JPEG, of which
    /// convert() gives all pixels.
    JpegPtr compressed() const;

    /// The same for a recording: with the pixels of another format when keepRaw() asked for them
    /// before read(), and without an arrival. Neither JPEG nor pixels when there are none to have.
    CameraPicture sent() const;

    /// Keeps, or not, what the camera sends of another format than JPEG; costs a copy of it.
    void keepRaw(bool isKept);

    /// Writes the picture into `pixels` (rows x cols x 3), which must have the decodedSize() of
    /// `how`. False when the picture is damaged or its format cannot be converted. Only a
    /// compressed() picture can be reduced.
    bool convert(cv::Mat &pixels, const JpegDecoding &how);

private:
    struct Impl;
    std::unique_ptr<Impl> m;
};

/// The line that is logged for `error`.
const char *openErrorText(StreamReader::OpenError error);
