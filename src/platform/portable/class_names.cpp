// GUIDs and ProgIDs as text, and the way from one to the other through the registry.
#include "platform/answer.h"
#include "platform/fold_case.h"
#include "platform/portable/activation.h"
#include "platform/portable/class_registration.h"
#include "platform/portable/registry.h"
#include "platform/portable/system.h"
#include "platform/registry_key.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>
#include <sys/random.h>

namespace {

using platform::OleString;
using platform::OleView;

// The shape of a GUID's text: x is a hexadecimal digit.
constexpr OleView guidShape = OLESTR("{xxxxxxxx-xxxx-xxxx-xxxx-xxxxxxxxxxxx}");

// The bytes of a GUID in the order in which its text has them.
constexpr std::size_t textOrder[] = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};

int digitOf(OLECHAR unit) {
    if (unit >= u'0' && unit <= u'9') {
        return unit - u'0';
    }
    const OLECHAR upper = platform::foldCase(unit);
    return upper >= u'A' && upper <= u'F' ? upper - u'A' + 10 : -1;
}

std::optional<GUID> parseGuid(OleView text) {
    if (text.size() != guidShape.size()) {
        return std::nullopt;
    }
    BYTE bytes[16] = {};
    std::size_t digits = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (guidShape[i] != u'x') {
            if (text[i] != guidShape[i]) {
                return std::nullopt;
            }
            continue;
        }
        const int digit = digitOf(text[i]);
        if (digit < 0) {
            return std::nullopt;
        }
        BYTE& byte = bytes[textOrder[digits / 2]];
        byte = static_cast<BYTE>(byte << 4 | digit);
        ++digits;
    }
    GUID guid;
    std::memcpy(&guid, bytes, sizeof guid);
    return guid;
}

// Not ended by a zero.
using GuidText = std::array<OLECHAR, guidShape.size()>;

GuidText guidText(REFGUID guid) {
    BYTE bytes[16];
    std::memcpy(bytes, &guid, sizeof bytes);
    GuidText text;
    guidShape.copy(text.data(), text.size());
    std::size_t digits = 0;
    for (OLECHAR& unit : text) {
        if (unit == u'x') {
            const BYTE byte = bytes[textOrder[digits / 2]];
            const int digit = digits % 2 == 0 ? byte >> 4 : byte & 0xF;
            unit = static_cast<OLECHAR>(digit < 10 ? u'0' + digit : u'A' + digit - 10);
            ++digits;
        }
    }
    return text;
}

OleView asView(const GuidText& text) { return {text.data(), text.size()}; }

// A text for the caller to free with CoTaskMemFree.
HRESULT giveText(OleView text, LPOLESTR* result) {
    *result = static_cast<LPOLESTR>(CoTaskMemAlloc((text.size() + 1) * sizeof(OLECHAR)));
    if (!*result) {
        return E_OUTOFMEMORY;
    }
    text.copy(*result, text.size());
    (*result)[text.size()] = 0;
    return S_OK;
}

} // namespace

namespace platform {

std::optional<OleString> readClassText(OleView path) {
    const RegistryKey key = openKey(HKEY_CLASSES_ROOT, OleString(path));
    return key ? readText(key, nullptr) : std::nullopt;
}

OleString classKeyPath(REFCLSID clsid) {
    return OLESTR("CLSID\\") + OleString(asView(guidText(clsid)));
}

} // namespace platform

namespace {

// By the name's own class identifier, or by that of its current version.
HRESULT findClsid(OleView name, CLSID& clsid) {
    // A name with a backslash would reach into the keys below another one.
    if (name.empty() || name.find(u'\\') != OleView::npos) {
        return CO_E_CLASSSTRING;
    }
    std::optional<OleString> text = platform::readClassText(OleString(name) + OLESTR("\\CLSID"));
    if (!text) {
        const auto current = platform::readClassText(OleString(name) + OLESTR("\\CurVer"));
        if (current && !current->empty()) {
            text = platform::readClassText(*current + OLESTR("\\CLSID"));
        }
    }
    const std::optional<GUID> guid = text ? parseGuid(*text) : std::nullopt;
    if (!guid) {
        return CO_E_CLASSSTRING;
    }
    clsid = *guid;
    return S_OK;
}

} // namespace

extern "C" {

int StringFromGUID2(REFGUID guid, LPOLESTR text, int size) {
    const int needed = static_cast<int>(guidShape.size()) + 1;
    if (!text || size < needed) {
        return 0;
    }
    std::ranges::copy(guidText(guid), text);
    text[guidShape.size()] = 0;
    return needed;
}

HRESULT StringFromCLSID(REFCLSID clsid, LPOLESTR* text) {
    return text ? giveText(asView(guidText(clsid)), text) : E_INVALIDARG;
}

HRESULT CLSIDFromProgID(LPCOLESTR progId, CLSID* clsid) {
    if (!progId || !clsid) {
        return E_INVALIDARG;
    }
    *clsid = CLSID_NULL;
    return platform::answer([&] { return findClsid(progId, *clsid); });
}

HRESULT CLSIDFromString(LPCOLESTR text, CLSID* clsid) {
    if (!clsid) {
        return E_INVALIDARG;
    }
    *clsid = CLSID_NULL;
    if (!text) {
        return S_OK;
    }
    if (*text != u'{') {
        return CLSIDFromProgID(text, clsid);
    }
    const std::optional<GUID> guid = parseGuid(text);
    *clsid = guid.value_or(CLSID_NULL);
    return guid ? S_OK : CO_E_CLASSSTRING;
}

HRESULT IIDFromString(LPCOLESTR text, IID* iid) {
    if (!iid) {
        return E_INVALIDARG;
    }
    if (!text) {
        *iid = IID_NULL;
        return S_OK;
    }
    const OleView view(text);
    if (view.size() != guidShape.size()) {
        return E_INVALIDARG;
    }
    const std::optional<GUID> guid = parseGuid(view);
    *iid = guid.value_or(IID_NULL);
    return guid ? S_OK : CO_E_IIDSTRING;
}

HRESULT ProgIDFromCLSID(REFCLSID clsid, LPOLESTR* progId) {
    if (!progId) {
        return E_INVALIDARG;
    }
    *progId = nullptr;
    return platform::answer([&] {
        const auto text =
            platform::readClassText(platform::classKeyPath(clsid) + OLESTR("\\ProgID"));
        return text && !text->empty() ? giveText(*text, progId) : REGDB_E_CLASSNOTREG;
    });
}

HRESULT CoCreateGuid(GUID* guid) {
    if (!guid) {
        return E_INVALIDARG;
    }
    if (getrandom(guid, sizeof *guid, 0) != sizeof *guid) {
        return E_FAIL;
    }
    // Version 4 (random) of the common layout.
    guid->Data3 = static_cast<std::uint16_t>((guid->Data3 & 0x0FFF) | 0x4000);
    guid->Data4[0] = static_cast<std::uint8_t>((guid->Data4[0] & 0x3F) | 0x80);
    return S_OK;
}

void* CoTaskMemAlloc(SIZE_T size) { return std::malloc(size == 0 ? 1 : size); }

void CoTaskMemFree(void* block) { std::free(block); }
}
