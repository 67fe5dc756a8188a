#pragma once

#include <opencv2/core.hpp>

#include <memory>
#include <vector>

/// One encoded picture, immutable once published.
using Jpeg = std::shared_ptr<const std::vector<uchar>>;

/// Where a stream server takes its pictures from. Called on the server's thread.
class FrameFeed
{
public:
    FrameFeed() = default;
    virtual ~FrameFeed() = default;
    FrameFeed(const FrameFeed &) = delete;
    FrameFeed &operator=(const FrameFeed &) = delete;

    /// The newest picture of mode `mode`; null while there is none to send. Asked once for each
    /// frame period while the mode has readers, and never blocks.
    virtual Jpeg nextFrame(size_t mode) = 0;

    /// The mode has `count` readers from now on.
    virtual void setReaders(size_t mode, int count) = 0;
};
