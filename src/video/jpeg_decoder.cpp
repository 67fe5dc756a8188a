#include "video/jpeg_decoder.h"

#include "video/rotate.h"

#include <opencv2/core.hpp>

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdio>
#include <jerror.h>
#include <jpeglib.h>
#include <utility>

namespace {

constexpr int64_t kPixelsMax = 64 << 20; // more can only be a damaged header
constexpr int kStripRows = 64;           // turned sideways just whole cache lines of the target

// Some cameras fill up their pictures with a few bytes before the end marker. More of them are
// what is left of a picture whose data went out of step.
constexpr int kFillBytesMax = 16;

// The library reports through this; an error leaves by longjmp to where `leave` was set.
struct ErrorManager
{
    jpeg_error_mgr base = {}; // first: the library knows only this part
    std::jmp_buf leave = {};
    bool isDamaged = false;
};

ErrorManager &managerOf(j_common_ptr info)
{
    return *reinterpret_cast<ErrorManager *>(info->err);
}

[[noreturn]] void leaveDecoder(j_common_ptr info)
{
    std::longjmp(managerOf(info).leave, 1);
}

void noteWarning(j_common_ptr info, int level)
{
    const jpeg_error_mgr &error = *info->err;
    const bool isFill =
        error.msg_code == JWRN_EXTRANEOUS_DATA && error.msg_parm.i[0] <= kFillBytesMax;
    if (level < 0 && !isFill)
        managerOf(info).isDamaged = true;
}

bool isSideways(int angle)
{
    return angle == 90 || angle == 270;
}

} // namespace

cv::Size decodedSize(cv::Size full, const JpegDecoding &how)
{
    const cv::Size reduced((full.width + how.reduction - 1) / how.reduction,
                           (full.height + how.reduction - 1) / how.reduction);
    return isSideways(how.angle) ? cv::Size(reduced.height, reduced.width) : reduced;
}

// The functions that call the library hold nothing with a destructor, since errors leave by
// longjmp.
struct JpegDecoder::Impl
{
    Impl();
    ~Impl() { jpeg_destroy_decompress(&info); }
    Impl(const Impl &) = delete;
    Impl &operator=(const Impl &) = delete;

    bool readHeader(const std::vector<uint8_t> &bytes);
    bool begin(const JpegDecoding &how);
    bool readRows(int angle, cv::Mat &rgb);

    jpeg_decompress_struct info = {};
    ErrorManager errors;
    cv::Mat strip; // rows on their way to their place in a turned picture
};

JpegDecoder::Impl::Impl()
{
    info.err = jpeg_std_error(&errors.base);
    errors.base.error_exit = leaveDecoder;
    errors.base.emit_message = noteWarning;
    errors.base.output_message = [](j_common_ptr) {};
    jpeg_create_decompress(&info);
}

bool JpegDecoder::Impl::readHeader(const std::vector<uint8_t> &bytes)
{
    errors.isDamaged = false;
    if (bytes.empty())
        return false;
    if (setjmp(errors.leave) != 0) {
        jpeg_abort_decompress(&info);
        return false;
    }
    jpeg_abort_decompress(&info); // of the picture before, when it was not read to its end
    jpeg_mem_src(&info, bytes.data(), bytes.size());
    jpeg_read_header(&info, TRUE);
    return info.image_width > 0 && info.image_height > 0 &&
           int64_t{info.image_width} * info.image_height <= kPixelsMax;
}

bool JpegDecoder::Impl::begin(const JpegDecoding &how)
{
    if (setjmp(errors.leave) != 0)
        return false;
    info.out_color_space = JCS_RGB;
    info.scale_num = 1;
    info.scale_denom = static_cast<unsigned>(how.reduction);
    info.dct_method = how.isExact ? JDCT_ISLOW : JDCT_IFAST;
    info.do_fancy_upsampling = how.isExact ? TRUE : FALSE;
    return jpeg_start_decompress(&info) != FALSE;
}

bool JpegDecoder::Impl::readRows(int angle, cv::Mat &rgb)
{
    if (setjmp(errors.leave) != 0)
        return false;
    const int width = static_cast<int>(info.output_width);
    const int height = static_cast<int>(info.output_height);
    while (info.output_scanline < info.output_height && !errors.isDamaged) {
        const int top = static_cast<int>(info.output_scanline);
        const int rows = std::min(kStripRows, height - top);
        std::array<JSAMPROW, kStripRows> targets = {};
        for (int row = 0; row < rows; ++row)
            targets[static_cast<size_t>(row)] = angle == 0 ? rgb.ptr(top + row) : strip.ptr(row);
        for (int row = 0; row < rows;) {
            const JDIMENSION read = jpeg_read_scanlines(&info, targets.data() + row,
                                                        static_cast<JDIMENSION>(rows - row));
            row += static_cast<int>(read);
        }
        if (angle != 0)
            rotateStrip(rgb.data,
                        {strip.data, static_cast<ptrdiff_t>(strip.step), top, rows, width, height},
                        angle);
    }
    if (!errors.isDamaged)
        jpeg_finish_decompress(&info); // reads on to the end marker
    return !errors.isDamaged;
}

JpegDecoder::JpegDecoder()
    : m(std::make_unique<Impl>())
{
}

JpegDecoder::~JpegDecoder() = default;

cv::Size JpegDecoder::sizeOf(const std::vector<uint8_t> &bytes)
{
    if (!m->readHeader(bytes))
        return {};
    return {static_cast<int>(m->info.image_width), static_cast<int>(m->info.image_height)};
}

bool JpegDecoder::decode(const JpegPicture &picture, const JpegDecoding &how, cv::Mat &rgb)
{
    const cv::Size full = sizeOf(picture.bytes);
    if (full.empty() || rgb.size() != decodedSize(full, how) || rgb.type() != CV_8UC3 ||
        !rgb.isContinuous())
        return false;
    try {
        if (how.angle != 0)
            m->strip.create(kStripRows, decodedSize(full, {how.reduction}).width, CV_8UC3);
    } catch (const cv::Exception &) {
        return false;
    }
    return m->begin(how) && m->readRows(how.angle, rgb);
}

cv::Mat decodedWhole(const JpegPicture &picture, int angle)
{
    const JpegDecoding how{1, angle};
    try {
        cv::Mat rgb(decodedSize(picture.size, how), CV_8UC3);
        if (JpegDecoder().decode(picture, how, rgb))
            return rgb;
    } catch (const cv::Exception &) {
    }
    return {};
}
