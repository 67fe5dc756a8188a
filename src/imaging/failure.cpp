#include "imaging/failure.h"

#include "app/log.h"

#include <opencv2/core.hpp>

#include <cerrno>
#include <cstring>
#include <new>

std::string loggedFailure(std::string cause)
{
    WriteLog(cause.c_str());
    return cause;
}

std::string loggedFailure(const std::string &what, const std::exception &cause)
{
    WriteLog((what + ": " + cause.what()).c_str());
    const auto *ofImages = dynamic_cast<const cv::Exception *>(&cause);
    const bool isMemory = ofImages ? ofImages->code == cv::Error::StsNoMem
                                   : dynamic_cast<const std::bad_alloc *>(&cause) != nullptr;
    return what + (isMemory ? ": not enough memory" : ": the image library failed");
}

std::string withErrno(const std::string &what)
{
    return what + ": " + std::strerror(errno);
}
