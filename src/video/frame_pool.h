#pragma once

#include "video/frame.h"

#include <cstddef>
#include <memory>

/// Lends the frames of one stream and takes their buffers back when the last reader lets go, so
/// that a running stream touches no fresh memory. Frames may outlive the pool. Any thread.
class FramePool
{
public:
    /// `framesMax`: most frames lent at a time; `idleMax`: most buffers kept for the next ones.
    FramePool(size_t framesMax, size_t idleMax);

    /// A frame of width x height whose pixels are yet to be written; null when `framesMax` frames
    /// are out or memory is, and then the caller drops its picture. Buffers of another size are
    /// freed.
    std::shared_ptr<Frame> acquire(int width, int height);

private:
    struct Store;
    std::shared_ptr<Store> m_store;
};
