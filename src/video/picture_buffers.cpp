#include "video/picture_buffers.h"

#include "imaging/large_pages.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/buffer.h>
#include <libavutil/imgutils.h>
}

namespace {

constexpr size_t kBeyondTheEnd = 64; // the decoder's vector code reads on past a plane

AVBufferRef *allocate(size_t size)
{
    auto *memory = static_cast<uint8_t *>(allocateInLargePages(size));
    if (!memory)
        return nullptr;
    AVBufferRef *buffer = av_buffer_create(
        memory, size, [](void *, uint8_t *data) { std::free(data); }, nullptr, 0);
    if (buffer)
        std::memset(memory, 0, size); // what a damaged picture leaves out is not old memory
    else
        std::free(memory);
    return buffer;
}

} // namespace

PictureBuffers::~PictureBuffers()
{
    av_buffer_pool_uninit(&m_pool);
}

void PictureBuffers::serve(AVCodecContext &decoder)
{
    decoder.opaque = this;
    decoder.get_buffer2 = buffer;
}

// As the library's own function, but for where the memory comes from.
int PictureBuffers::buffer(AVCodecContext *decoder, AVFrame *picture, int flags)
{
    auto *self = static_cast<PictureBuffers *>(decoder->opaque);
    if (!(decoder->codec->capabilities & AV_CODEC_CAP_DR1))
        return avcodec_default_get_buffer2(decoder, picture, flags);
    const auto format = static_cast<AVPixelFormat>(picture->format);
    int width = picture->width, height = picture->height;
    int alignments[AV_NUM_DATA_POINTERS] = {}; // the library sets those of the planes it knows
    avcodec_align_dimensions2(decoder, &width, &height, alignments);
    const int alignment = *std::max_element(alignments, alignments + AV_NUM_DATA_POINTERS);
    const int size = av_image_get_buffer_size(format, width, height, alignment);
    if (size < 0)
        return size;
    const size_t needed = static_cast<size_t>(size) + 4 * kBeyondTheEnd;
    if (!self->m_pool || self->m_size != needed) {
        av_buffer_pool_uninit(&self->m_pool);
        self->m_pool = av_buffer_pool_init(needed, allocate);
        self->m_size = needed;
    }
    picture->buf[0] = self->m_pool ? av_buffer_pool_get(self->m_pool) : nullptr;
    if (!picture->buf[0])
        return AVERROR(ENOMEM);
    picture->extended_data = picture->data;
    const int filled = av_image_fill_arrays(picture->data, picture->linesize, picture->buf[0]->data,
                                            format, width, height, alignment);
    return std::min(filled, 0);
}
