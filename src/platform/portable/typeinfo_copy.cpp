// Copying descriptions with what their pointers lead to.
#include "platform/portable/typeinfo_copy.h"

#include "platform/portable/variant.h"

#include <algorithm>
#include <stdexcept>

namespace platform {
namespace {

ELEMDESC copyElement(DescMemory& memory, const ELEMDESC& from) {
    ELEMDESC to{};
    to.tdesc = memory.copyType(from.tdesc);
    to.paramdesc.wParamFlags = from.paramdesc.wParamFlags;
    if ((from.paramdesc.wParamFlags & PARAMFLAG_FHASDEFAULT) != 0) {
        if (!from.paramdesc.pparamdescex) {
            throw std::invalid_argument("a parameter's default value is missing");
        }
        // The structure holds a VARIANT, which the memory clears at its end.
        auto* extra = memory.make<PARAMDESCEX>();
        extra->cBytes = sizeof(PARAMDESCEX);
        extra->varDefaultValue = *memory.copyVariant(from.paramdesc.pparamdescex->varDefaultValue);
        to.paramdesc.pparamdescex = extra;
    }
    return to;
}

} // namespace

std::atomic<int> descriptionsOut{0};

int outstandingTypeDescriptions() { return descriptionsOut; }

DescMemory::~DescMemory() {
    for (VARIANT* value : variants_) {
        VariantClear(value);
    }
}

VARIANT* DescMemory::copyVariant(const VARIANT& value) {
    auto* copy = make<VARIANT>();
    variants_.push_back(copy);
    const HRESULT hr = VariantCopy(copy, &value);
    if (hr == E_OUTOFMEMORY) {
        throw std::bad_alloc();
    }
    if (FAILED(hr)) {
        throw std::invalid_argument("a value cannot be copied");
    }
    return copy;
}

TYPEDESC DescMemory::copyType(const TYPEDESC& from) {
    TYPEDESC to{};
    to.vt = from.vt;
    if (from.vt == VT_PTR || from.vt == VT_SAFEARRAY) {
        if (!from.lptdesc) {
            throw std::invalid_argument("a type points to no other");
        }
        to.lptdesc = make<TYPEDESC>();
        *to.lptdesc = copyType(*from.lptdesc);
    } else if (from.vt == VT_CARRAY) {
        if (!from.lpadesc || from.lpadesc->cDims == 0) {
            throw std::invalid_argument("an array type has no shape");
        }
        const ARRAYDESC& array = *from.lpadesc;
        // The bounds go on behind the structure, which has room for the first of them.
        const std::size_t extra = (array.cDims - 1u) * sizeof(SAFEARRAYBOUND);
        const std::size_t count = (sizeof(ARRAYDESC) + extra + 7) / 8;
        auto* copy = reinterpret_cast<ARRAYDESC*>(make<std::uint64_t>(count));
        copy->tdescElem = copyType(array.tdescElem);
        copy->cDims = array.cDims;
        std::copy_n(array.rgbounds, array.cDims, copy->rgbounds);
        to.lpadesc = copy;
    } else if (from.vt == VT_USERDEFINED) {
        to.hreftype = from.hreftype;
    }
    return to;
}

void copyDesc(DescMemory& memory, TYPEATTR& to, const TYPEATTR& from) {
    to = from;
    to.tdescAlias = memory.copyType(from.tdescAlias);
}

void copyDesc(DescMemory& memory, FUNCDESC& to, const FUNCDESC& from) {
    to = from;
    to.lprgscode = nullptr;
    to.lprgelemdescParam = nullptr;
    if (from.cScodes > 0) {
        const auto count = static_cast<std::size_t>(from.cScodes);
        to.lprgscode = memory.make<SCODE>(count);
        std::copy_n(from.lprgscode, count, to.lprgscode);
    }
    if (from.cParams > 0) {
        const auto count = static_cast<std::size_t>(from.cParams);
        to.lprgelemdescParam = memory.make<ELEMDESC>(count);
        for (std::size_t i = 0; i < count; ++i) {
            to.lprgelemdescParam[i] = copyElement(memory, from.lprgelemdescParam[i]);
        }
    }
    to.elemdescFunc = copyElement(memory, from.elemdescFunc);
}

void copyDesc(DescMemory& memory, VARDESC& to, const VARDESC& from) {
    to = from;
    to.lpstrSchema = nullptr;
    to.elemdescVar = copyElement(memory, from.elemdescVar);
    if (from.varkind == VAR_CONST) {
        if (!from.lpvarValue) {
            throw std::invalid_argument("a constant without its value");
        }
        to.lpvarValue = memory.copyVariant(*from.lpvarValue);
    }
}

void copyDesc(DescMemory&, TLIBATTR& to, const TLIBATTR& from) { to = from; }

} // namespace platform
