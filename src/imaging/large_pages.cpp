#include "imaging/large_pages.h"

#include <cstdlib>

#ifdef __linux__

#include <opencv2/core.hpp>

#include <sys/mman.h>

namespace {

constexpr size_t kLargePage = size_t{2} << 20;
constexpr size_t kSizeMin = 2 * kLargePage;

class LargePageAllocator final : public cv::MatAllocator
{
public:
    cv::UMatData *allocate(int dims, const int *sizes, int type, void *data, size_t *step,
                           cv::AccessFlag flags, cv::UMatUsageFlags usage) const override
    {
        size_t size = CV_ELEM_SIZE(type);
        for (int i = 0; i < dims; ++i)
            size *= static_cast<size_t>(sizes[i]);
        if (data || size < kSizeMin)
            return standard()->allocate(dims, sizes, type, data, step, flags, usage);
        data = allocateInLargePages(size);
        if (!data) // tells why, as every allocation that fails
            return standard()->allocate(dims, sizes, type, data, step, flags, usage);
        size_t next = CV_ELEM_SIZE(type);
        for (int i = dims - 1; i >= 0; --i) {
            if (step)
                step[i] = next;
            next *= static_cast<size_t>(sizes[i]);
        }
        auto *handle = new cv::UMatData(this);
        handle->data = handle->origdata = static_cast<uchar *>(data);
        handle->size = size;
        return handle;
    }

    bool allocate(cv::UMatData *handle, cv::AccessFlag, cv::UMatUsageFlags) const override
    {
        return handle != nullptr;
    }

    void deallocate(cv::UMatData *handle) const override
    {
        if (!handle)
            return;
        CV_Assert(handle->urefcount == 0 && handle->refcount == 0);
        std::free(handle->origdata);
        delete handle;
    }

private:
    static cv::MatAllocator *standard() { return cv::Mat::getStdAllocator(); }
};

} // namespace

void *allocateInLargePages(size_t size)
{
    void *memory = nullptr;
    if (::posix_memalign(&memory, kLargePage, size) != 0)
        return nullptr;
    // The rest behind the last whole page stays on ordinary ones. Refused: all of it does.
    ::madvise(memory, size / kLargePage * kLargePage, MADV_HUGEPAGE);
    return memory;
}

void useLargePagesForPictures()
{
    static const auto allocator = new LargePageAllocator; // outlives every picture
    cv::Mat::setDefaultAllocator(allocator);
}

#else

void *allocateInLargePages(std::size_t size)
{
    return std::malloc(size);
}

void useLargePagesForPictures() {}

#endif
