#include "imaging/failure.h"

#include "app/log.h"

#include <cerrno>
#include <cstring>

std::string loggedFailure(std::string cause)
{
    WriteLog(cause.c_str());
    return cause;
}

std::string withErrno(const std::string &what)
{
    return what + ": " + std::strerror(errno);
}
