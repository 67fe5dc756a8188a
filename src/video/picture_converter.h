#pragma once

#include <opencv2/core/mat.hpp>

#include <memory>

struct AVFrame;
struct SwsContext;

/// Converts decoded pictures of any format to packed R,G,B and turns them on the way: a strip of
/// rows at a time, so that it is still in the cache when it is turned. Keeps its scaler while
/// size and format stay the same. One thread.
class PictureConverter
{
public:
    PictureConverter() = default;
    ~PictureConverter();
    PictureConverter(const PictureConverter &) = delete;
    PictureConverter &operator=(const PictureConverter &) = delete;

    /// `pixels`: rows x cols x 3, 8 bits, continuous, of the size that `picture` has after a
    /// clockwise turn by `angle` (0, 90, 180 or 270). False when there is no converter for the
    /// format or `pixels` has another size.
    bool convert(const AVFrame &picture, cv::Mat &pixels, int angle);

private:
    bool prepare(const AVFrame &picture);

    SwsContext *m_scaler = nullptr;
    int m_width = 0, m_height = 0, m_format = -1; // that m_scaler was made for
    bool m_rowsAreIndependent = false;            // strips come out as parts of the whole would
    cv::Mat m_strip;                              // rows with spare columns behind them
};
