#pragma once

#include <unistd.h>

/// Flushing to the disk depends on the disk and not on the program; it is measured by itself.
/// Include once in a benchmark program that writes files.
extern "C" int fsync(int /*file*/)
{
    return 0;
}
