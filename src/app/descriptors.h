#pragma once

#include <sys/socket.h>

/// File descriptors that no child process inherits, on every Unix; Linux could make them so at
/// once. Any thread.

/// Marks `file` to be closed in child processes, gives it back.
int closedInChildren(int file);

/// Lets nothing wait for `file`, gives it back.
int nonBlocking(int file);

/// Opens a pipe into `ends`: read, write. False when the system has none left.
bool openPipe(int (&ends)[2]);

/// A stream socket between processes of this machine; -1 when the system has none left.
int openLocalSocket();

/// Two stream sockets connected to each other; false when the system has none left.
bool openSocketPair(int (&ends)[2]);

/// For send(): a reader that has gone is an error of this call and no signal.
#ifdef MSG_NOSIGNAL
constexpr int kSendFlags = MSG_NOSIGNAL;
#else
constexpr int kSendFlags = 0; // set at the socket
#endif
