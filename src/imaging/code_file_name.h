#pragma once

#include <cstddef>
#include <string>

/// A decoded text made fit for a file name.
struct CodeFileName
{
    std::string name;     ///< without folder and ending; empty when nothing usable remains
    bool altered = false; ///< differs from the text: the user should know
};

/// A line end and every other control character becomes one blank, "/" becomes "_", leading dots
/// are dropped, and what exceeds `maxBytes` is cut between two characters of the UTF-8 text.
/// Everything else stays. Of blanks alone nothing remains.
CodeFileName codeFileName(const std::string &text, std::size_t maxBytes);
