#pragma once

#include <QString>

#include <opencv2/core/mat.hpp>

/// What became of a picture file.
struct ReadPicture
{
    cv::Mat rgb;   ///< as the camera would deliver it; empty when it cannot be taken
    QString error; ///< why not
    QString note;  ///< what was left out or is damaged
};

/// Reads the first page of the picture file `path`, what is transparent on white, and turns it
/// clockwise by `degrees` (a multiple of 90). Throws nothing.
ReadPicture readPicture(const QString &path, int degrees);
