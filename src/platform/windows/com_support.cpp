// The conversions behind _bstr_t that the SDK's headers declare and no library here brings along.
// Narrow text is UTF-8, as everywhere in this program.
#include "platform/text.h"

#include <algorithm>
#include <comutil.h>

namespace _com_util {

BSTR WINAPI ConvertStringToBSTR(const char* text) {
    if (!text) return nullptr;
    const platform::OleString wide = platform::toOle(std::string_view(text));
    BSTR result = SysAllocStringLen(wide.data(), static_cast<UINT>(wide.size()));
    if (!result) _com_issue_error(E_OUTOFMEMORY);
    return result;
}

char* WINAPI ConvertBSTRToString(BSTR text) {
    if (!text) return nullptr;
    const std::string narrow = platform::toNarrow(platform::viewOf(text));
    char* result = new char[narrow.size() + 1];
    *std::copy(narrow.begin(), narrow.end(), result) = '\0';
    return result;
}

} // namespace _com_util
