// Folding names.
#include "builtins/fold_name.h"

namespace axlink2 {

std::optional<std::string> tryFoldName(std::string_view text) {
    constexpr std::size_t longest = 1024;
    constexpr unsigned char lastAscii = 127;
    std::string folded(text.substr(0, longest));
    for (char& c : folded) {
        if (static_cast<unsigned char>(c) > lastAscii) return std::nullopt;
        if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    }
    return folded;
}

std::string foldName(std::string_view text) {
    auto folded = tryFoldName(text);
    if (!folded) throw hbase::ustring::CtypeInvalidCharacter("Invalid character error.");
    return *std::move(folded);
}

} // namespace axlink2
