#pragma once

#include <QDateTime>
#include <QString>

/// Values of `recordNameType`, one above the index of the naming box.
enum RecordNameType { RecordByTime = 1, RecordCustom = 2, RecordAsFolder = 3 };

/// What a recording's name is made of.
struct RecordNaming
{
    int nameType = RecordByTime; ///< see RecordNameType; anything else acts as RecordByTime
    QString text;                ///< the user's name of the file or of the folder
    QString folder;              ///< output folder without a trailing separator
    QString format;              ///< "mov", "avi" or "mp4"
    QDateTime time;
};

/// Full path of the recording: named by time down to the millisecond, by the text, or by time in a
/// folder named by the text. An empty text names it by time in the output folder. The folder may
/// not exist yet.
QString recordPath(const RecordNaming &naming);

/// `seconds` as "hh:mm:ss".
QString elapsedTimeText(int seconds);
