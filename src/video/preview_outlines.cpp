#include "video/preview_outlines.h"

#include "imaging/quarter_size.h"
#include "video/jpeg_decoder.h"

namespace {

constexpr int kQuestionedEvery = 60; // pictures of a scene at rest: two to four seconds

// Other sizes have pixels that belong to two of the quarter size.
bool isExact(const ReducedPicture &picture)
{
    return picture.full.width % kQuarter == 0 && picture.full.height % kQuarter == 0;
}

} // namespace

std::optional<Detection> PreviewOutlines::find(const ReducedPicture &picture, int cropMode)
{
    return m_finder.find(picture, cropMode);
}

std::optional<Detection> PreviewOutlines::find(const Frame &frame, int cropMode)
{
    const ReducedPicture picture{frame.pixels, {frame.width, frame.height}, frame.reduction};
    std::optional<Detection> found = find(picture, cropMode);
    if (frame.reduction == 1 || !frame.compressed)
        return found;
    const bool isAtRest = cropMode == m_cropMode && areAlike(found, m_questioned);
    if (!isAtRest || --m_untilQuestioned <= 0) {
        cv::Mat whole;
        if (!isExact(picture) || !m_finder.isSteady(found, cropMode))
            whole = decodedWhole(*frame.compressed, frame.angle);
        m_isSteady = whole.empty();
        m_inWhole = m_isSteady ? std::nullopt : DocumentFinder().find(whole, cropMode);
        m_questioned = found;
        m_cropMode = cropMode;
        m_untilQuestioned = kQuestionedEvery;
    }
    return m_isSteady ? found : m_inWhole;
}
