#pragma once

#include <QString>
#include <QStringList>

/// First Documents location of the user, without a trailing separator.
QString documentsPath();

/// The settings file: `documentsPath()` + "/scanner.ini".
QString settingsPath();

/// The three places of the ffmpeg executable for a program that runs in `appDir`, in the order
/// in which they are tried: beside the application bundle, beside the program, inside a bundle
/// that lies beside the program. Outside a bundle the first one ends in the program's name twice
/// and normally does not exist.
QStringList ffmpegCandidates(const QString &appDir);

/// Full path of the ffmpeg executable: the first existing candidate, else the last candidate.
/// Logs each step.
QString getFFmpegPath();

/// Resources folder that belongs to a program in `appDir`: the bundle's "Resources", or the
/// folder of that name beside the program where there is no bundle.
QString languagePathFor(const QString &appDir);

/// Folder of the translation files. Logs the result.
QString getLanguagePath();

/// `n` in decimal, with a "0" in front when it is 9 or less; for hours, minutes and seconds.
QString SupplyZero(int n);
