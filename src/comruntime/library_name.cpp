// The choice among the registered versions of a type library.
#include "comruntime/library_name.h"

#include "platform/registry_key.h"

#include <boost/format.hpp>

#include <algorithm>
#include <cstdlib>
#include <string>

namespace axlink2 {
namespace {

using platform::OleString;
using platform::OleView;
using platform::RegistryKey;

struct Version {
    std::int64_t major = 0;
    std::int64_t minor = 0;

    friend bool operator==(const Version&, const Version&) = default;
};

bool isHexadecimal(OleView text) {
    return std::all_of(text.begin(), text.end(), [](OLECHAR c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
    });
}

// Raises std::invalid_argument and std::out_of_range.
int parsed(OleView text) { return std::stoi(platform::toNarrow(text), nullptr, 16); }

// The version that a subkey's name says; zeros for a name that says none.
Version versionOf(OleView subkey) {
    const std::string name = platform::toNarrow(subkey);
    const std::size_t point = name.find('.');
    Version version{.major = std::strtol(name.c_str(), nullptr, 16)};
    if (point != std::string::npos)
        version.minor = std::strtol(name.c_str() + point + 1, nullptr, 16);
    return version;
}

bool isNewer(const Version& candidate, const Version& best) {
    return candidate.major > best.major ||
           (candidate.major == best.major && candidate.minor >= best.minor);
}

Version chooseVersion(const RegistryKey& library, const Version& requested) {
    const bool wantsExact = requested.major > 0 || requested.minor > 0;
    Version best;
    OLECHAR name[128];
    for (DWORD index = 0;; ++index) {
        DWORD size = std::size(name);
        const LONG status =
            RegEnumKeyExW(library.get(), index, name, &size, nullptr, nullptr, nullptr, nullptr);
        if (status == ERROR_MORE_DATA) continue; // no version has a name of that length
        if (status != ERROR_SUCCESS) return best;
        const Version candidate = versionOf(OleView(name, size));
        if (candidate.major <= 0 && candidate.minor <= 0) continue;
        if (wantsExact && candidate == requested) return candidate;
        if (!wantsExact && isNewer(candidate, best)) best = candidate;
    }
}

} // namespace

_bstr_t typeLibraryName(OleView libraryId, OleView majorText, OleView minorText,
                        std::uint32_t* outMajor, std::uint32_t* outMinor) {
    const _bstr_t nothing("");
    if (libraryId.empty()) return nothing;
    const RegistryKey library =
        platform::openKey(HKEY_CLASSES_ROOT, OLESTR("TypeLib\\") + OleString(libraryId));
    if (!library) return nothing;

    OleString subkey = OleString(majorText) + OLESTR(".") + OleString(minorText);
    if (isHexadecimal(majorText) && isHexadecimal(minorText)) {
        const Version chosen = chooseVersion(library, {parsed(majorText), parsed(minorText)});
        if (outMajor) *outMajor = static_cast<std::uint32_t>(chosen.major);
        if (outMinor) *outMinor = static_cast<std::uint32_t>(chosen.minor);
        subkey = platform::toOle((boost::format("%x.%x") % chosen.major % chosen.minor).str());
    }
    const RegistryKey version = platform::openKey(library.get(), subkey);
    if (!version) return nothing;
    const auto name = readText(version, OLESTR(""));
    return name ? _bstr_t(name->c_str()) : nothing;
}

} // namespace axlink2
