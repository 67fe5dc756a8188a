#pragma once

#include <string>

/// File-to-file tools. A source that does not load leaves everything as it is. All return the
/// cause of a failure, empty on success; paths are UTF-8; JPEG takes the encoder's own quality.

/// Enlarges (or shrinks) the picture `path` in place to `width` x `height` pixels.
std::string ImageResizeEx(const std::string &path, int width, int height);

/// Resizes the picture `target` in place to the size of the picture `reference`.
std::string ImageResize(const std::string &target, const std::string &reference);

/// Adds `overlay`, scaled to the size of `base`, to `base` and writes the sum to `out`.
std::string SavePaintImage(const std::string &base, const std::string &overlay,
                           const std::string &out);
