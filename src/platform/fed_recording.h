#pragma once

#include "platform/platform.h"

#include <QString>

/// Command text that records pictures from standard input, a NUT stream whose times count from
/// `request.startUs`, into `request.target`, with `sound` when it has a format.
///
/// It must keep up beside the preview on two cores, so the encoder takes its fastest preset, and
/// it must not hold pictures back: sound and picture then end together, and a recording that is
/// killed loses a second. QuickTime and MP4 files are fragmented for the same reason.
QString fedRecordCommand(const RecordRequest &request, const SoundInput &sound);

/// The sound that `request` asks `platform` for; without a format when it asks for none.
SoundInput requestedSound(const Platform &platform, const RecordRequest &request);
