#pragma once

#include "platform/platform.h"

/// What the user can do about a camera that does not open, in his language; empty when the system
/// does not tell why.
QString openProblemText(const OpenProblem &problem);
