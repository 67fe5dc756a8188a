#include "imaging/code_file_name.h"

#include <algorithm>

CodeFileName codeFileName(const std::string &text, std::size_t maxBytes)
{
    std::string name = text;
    for (char &c : name) {
        if (c == '/' || c == '\0')
            c = '_';
    }
    name.erase(0, std::min(name.find_first_not_of('.'), name.size()));
    if (name.size() > maxBytes) {
        size_t cut = maxBytes;
        while (cut > 0 && (static_cast<unsigned char>(name[cut]) & 0xC0) == 0x80)
            --cut;
        name.resize(cut);
    }
    return {name, name != text};
}
