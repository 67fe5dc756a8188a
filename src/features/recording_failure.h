#pragma once

#include <QByteArray>

/// Why a recording failed, and what became of its file.
struct RecordingFailure
{
    enum Cause {
        Unknown,
        DiskFull,
        NoProgram, ///< ffmpeg could not be started
        CameraGone,
        DamagedPicture, ///< ffmpeg could not go on with what the camera sent
        NameTaken,      ///< by a folder, or by a file that cannot be moved aside
        StoppedAtOnce,  ///< ffmpeg ended before it had recorded anything
        Ended,          ///< ffmpeg ended by itself later
    };
    enum File { GoesOn, Kept, Nothing };

    Cause cause = Unknown;
    File file = GoesOn;
};

/// What a line of ffmpeg's output says about the cause; Unknown for most lines.
RecordingFailure::Cause failureCause(const QByteArray &line);

/// True for a line about a picture that could not be decoded: the next one may be whole again.
bool isAboutOnePicture(const QByteArray &line);
