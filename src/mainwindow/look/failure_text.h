#pragma once

#include <QString>

#include <string>

/// What the image work reports in English, of a failed capture or of one that the user should know
/// more about, in the language of the window. Paths, codes and what a library adds stay as they
/// are; so does a sentence that is not known here.
QString failureText(const std::string &report);
