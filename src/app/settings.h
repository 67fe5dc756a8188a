#pragma once

#include <QString>

extern bool areSettingsReadOnly; ///< another instance keeps them: nothing is written
extern bool isQualityChosen;     ///< the file read last holds a quality
extern bool areSettingsDamaged;  ///< the file read last was no INI file, or a number in it none

/// Loads the eight settings from the INI file `path` into the globals of app/state.h. A key that
/// is missing, or a file that is missing, unreadable or no INI file, gives 0 or an empty text;
/// no range is checked. GUI thread.
void readcfgini(QString path);

/// Saves the eight settings to the INI file `path`, group "Set". The file is replaced whole or
/// not at all; a failure is silent. GUI thread.
void writecfgini(QString path);
