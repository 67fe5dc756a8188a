#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

/// Machine-readable codes as black and white modules.

/// Text of the built-in QR sheet.
QString qrText();

/// The QR code of qrText(): rows of '#' and '.', without the quiet zone.
QStringList qrModules();

/// Twelve digits and their check digit.
QString eanWithCheckDigit(const QString &twelveDigits);

/// The modules of an EAN-13 code, one character each, '1' is black. `digits` are thirteen.
QByteArray eanModules(const QString &digits);

/// The modules of printable ASCII text in Code 128, set B.
QByteArray code128Modules(const QByteArray &text);
