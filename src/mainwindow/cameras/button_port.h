#pragma once

#include <QByteArray>

#include <functional>

/// Looks through the serial ports for the adapter of the camera's hardware buttons and opens it as
/// `serial` (9600 baud, 8 data bits, no parity, 1 stop bit, no flow control); of several the last
/// one that opens. `onReadyRead` runs on the GUI thread whenever bytes have come. The port closes
/// itself on its first error. True when a port is open afterwards. GUI thread.
bool openButtonPort(const std::function<void()> &onReadyRead);

bool isButtonPortOpen();

/// Everything that has come in; empty without an open port.
QByteArray readButtonPort();

/// Closes the port and frees it.
void closeButtonPort();
