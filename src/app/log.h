#pragma once

class QString;

/// Appends `message` with a local time stamp to the file "scanerlog" in the user's Documents
/// folder, as one line "YYYY-MM-DD hh:mm:ss message \r\n".
///
/// Any thread; lines of several threads never mix. The folder is created when missing. A log
/// longer than 20,971,519 bytes is deleted instead of written to, so it restarts empty with the
/// next message. When the file cannot be opened the call tries three times, a second apart, and
/// then drops the message; from there on it tries once and without waiting until a write works
/// again, so that a read-only Documents folder does not hold up the program.
void WriteLog(const char *message);

/// The same where the log is switched on (`isoutlog`).
void logLine(const QString &message);
