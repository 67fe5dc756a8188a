#pragma once

#include <opencv2/core.hpp>

#include <memory>
#include <vector>

struct AVCodecContext;
struct AVFrame;
struct AVPacket;

/// A written page as a document camera sends it: JPEG, 4:2:2, quality 75, the form that nearly all
/// USB cameras use. Makes the one QGuiApplication of the program, without a display.
std::vector<uchar> sentByCamera(cv::Size size);

/// libavcodec with one picture and nothing else: what decoding costs without a window.
class PlainDecoder
{
public:
    explicit PlainDecoder(std::vector<uchar> jpeg);
    ~PlainDecoder();
    PlainDecoder(const PlainDecoder &) = delete;
    PlainDecoder &operator=(const PlainDecoder &) = delete;

    bool decode();

private:
    std::vector<uchar> m_bytes;
    const size_t m_length;
    AVCodecContext *m_context;
    AVPacket *m_packet;
    AVFrame *m_picture;
};
