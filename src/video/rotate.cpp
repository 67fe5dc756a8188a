#include "video/rotate.h"

#include <algorithm>
#include <cstddef>
#include <cstring>

namespace {

constexpr int kPixelBytes = 3;
constexpr int kBlockColumns = 16; // source columns whose cache lines are used while they are hot
constexpr int kBlockRows = 64;    // source rows per piece of a whole picture

// Copies `count` pixels that lie `step` bytes apart in the source to adjacent places. Four bytes
// are moved at a time; the spare one is overwritten by the next pixel, or is not touched at all
// for the first and the last, beyond which there may be neither source nor destination.
inline void gather(unsigned char *dst, const unsigned char *src, ptrdiff_t step, int count)
{
    std::memcpy(dst, src, kPixelBytes);
    for (int i = 1; i < count - 1; ++i) {
        dst += kPixelBytes;
        src += step;
        std::memcpy(dst, src, 4);
    }
    if (count > 1)
        std::memcpy(dst + kPixelBytes, src + step, kPixelBytes);
}

// As gather(), for the last column of a picture: nothing may be read behind any of its pixels.
void gatherExactly(unsigned char *dst, const unsigned char *src, ptrdiff_t step, int count)
{
    for (int i = 0; i < count; ++i, dst += kPixelBytes, src += step)
        std::memcpy(dst, src, kPixelBytes);
}

void turnSideways(unsigned char *dst, const RotateStrip &s, bool clockwise)
{
    const ptrdiff_t step = clockwise ? -s.stride : s.stride;
    const unsigned char *first = clockwise ? s.src + (s.rows - 1) * s.stride : s.src;
    const ptrdiff_t left = clockwise ? s.height - s.top - s.rows : s.top;
    for (int begin = 0; begin < s.width; begin += kBlockColumns) {
        const int end = std::min(begin + kBlockColumns, s.width);
        for (int column = begin; column < end; ++column) {
            const ptrdiff_t row = clockwise ? column : s.width - 1 - column;
            unsigned char *out = dst + (row * s.height + left) * kPixelBytes;
            const unsigned char *in = first + ptrdiff_t{column} * kPixelBytes;
            if (column == s.width - 1)
                gatherExactly(out, in, step, s.rows);
            else
                gather(out, in, step, s.rows);
        }
    }
}

void turnUpsideDown(unsigned char *dst, const RotateStrip &s)
{
    for (int row = 0; row < s.rows; ++row) {
        const ptrdiff_t outRow = s.height - 1 - s.top - row;
        const ptrdiff_t lastPixel = ptrdiff_t{s.width - 1} * kPixelBytes;
        gather(dst + outRow * s.width * kPixelBytes, s.src + row * s.stride + lastPixel,
               -kPixelBytes, s.width);
    }
}

void rotateWhole(unsigned char *dst, const unsigned char *src, int width, int height, int angle)
{
    if (!dst || !src || width < 1)
        return;
    const ptrdiff_t stride = ptrdiff_t{width} * kPixelBytes;
    // Clockwise from below: the target is then written from left to right.
    const int blocks = (height + kBlockRows - 1) / kBlockRows;
    for (int k = 0; k < blocks; ++k) {
        const int top = (angle == 90 ? blocks - 1 - k : k) * kBlockRows;
        const int rows = std::min(kBlockRows, height - top);
        rotateStrip(dst, {src + top * stride, stride, top, rows, width, height}, angle);
    }
}

} // namespace

void rotateStrip(unsigned char *dst, const RotateStrip &strip, int angle)
{
    if (angle == 180)
        turnUpsideDown(dst, strip);
    else
        turnSideways(dst, strip, angle == 90);
}

void NoMirrorRotate90(unsigned char *dst, const unsigned char *src, int width, int height)
{
    rotateWhole(dst, src, width, height, 90);
}

void NoMirrorRotate180(unsigned char *dst, const unsigned char *src, int width, int height)
{
    rotateWhole(dst, src, width, height, 180);
}

void NoMirrorRotate270(unsigned char *dst, const unsigned char *src, int width, int height)
{
    rotateWhole(dst, src, width, height, 270);
}
