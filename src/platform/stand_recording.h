#pragma once

#include "platform/platform.h"
#include "platform/stand_descriptor.h"

#include <QList>
#include <QString>

/// The mode that is recorded of a camera with `modes`: the largest up to 1920x1080, the faster of
/// two equal ones; the smallest of all when every mode is larger.
StandMode recordingMode(const QList<StandMode> &modes);

/// Command text that records a camera with `modes` into `request.target`.
///
/// It must keep up beside the preview on two cores, so the encoder takes its fastest preset, and
/// it must not hold pictures back: sound and picture then end together, and a recording that is
/// killed loses a second. QuickTime and MP4 files are fragmented for the same reason.
QString standRecordCommand(const RecordRequest &request, const QList<StandMode> &modes);
