#pragma once

#include <cstddef>

struct AVBufferPool;
struct AVCodecContext;
struct AVFrame;

/// The buffers into which a decoder writes its pictures, kept in large memory pages and used again.
/// Must outlive the decoder.
class PictureBuffers
{
public:
    PictureBuffers() = default;
    ~PictureBuffers();
    PictureBuffers(const PictureBuffers &) = delete;
    PictureBuffers &operator=(const PictureBuffers &) = delete;

    /// `decoder`, not yet opened, takes its buffers from here.
    void serve(AVCodecContext &decoder);

private:
    static int buffer(AVCodecContext *decoder, AVFrame *picture, int flags);

    AVBufferPool *m_pool = nullptr;
    size_t m_size = 0; // of the pool's buffers
};
