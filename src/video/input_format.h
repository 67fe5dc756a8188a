#pragma once

struct AVInputFormat;

/// The input format of libavformat called `name`, those of devices included; null when nobody knows
/// it. Any thread.
const AVInputFormat *inputFormat(const char *name);
