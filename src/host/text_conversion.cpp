// Conversion between narrow, wide and 16-bit text, and between upper and lower case.
#include "host/text.h"
#include "platform/text.h"

namespace hsys::i18n {

std::string to_string(std::u16string_view text) { return platform::utf8FromUtf16(text); }

platform::OleString to_wstring(std::u16string_view text) { return platform::toOle(text); }

std::u16string to_ustring(std::string_view text) { return platform::utf16FromUtf8(text); }

std::u16string to_ustring(const platform::OleString& text) { return platform::toUtf16(text); }

std::u16string to_ustring(const OLECHAR* text) {
    return text ? platform::toUtf16(platform::OleView(text)) : std::u16string();
}

namespace detail {
namespace {

// Simple case mappings of Latin-1, Latin Extended-A, Greek and Cyrillic letters, whatever the
// process's locale is. Letters whose other case takes two units stay as they are.
char16_t lower(char16_t c) {
    if ((c >= u'A' && c <= u'Z') || (c >= 0xC0 && c <= 0xDE && c != 0xD7) ||
        (c >= 0x391 && c <= 0x3A9 && c != 0x3A2) || (c >= 0x410 && c <= 0x42F))
        return static_cast<char16_t>(c + 0x20);
    if (c >= 0x400 && c <= 0x40F) return static_cast<char16_t>(c + 0x50);
    const bool evenUpper = (c >= 0x100 && c <= 0x137 && c != 0x130 && c != 0x131) ||
                           (c >= 0x14A && c <= 0x177) || (c >= 0x460 && c <= 0x481);
    const bool oddUpper = (c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E);
    if (evenUpper) return static_cast<char16_t>(c | 1);
    if (oddUpper) return static_cast<char16_t>(c + (c & 1));
    return c == 0x178 ? char16_t{0xFF} : c;
}

char16_t upper(char16_t c) {
    if ((c >= u'a' && c <= u'z') || (c >= 0xE0 && c <= 0xFE && c != 0xF7) ||
        (c >= 0x3B1 && c <= 0x3C9 && c != 0x3C2) || (c >= 0x430 && c <= 0x44F))
        return static_cast<char16_t>(c - 0x20);
    if (c >= 0x450 && c <= 0x45F) return static_cast<char16_t>(c - 0x50);
    if (c == 0xFF) return 0x178;
    // In the ranges of pairs the lower letter follows the upper one.
    return c > 0x100 && c < 0x500 && lower(static_cast<char16_t>(c - 1)) == c && lower(c) == c &&
                   c != 0x131
               ? static_cast<char16_t>(c - 1)
               : c;
}

} // namespace

std::size_t transform(char16_t* destination, std::size_t capacity, const char16_t* source,
                      std::size_t length, bool toLower) {
    for (std::size_t i = 0; i < length && i < capacity; ++i)
        destination[i] = toLower ? lower(source[i]) : upper(source[i]);
    return length;
}

} // namespace detail
} // namespace hsys::i18n
