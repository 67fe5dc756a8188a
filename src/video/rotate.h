#pragma once

#include <cstddef>

/// Turns pictures of 3-byte pixels in rows without padding. `width` and `height` are those of the
/// source. Nothing is mirrored and no channels are swapped. Nothing happens when a buffer is null
/// or the width is below 1. The buffers must not overlap. Any thread.

/// Clockwise: `dst` is height wide and width high, dst(x, y) = src(y, height - 1 - x).
void NoMirrorRotate90(unsigned char *dst, const unsigned char *src, int width, int height);

/// Upside down: pixel k of `dst` is pixel width * height - 1 - k of `src`.
void NoMirrorRotate180(unsigned char *dst, const unsigned char *src, int width, int height);

/// Counter-clockwise: `dst` is height wide and width high, dst(x, y) = src(width - 1 - y, x).
void NoMirrorRotate270(unsigned char *dst, const unsigned char *src, int width, int height);

/// Rows [top, top + rows) of a picture that is being turned piece by piece.
struct RotateStrip
{
    const unsigned char *src; ///< first pixel of the strip
    ptrdiff_t stride;         ///< bytes from row to row
    int top;                  ///< its first row in the whole picture
    int rows;                 ///< at least 1
    int width;                ///< of the whole source picture
    int height;               ///< of the whole source picture
};

/// Writes what the strip contributes to the whole turned picture `dst`. `angle` is 90, 180 or 270.
void rotateStrip(unsigned char *dst, const RotateStrip &strip, int angle);
