#pragma once

#include "platform/platform.h"

#include <QList>

/// Sound inputs of a Linux system: those of the sound server when one runs (the default one first),
/// otherwise the cards with a capture device. Asking a server takes about ten milliseconds.
QList<SoundInput> systemSoundInputs();

/// Position in `inputs` of the microphone that belongs to the camera called `camera`, -1 when none
/// does: the name of its sound device contains the camera's.
int microphoneOfCamera(const QString &camera, const QList<SoundInput> &inputs);

/// The cards with a capture device below `folder` (usually "/proc/asound").
QList<SoundInput> soundCards(const QString &folder);
