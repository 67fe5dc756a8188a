#include "benchmarks/camera_pictures.h"

#include "stand/render.h"

#include <QApplication>

#include <turbojpeg.h>

extern "C" {
#include <libavcodec/avcodec.h>
}

namespace {

constexpr int kQuality = 75;

} // namespace

std::vector<uchar> sentByCamera(cv::Size size)
{
    static int argc = 1;
    static char name[] = "bench", *argv[] = {name, nullptr};
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static const QApplication application(argc, argv); // paints the scene's text
    const cv::Mat bgr = renderScene(findScenes(QStringLiteral("page")).front(), size).bgr;
    const tjhandle encoder = tjInitCompress();
    uchar *bytes = nullptr;
    unsigned long length = 0;
    const int failed = tjCompress2(encoder, bgr.data, bgr.cols, static_cast<int>(bgr.step),
                                   bgr.rows, TJPF_BGR, &bytes, &length, TJSAMP_422, kQuality, 0);
    const std::vector<uchar> jpeg(bytes, bytes + (failed ? 0 : length));
    tjFree(bytes);
    tjDestroy(encoder);
    return jpeg;
}

PlainDecoder::PlainDecoder(std::vector<uchar> jpeg)
    : m_bytes(std::move(jpeg))
    , m_length(m_bytes.size())
    , m_context(avcodec_alloc_context3(avcodec_find_decoder(AV_CODEC_ID_MJPEG)))
    , m_packet(av_packet_alloc())
    , m_picture(av_frame_alloc())
{
    m_bytes.resize(m_length + AV_INPUT_BUFFER_PADDING_SIZE);
    avcodec_open2(m_context, nullptr, nullptr);
}

PlainDecoder::~PlainDecoder()
{
    av_frame_free(&m_picture);
    av_packet_free(&m_packet);
    avcodec_free_context(&m_context);
}

bool PlainDecoder::decode()
{
    m_packet->data = m_bytes.data();
    m_packet->size = static_cast<int>(m_length);
    return avcodec_send_packet(m_context, m_packet) >= 0 &&
           avcodec_receive_frame(m_context, m_picture) >= 0;
}
