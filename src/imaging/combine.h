#pragma once

#include "imaging/save_options.h"

#include <opencv2/core/mat.hpp>

#include <string>
#include <vector>

/// Pastes `assistRgb`, stretched to the size of `place`, into `mainRgb` at `place` (main picture
/// pixels). Both frames rows x cols x 3, 8 bits, R,G,B; the result is a new picture in B,G,R.
/// What reaches beyond the main picture is left out. Empty when a frame is empty.
cv::Mat combineFrames(const cv::Mat &mainRgb, const cv::Mat &assistRgb, cv::Rect place);

enum class MergeDirection { Vertical = 0, Horizontal = 1 };

/// Pastes `pages` (8 bits, B,G,R) below or beside one another on white, unscaled, left or top
/// aligned, `gap` pixels apart and from the edges.
cv::Mat pastePages(const std::vector<cv::Mat> &pages, MergeDirection direction, int gap);

struct MergeJob
{
    std::string outPath;            ///< UTF-8, the ending decides the format
    std::vector<std::string> files; ///< page files; the first four are pasted
    MergeDirection direction = MergeDirection::Vertical;
    int gap = 10; ///< pixels
    SaveOptions save;
};

/// Results of mergeImageFiles.
enum MergeResult {
    MergeDone = 0,
    MergeTooFewPages = -1,
    MergeUnreadablePage = -2,
    MergeNotSaved = -3
};

/// Merges the page files into one picture and then removes all of them. They stay unless the
/// picture is safely on the disk. `cause` takes why it failed.
MergeResult mergeImageFiles(const MergeJob &job, std::string &cause);
