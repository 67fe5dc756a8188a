#pragma once

#include "imaging/smart_maps.h"
#include "imaging/smart_sheet.h"

#include <array>
#include <vector>

constexpr size_t kSheetTraits = 20;

/// What speaks for or against a quadrilateral being a sheet, each about 0 to 1: see sheetTraits.
using SheetTraits = std::array<float, kSheetTraits>;

/// Measures `quad` in the picture: how much edge lies along its sides (mean, weakest, covered
/// share), how far inside and outside differ in colour along each side and with what consistency,
/// whether outside and inside look alike on all sides, size, how far it is from the picture of a
/// rectangle, sides that lie on the picture's border, edges that go on beyond the corners, and
/// `agreement`, the best overlap with an independent candidate.
SheetTraits sheetTraits(const SmartMaps &maps, const Quad &quad, float agreement);

/// Overlap with a true sheet to be expected, 0 to 1.
float sheetConfidence(const SheetTraits &traits);
