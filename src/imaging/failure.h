#pragma once

#include <string>

/// Writes `cause` to the log and hands it back, so that a failure is logged where it is found.
std::string loggedFailure(std::string cause);

/// "what: text of errno".
std::string withErrno(const std::string &what);
