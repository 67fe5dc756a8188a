#include "video/frame_pool.h"

#include <opencv2/core.hpp>

#include <mutex>
#include <vector>

struct FramePool::Store
{
    Store(size_t lentMost, size_t idleMost)
        : framesMax(lentMost)
        , idleMax(idleMost)
    {
    }

    const size_t framesMax, idleMax;
    std::mutex mutex; // guards what follows
    std::vector<cv::Mat> idle;
    cv::Size size; // of every idle buffer
    size_t lent = 0;

    void takeBack(Frame *frame);
};

void FramePool::Store::takeBack(Frame *frame)
{
    {
        const std::lock_guard<std::mutex> lock(mutex);
        --lent;
        // A reader may have kept the pixels without the frame: then they are his.
        cv::Mat &pixels = frame->pixels;
        if (pixels.u && CV_XADD(&pixels.u->refcount, 0) == 1 && pixels.size() == size &&
            idle.size() < idleMax)
            idle.push_back(std::move(pixels));
    }
    delete frame;
}

FramePool::FramePool(size_t framesMax, size_t idleMax)
    : m_store(std::make_shared<Store>(framesMax, idleMax))
{
}

std::shared_ptr<Frame> FramePool::acquire(int width, int height)
{
    const cv::Size size(width, height);
    cv::Mat pixels;
    std::vector<cv::Mat> outdated;
    {
        const std::lock_guard<std::mutex> lock(m_store->mutex);
        if (m_store->lent == m_store->framesMax)
            return nullptr;
        if (m_store->size != size) {
            m_store->size = size;
            outdated.swap(m_store->idle);
        }
        ++m_store->lent;
        if (!m_store->idle.empty()) {
            pixels = std::move(m_store->idle.back());
            m_store->idle.pop_back();
        }
    }
    const std::shared_ptr<Frame> frame(new Frame,
                                       [store = m_store](Frame *used) { store->takeBack(used); });
    frame->pixels = std::move(pixels);
    frame->width = width;
    frame->height = height;
    try {
        frame->pixels.create(size, CV_8UC3);
    } catch (const cv::Exception &) {
        return nullptr; // as little to be had as when all are out
    }
    return frame;
}
