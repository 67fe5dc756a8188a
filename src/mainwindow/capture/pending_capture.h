#pragma once

#include "imaging/save_options.h"
#include "mainwindow/capture/capture_plan.h"
#include "mainwindow/capture/taken_numbers.h"

#include <QTime>

#include <optional>

/// A capture between the press and its file.
struct PendingCapture
{
    CaptureStep step;
    bool isTurnedPage = false;                 ///< taken by itself, as a page was turned
    QTime time;                                ///< of the press
    std::optional<TakenNumbers::Taken> number; ///< under NameByNumber
};

/// What the user had chosen when he pressed for a page of a merge; the last page's decides.
struct MergeChoice
{
    CaptureSettings settings;
    SaveOptions save;
    int direction = 0; ///< see CollectedPages
};
