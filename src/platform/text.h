// Text of COM and conversions between UTF-8, OLECHAR and UTF-16. Invalid input becomes U+FFFD.
#pragma once

#include "platform/com.h"

#include <boost/locale/encoding_utf.hpp>

#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>

namespace platform {

using OleString = std::basic_string<OLECHAR>;
using OleView = std::basic_string_view<OLECHAR>;

// Text of another encoding; each broken sequence becomes one U+FFFD for every unit it can't use.
template <class Out, class In>
std::basic_string<Out> transcode(std::basic_string_view<In> text) {
    namespace utf = boost::locale::utf;
    std::basic_string<Out> result;
    result.reserve(text.size());
    const In* const end = text.data() + text.size();
    for (const In* at = text.data(); at != end;) {
        const In* next = at;
        utf::code_point point = utf::utf_traits<In>::decode(next, end);
        if (point == utf::illegal || point == utf::incomplete) {
            point = 0xFFFD;
            next = at + 1;
        }
        utf::utf_traits<Out>::encode(point, std::back_inserter(result));
        at = next;
    }
    return result;
}

// UTF-8, whatever the thread's code page, from and to COM's text.
inline std::string toNarrow(OleView text) { return transcode<char>(text); }
inline OleString toOle(std::string_view text) { return transcode<OLECHAR>(text); }

// COM's text from and to UTF-16, unit by unit: what is no valid pair stays as it is.
inline OleString toOle(std::u16string_view text) { return OleString(text.begin(), text.end()); }
inline std::u16string toUtf16(OleView text) { return std::u16string(text.begin(), text.end()); }

// UTF-8 from and to UTF-16.
inline std::string utf8FromUtf16(std::u16string_view text) { return transcode<char>(text); }
inline std::u16string utf16FromUtf8(std::string_view text) { return transcode<char16_t>(text); }

// What a BSTR holds, embedded nulls included; null is empty text. Valid as long as the BSTR.
inline OleView viewOf(BSTR text) { return text ? OleView(text, SysStringLen(text)) : OleView(); }

} // namespace platform
