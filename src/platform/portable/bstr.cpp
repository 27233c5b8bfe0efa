// BSTR allocation: eight bytes in front of the text, the last four of them its length in bytes.
#include "platform/portable/bstr.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

struct Header {
    std::uint32_t padding; // keeps the text on an eight-byte boundary
    std::uint32_t bytes;
};
static_assert(sizeof(Header) == 8);

constexpr std::size_t maxBytes = 0x7FFFFFE0;

Header* headerOf(BSTR text) { return reinterpret_cast<Header*>(text) - 1; }

// Room for `bytes` and a null unit, which is aligned only behind an even count: hence three zeros.
BSTR allocate(std::size_t bytes) {
    if (bytes > maxBytes) return nullptr;
    auto* header = static_cast<Header*>(std::malloc(sizeof(Header) + bytes + 3));
    if (!header) return nullptr;
    header->bytes = static_cast<std::uint32_t>(bytes);
    auto* content = reinterpret_cast<char*>(header + 1);
    std::memset(content + bytes, 0, 3);
    return reinterpret_cast<BSTR>(content);
}

BSTR allocateCopy(const void* source, std::size_t bytes) {
    BSTR text = allocate(bytes);
    if (text && source && bytes) std::memcpy(text, source, bytes);
    return text;
}

// The old text goes last: the new content may be part of it.
INT replace(BSTR* bstr, BSTR replacement) {
    if (!replacement) return FALSE;
    SysFreeString(*bstr);
    *bstr = replacement;
    return TRUE;
}

} // namespace

BSTR SysAllocStringLen(const OLECHAR* text, UINT units) {
    return allocateCopy(text, std::size_t{units} * sizeof(OLECHAR));
}

BSTR SysAllocString(const OLECHAR* text) {
    if (!text) return nullptr;
    return allocateCopy(text, std::char_traits<OLECHAR>::length(text) * sizeof(OLECHAR));
}

BSTR SysAllocStringByteLen(LPCSTR bytes, UINT count) { return allocateCopy(bytes, count); }

INT SysReAllocString(BSTR* bstr, const OLECHAR* text) {
    if (!bstr || !text) return FALSE;
    return replace(bstr, SysAllocString(text));
}

INT SysReAllocStringLen(BSTR* bstr, const OLECHAR* text, UINT units) {
    if (!bstr) return FALSE;
    BSTR replacement = SysAllocStringLen(text, units);
    if (replacement && !text) {
        const std::size_t bytes = SysStringByteLen(replacement);
        const std::size_t kept = std::min<std::size_t>(bytes, SysStringByteLen(*bstr));
        if (kept) std::memcpy(replacement, *bstr, kept);
        std::memset(reinterpret_cast<char*>(replacement) + kept, 0, bytes - kept);
    }
    return replace(bstr, replacement);
}

void SysFreeString(BSTR bstr) {
    if (bstr) std::free(headerOf(bstr));
}

UINT SysStringByteLen(BSTR bstr) { return bstr ? headerOf(bstr)->bytes : 0; }

UINT SysStringLen(BSTR bstr) { return SysStringByteLen(bstr) / UINT{sizeof(OLECHAR)}; }
