#pragma once

#include "imaging/reduced_picture.h"
#include "imaging/smart_sheet.h"

#include <opencv2/core/mat.hpp>

#include <vector>

/// Sheets of a live picture: looked for in every few frames, held still while they lie still, and
/// changed only when two searches agree, so that a passing hand moves nothing. Corners that the
/// user has set stay until the picture under them has become another one and lies still again.
/// One thread.
class SmartTracker
{
public:
    /// Takes the next frame. Returns the corners of its sheets, largest first, in pixels of the
    /// whole picture, as all corners here.
    const std::vector<Quad> &update(const ReducedPicture &picture);

    /// Holds these corners for the sheet that lies there with the next frame.
    void fix(std::vector<Quad> corners);
    bool isFixed() const { return m_isFixed; }

    /// Forgets all: another camera, size or rotation, or the user's corners are no longer wanted.
    void reset();

private:
    void search(const ReducedPicture &picture);
    void watchFixed(const ReducedPicture &picture);

    std::vector<Quad> m_sheets;
    std::vector<Quad> m_next; // found last, other than m_sheets
    int m_agreed = 0;         // searches in a row that found m_next
    int m_frame = 0;
    bool m_isFixed = false;
    cv::Mat m_fixedLook;    // small picture at the time the corners were set
    cv::Mat m_previousLook; // and at the last look
    int m_changedLooks = 0;
};
