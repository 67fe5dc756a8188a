#pragma once

#include <exception>
#include <string>

/// Writes `cause` to the log and hands it back, so that a failure is logged where it is found.
std::string loggedFailure(std::string cause);

/// "what: why" for a user, with `cause` in his words; the log gets the library's own as well.
std::string loggedFailure(const std::string &what, const std::exception &cause);

/// "what: text of errno".
std::string withErrno(const std::string &what);
