// Names of interface classes, by the registry or after the IID.
#include "comruntime/library_name.h"
#include "conversion/wrapped_interface.h"
#include "host/text.h"
#include "platform/registry_key.h"
#include "platform/text.h"

#include <boost/algorithm/string/erase.hpp>
#include <boost/algorithm/string/replace.hpp>

#include <stdexcept>

namespace axlink2 {
namespace {

using platform::OleString;
using platform::OleView;
using platform::openKey;
using platform::RegistryKey;

OleString textOf(const _bstr_t& text) {
    return OleString(platform::viewOf(static_cast<OLECHAR*>(text)));
}

struct VersionText {
    OleString major = OLESTR("0");
    OleString minor = OLESTR("0");
};

// A version without a point gives neither part.
VersionText versionOf(const RegistryKey& key) {
    VersionText version;
    const auto value = readText(key, OLESTR("Version"));
    const std::size_t point = value ? value->find(OLECHAR{'.'}) : OleString::npos;
    if (point == OleString::npos) return version;
    if (point > 0) version.major = value->substr(0, point);
    if (point + 1 < value->size()) version.minor = value->substr(point + 1);
    return version;
}

} // namespace

_bstr_t interfaceDisplayName(const _bstr_t& iidText) {
    const _bstr_t nothing("");
    const RegistryKey key = openKey(HKEY_CLASSES_ROOT, OLESTR("Interface\\") + textOf(iidText));
    if (!key) return nothing;
    const auto interfaceName = readText(key, OLESTR(""));
    const RegistryKey libraryKey = openKey(key.get(), OLESTR("TypeLib"));
    if (!interfaceName || !libraryKey) return nothing;
    const auto libraryId = readText(libraryKey, OLESTR(""));
    if (!libraryId) return nothing;

    const VersionText version = versionOf(libraryKey);
    _bstr_t library;
    try {
        library = typeLibraryName(*libraryId, version.major, version.minor);
    } catch (const std::logic_error&) {
        return nothing; // a version that is no number of the size that versions have
    }
    if (library.length() == 0) return nothing;
    const OleString joined = textOf(library) + OLESTR("_") + *interfaceName;
    return sanitizeClassName(_bstr_t(joined.c_str()), true);
}

std::string interfaceClassName(const _bstr_t& key) {
    const _bstr_t displayName = interfaceDisplayName(key);
    return displayName.length() > 0 ? platform::toNarrow(textOf(displayName)) : nameAfterKey(key);
}

std::string nameAfterKey(const _bstr_t& key) {
    std::string name = platform::toNarrow(textOf(key));
    boost::algorithm::erase_first(name, "{");
    boost::algorithm::erase_first(name, "}");
    boost::algorithm::replace_all(name, "-", "_");
    return name;
}

_bstr_t sanitizeClassName(const _bstr_t& text, bool validate) {
    OleString name = textOf(text);
    constexpr OleView replaced = OLESTR(" ()[]{}:;+|^#");
    for (OLECHAR& unit : name)
        if (replaced.find(unit) != OleView::npos) unit = '_';
    if (validate && !hxIsValidVelName(hsys::i18n::to_ustring(name).c_str())) name.clear();
    return _bstr_t(name.c_str());
}

} // namespace axlink2
