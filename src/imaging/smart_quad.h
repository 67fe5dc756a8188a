#pragma once

#include "imaging/smart_sheet.h"

#include <vector>

/// Plane geometry of quadrilaterals.

/// Positive when the corners go round clockwise as the viewer sees them.
float quadArea(const Quad &quad);

bool isConvex(const Quad &quad);

/// The same corners clockwise, beginning with the one nearest to the picture's top left.
Quad inOrder(Quad quad);

/// Largest distance of two corners that belong together, over all ways to number them.
float cornerDistance(const Quad &a, const Quad &b);

/// Whether one of `quads` has every corner within `distance` of one of `quad`.
bool containsNear(const std::vector<Quad> &quads, const Quad &quad, float distance);

Quad scaled(const Quad &quad, float x, float y);

/// Area of what both cover, in square pixels. Both convex.
float sharedArea(const Quad &a, const Quad &b);

/// Intersection over union, 0 to 1. Both convex.
float overlap(const Quad &a, const Quad &b);
