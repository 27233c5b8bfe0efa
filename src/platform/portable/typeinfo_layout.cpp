// LayOut: member ids that were left open, places in method tables, offsets in records.
#include "platform/element_size.h"
#include "platform/portable/typeinfo_library.h"
#include "platform/typeinfo_holders.h"

#include <algorithm>

namespace platform {
namespace {

struct Extent {
    ULONG size = 0;
    ULONG alignment = 1;
};

constexpr Extent plain(ULONG size) { return {size, size}; }

// What a value of the type takes up in a record of this system; size 0 for a type without values.
Extent extentOf(const TypeLibrary& library, const TYPEDESC& type) {
    switch (type.vt) {
    case VT_HRESULT:
        return plain(sizeof(HRESULT));
    case VT_VARIANT:
        return {sizeof(VARIANT), alignof(VARIANT)};
    case VT_DECIMAL:
        return {sizeof(DECIMAL), alignof(DECIMAL)};
    case VT_EMPTY:
    case VT_NULL:
    case VT_VOID:
        return {};
    case VT_CARRAY: {
        Extent extent = extentOf(library, type.lpadesc->tdescElem);
        for (USHORT i = 0; i < type.lpadesc->cDims; ++i) {
            extent.size *= type.lpadesc->rgbounds[i].cElements;
        }
        return extent;
    }
    case VT_USERDEFINED: {
        const ComPtr<ITypeInfo> referred = library.resolve(type.hreftype);
        const TypeAttrHolder attr(referred.get(), &ITypeInfo::GetTypeAttr);
        return attr ? Extent{attr->cbSizeInstance, std::max<ULONG>(attr->cbAlignment, 1)}
                    : Extent{};
    }
    default: {
        const ULONG size = elementSize(type.vt);
        return plain(size ? size : sizeof(void*));
    }
    }
}

ULONG roundUp(ULONG offset, ULONG alignment) {
    return (offset + alignment - 1) / alignment * alignment;
}

// How many interfaces the type extends, one above the other.
DWORD depthOf(ComPtr<ITypeInfo> type) {
    DWORD depth = 0;
    HREFTYPE next = 0;
    while (type && SUCCEEDED(type->GetRefTypeOfImplType(0, &next))) {
        ComPtr<ITypeInfo> base;
        if (FAILED(type->GetRefTypeInfo(next, base.put()))) {
            break;
        }
        type = std::move(base);
        ++depth;
    }
    return depth;
}

// Numbers the members that were added without an id.
template <class Members>
void numberMembers(Members& members, DWORD first) {
    for (std::size_t i = 0; i < members.size(); ++i) {
        if (members[i].desc->memid == MEMBERID_NIL) {
            members[i].desc->memid = static_cast<MEMBERID>(first + i);
        }
    }
}

} // namespace

HRESULT TypeDescription::layOutMethods() {
    DWORD depth = 0;
    if (isInterface()) {
        depth = depthOf(ComPtr<ITypeInfo>::borrow(this));
    }
    numberMembers(functions_, 0x60000000u + (depth << 16));
    if (kind() == TKIND_DISPATCH) {
        inherited_.clear();
        const ComPtr<ITypeInfo> extended = base();
        return extended ? inheritFrom(extended.get()) : S_OK;
    }
    if (kind() != TKIND_INTERFACE) {
        return S_OK;
    }
    std::size_t offset = 0;
    if (const ComPtr<ITypeInfo> extended = base()) {
        const TypeAttrHolder attr(extended.get(), &ITypeInfo::GetTypeAttr);
        if (!attr) {
            return TYPE_E_UNDEFINEDTYPE;
        }
        offset = attr->cbSizeVft;
    }
    for (Function& function : functions_) {
        function.desc->oVft = static_cast<SHORT>(offset);
        offset += sizeof(void*);
    }
    attr_.cbSizeVft = static_cast<WORD>(offset);
    return offset <= 0x7FFF ? S_OK : TYPE_E_SIZETOOBIG;
}

HRESULT TypeDescription::layOutFields() {
    ULONG end = 0;
    ULONG alignment = 1;
    for (Variable& variable : variables_) {
        const Extent extent = extentOf(library_, variable.desc->elemdescVar.tdesc);
        if (extent.size == 0) {
            return TYPE_E_UNDEFINEDTYPE;
        }
        const ULONG offset = kind() == TKIND_UNION ? 0 : roundUp(end, extent.alignment);
        variable.desc->oInst = offset;
        end = std::max(end, offset + extent.size);
        alignment = std::max(alignment, extent.alignment);
    }
    attr_.cbAlignment = static_cast<WORD>(alignment);
    attr_.cbSizeInstance = roundUp(end, alignment);
    return S_OK;
}

HRESULT TypeDescription::LayOut() {
    numberMembers(variables_, 0x40000000u);
    if (kind() == TKIND_RECORD || kind() == TKIND_UNION) {
        return layOutFields();
    }
    if (kind() == TKIND_ALIAS) {
        const Extent extent = extentOf(library_, attr_.tdescAlias);
        attr_.cbSizeInstance = extent.size;
        attr_.cbAlignment = static_cast<WORD>(extent.alignment);
        return S_OK;
    }
    return answer([&] { return layOutMethods(); });
}

} // namespace platform
