#pragma once

#include "platform/camera_control.h"
#include "platform/v4l2_modes.h"

/// What the driver behind `ask` lets one choose, in the order of CameraControl::Kind. Ones that
/// are switched off, only to be read, or whose value cannot be read are left out.
QList<CameraControl> v4l2Controls(const V4l2Ioctl &ask);

/// False when the driver has no such control or refuses the value.
bool setV4l2Control(const V4l2Ioctl &ask, CameraControl::Kind kind, int value);

/// True when the camera can focus by itself.
bool canV4l2Focus(const V4l2Ioctl &ask);

/// Focuses once: by the control for it, otherwise by the continuous autofocus, which is begun anew
/// or, where it was off, left on for `settleMs`. Blocks as long.
bool focusV4l2Once(const V4l2Ioctl &ask, int settleMs);
