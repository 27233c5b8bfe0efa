// Names and references in type information.
#include "comruntime/type_reader.h"
#include "platform/text.h"

namespace axlink2 {

std::optional<std::string> narrowName(BSTR name) {
    if (SysStringLen(name) == 0) return std::nullopt;
    return platform::toNarrow(platform::viewOf(name));
}

platform::ScopedBstr documentedName(ITypeInfo* typeInfo, MEMBERID member) {
    platform::ScopedBstr name;
    if (FAILED(askServer([&] {
            return typeInfo->GetDocumentation(member, name.put(), nullptr, nullptr, nullptr);
        })))
        (void)name.detach(); // an out-parameter of a failed call is not to be trusted
    return name;
}

std::optional<std::string> readName(ITypeInfo* typeInfo, MEMBERID member, IDispatch* server) {
    const platform::ScopedBstr name = documentedName(typeInfo, member);
    std::optional<std::string> text = narrowName(name.get());
    if (!text || text->front() == '_') return std::nullopt;
    if (server) {
        LPOLESTR wide = name.get();
        DISPID ignored = DISPID_UNKNOWN; // the type library's own id stays the key
        if (FAILED(askServer([&] {
                return server->GetIDsOfNames(IID_NULL, &wide, 1, LOCALE_SYSTEM_DEFAULT, &ignored);
            })))
            return std::nullopt;
    }
    return text;
}

ServerPtr<ITypeInfo> typeInfoOf(IDispatch* server) {
    UINT count = 0;
    if (!server || FAILED(askPatiently([&] { return server->GetTypeInfoCount(&count); })) ||
        count != 1)
        return {};
    ITypeInfo* given = nullptr;
    const HRESULT hr = askPatiently([&] { return guardedGetTypeInfo(server, &given); });
    return ServerPtr<ITypeInfo>::adopt(SUCCEEDED(hr) ? given : nullptr);
}

ServerPtr<ITypeInfo> referencedType(ITypeInfo* owner, HREFTYPE reference) {
    return obtain<ITypeInfo>(
        [&](ITypeInfo** out) { return owner->GetRefTypeInfo(reference, out); });
}

} // namespace axlink2
