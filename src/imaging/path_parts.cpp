#include "imaging/path_parts.h"

#include <algorithm>

namespace {

// Behind the last "/".
size_t nameStart(const std::string &path)
{
    return path.rfind('/') + 1; // npos + 1 is 0
}

// Of the last "." in the name; npos without one.
size_t dotPosition(const std::string &path)
{
    const size_t dot = path.rfind('.');
    return dot != std::string::npos && dot >= nameStart(path) ? dot : std::string::npos;
}

} // namespace

std::string fileEnding(const std::string &path)
{
    const size_t dot = dotPosition(path);
    std::string ending = dot == std::string::npos ? std::string() : path.substr(dot);
    std::transform(ending.begin(), ending.end(), ending.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
    return ending;
}

std::string fileBaseName(const std::string &path)
{
    const size_t dot = dotPosition(path);
    const size_t start = nameStart(path);
    return dot == std::string::npos ? std::string() : path.substr(start, dot - start);
}

std::string fileFolder(const std::string &path)
{
    return path.substr(0, nameStart(path));
}
