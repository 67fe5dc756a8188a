#pragma once

/// How a picture becomes a file.
struct SaveOptions
{
    int colorMode = 0; ///< see ColorMode
    bool trim = false; ///< whiten dark margins; not with document optimization
    int quality = 80;  ///< JPEG quality, percent
};

/// The options as the process-wide settings stand now. GUI thread.
SaveOptions currentSaveOptions();
