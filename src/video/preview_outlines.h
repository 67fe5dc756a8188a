#pragma once

#include "imaging/document_finder.h"
#include "video/frame.h"

/// Documents to draw over a stream whose pictures are decoded only as large as they are shown.
///
/// Found in the reduced picture. Where a rounding would decide what is found, and only there, all
/// pixels are decoded, so that what is drawn is what a capture would cut. A scene at rest is
/// questioned every few seconds. One stream, decode thread.
class PreviewOutlines
{
public:
    /// Outlines in `frame`, in camera pixels; empty when nothing in it is large enough. `cropMode`:
    /// AutomaticCrop or MultiGraphCrop.
    std::optional<Detection> find(const Frame &frame, int cropMode);

    /// The same in `picture`, with no more pixels to be had.
    std::optional<Detection> find(const ReducedPicture &picture, int cropMode);

private:
    DocumentFinder m_finder;
    int m_cropMode = 0;
    int m_untilQuestioned = 0;             // pictures
    bool m_isSteady = true;                // the reduced picture is good enough
    std::optional<Detection> m_questioned; // found in the reduced picture then
    std::optional<Detection> m_inWhole;    // instead of it
};
