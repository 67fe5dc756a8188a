#pragma once

#include <opencv2/core/types.hpp>

/// Knows which pictures of a stream have the size that the stream has settled on: at first the one
/// that the camera was asked for, later another that came often in a row. A single picture of
/// another size is damage, or what was under way when the size was changed. One thread.
class SettledSize
{
public:
    /// `asked`: pixels; empty takes the first picture's.
    explicit SettledSize(cv::Size asked)
        : m_settled(asked)
    {
    }

    /// To be called with the size of each picture; true when it is one to use.
    bool accepts(cv::Size size)
    {
        m_inARow = size == m_last ? m_inARow + 1 : 1;
        m_last = size;
        if (m_inARow >= kSettledAfter || m_settled.empty())
            m_settled = size;
        return size == m_settled;
    }

private:
    static constexpr int kSettledAfter = 10; ///< pictures, well below a second in most modes

    cv::Size m_settled, m_last;
    int m_inARow = 0;
};
