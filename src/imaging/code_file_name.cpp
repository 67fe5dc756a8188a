#include "imaging/code_file_name.h"

#include <algorithm>

namespace {

// Bytes of the control character or line end at `at`, 0 when there is none.
std::size_t controlAt(const std::string &text, std::size_t at)
{
    const auto byte = [&text](std::size_t i) {
        return i < text.size() ? static_cast<unsigned char>(text[i]) : 0u;
    };
    if (byte(at) == '\r' && byte(at + 1) == '\n')
        return 2;
    if (byte(at) < 0x20 || byte(at) == 0x7F)
        return 1;
    if (byte(at) == 0xC2 && byte(at + 1) >= 0x80 && byte(at + 1) < 0xA0)
        return 2; // U+0080 to U+009F
    const bool separates =
        byte(at) == 0xE2 && byte(at + 1) == 0x80 && (byte(at + 2) == 0xA8 || byte(at + 2) == 0xA9);
    return separates ? 3 : 0; // of lines or paragraphs, U+2028 and U+2029
}

} // namespace

CodeFileName codeFileName(const std::string &text, std::size_t maxBytes)
{
    std::string name;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t control = controlAt(text, at);
        name += control > 0 ? ' ' : text[at] == '/' ? '_' : text[at];
        at += std::max<std::size_t>(control, 1);
    }
    name.erase(0, std::min(name.find_first_not_of('.'), name.size()));
    if (name.size() > maxBytes) {
        std::size_t cut = maxBytes;
        while (cut > 0 && (static_cast<unsigned char>(name[cut]) & 0xC0) == 0x80)
            --cut;
        name.resize(cut);
    }
    if (name.find_first_not_of(' ') == std::string::npos)
        name.clear();
    return {name, name != text};
}
