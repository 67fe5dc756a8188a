#pragma once

#include "imaging/reduced_picture.h"

#include <utility>

/// The gray pictures of one frame that sheet detection and comparison work on, each made when it
/// is first asked for. Refers to the frame's pixels, which must outlive it.
class FrameSample
{
public:
    explicit FrameSample(ReducedPicture picture)
        : m_picture(std::move(picture))
    {
    }

    // Frames of 3,145,728 and 5,038,848 pixels and more are reduced to a quarter of each side,
    // smaller ones are taken as they were decoded.
    const cv::Mat &forDetection();
    const cv::Mat &forComparison();
    cv::Size frameSize() const { return m_picture.full; } ///< of the whole frame

private:
    const cv::Mat &gray(bool quarter);

    ReducedPicture m_picture;
    cv::Mat m_full, m_quarter;
};

/// 0 when a sheet is in view, -1 when none is or the frame is empty. Throws nothing.
int CheckIsHavePaper(FrameSample &sample);

/// Tells a still picture from a changing one by comparing each sample with the one before.
/// One thread at a time.
class FrameComparer
{
public:
    /// 0 when more than `percent` of the pixels moved by less than `pixelTolerance` gray levels
    /// since the previous sample, else -1. The first sample, and the first after a change of the
    /// frame size or its reduction, counts as still. Throws nothing.
    int CompareBuf(FrameSample &sample, unsigned pixelTolerance, unsigned percent);

    /// Keeps the sample's picture as that of the page that was shot.
    void keepAsShot(FrameSample &sample);

    /// The share of pixels, 0 to 100, that moved by less than `pixelTolerance` gray levels since
    /// the page was shot; negative when no page of this frame size was, or on failure.
    double alikeToShot(FrameSample &sample, unsigned pixelTolerance) const;

    /// Whether something large that reaches in from the frame's border lies in the sample or in
    /// the shot page and not in both: a hand, as what is printed ends within the sheet. False when
    /// no page of this frame size was shot, or on failure.
    bool isReachedInto(FrameSample &sample, unsigned pixelTolerance) const;

    /// Forgets the previous sample and the page that was shot.
    void destroyCompare();

    int compareCount() const { return m_compareCount; } ///< samples since the comparer was reset

private:
    cv::Mat m_previous;
    cv::Mat m_shot; ///< gray picture of the page shot last, empty when there is none
    cv::Size m_frameSize;
    int m_compareCount = 0;
};
