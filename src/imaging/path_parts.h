#pragma once

#include <string>

/// The part of `path` from its last "." after its last "/", in lower case; empty without one.
std::string fileEnding(const std::string &path);

/// The part of `path` between its last "/" and its last "."; empty when the "." does not come
/// after the "/".
std::string fileBaseName(const std::string &path);

/// `path` up to and including its last "/".
std::string fileFolder(const std::string &path);
