#pragma once

#include "stand/frame_feed.h"

/// A copy of `jpeg` as a bad cable would deliver it. The kind of damage goes round with `turn`:
/// flipped entropy data, a cut end, a broken quantisation table, a broken frame header.
Jpeg damageJpeg(const std::vector<uchar> &jpeg, int turn);
