#include "app/descriptors.h"

#include <fcntl.h>
#include <unistd.h>

int closedInChildren(int file)
{
    if (file >= 0)
        ::fcntl(file, F_SETFD, FD_CLOEXEC);
    return file;
}

int nonBlocking(int file)
{
    if (file >= 0)
        ::fcntl(file, F_SETFL, ::fcntl(file, F_GETFL) | O_NONBLOCK);
    return file;
}

bool openPipe(int (&ends)[2])
{
    if (::pipe(ends) != 0)
        return false;
    closedInChildren(ends[0]);
    closedInChildren(ends[1]);
    return true;
}

namespace {

// Where send() cannot be told so, see kSendFlags.
int withoutSignal(int file)
{
#ifdef SO_NOSIGPIPE
    const int on = 1;
    ::setsockopt(file, SOL_SOCKET, SO_NOSIGPIPE, &on, sizeof on);
#endif
    return file;
}

} // namespace

int openLocalSocket()
{
    return withoutSignal(closedInChildren(::socket(AF_UNIX, SOCK_STREAM, 0)));
}

bool openSocketPair(int (&ends)[2])
{
    if (::socketpair(AF_UNIX, SOCK_STREAM, 0, ends) != 0)
        return false;
    for (const int end : ends)
        withoutSignal(closedInChildren(end));
    return true;
}
