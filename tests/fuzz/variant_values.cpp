// Drawing VARIANTs and SAFEARRAYs.
#include "fuzz/variant_values.h"

#include <algorithm>
#include <cstdlib>
#include <limits>

namespace fuzz {
namespace {

constexpr unsigned mostVariants = 400;
constexpr unsigned deepest = 6;
constexpr std::size_t mostElements = 300;

constexpr std::array<VARTYPE, 18> numbers = {VT_I2,   VT_I4,    VT_R4,  VT_R8,   VT_CY,   VT_DATE,
                                             VT_BOOL, VT_ERROR, VT_I1,  VT_UI1,  VT_UI2,  VT_UI4,
                                             VT_I8,   VT_UI8,   VT_INT, VT_UINT, VT_NULL, VT_EMPTY};

constexpr std::array<VARTYPE, 20> elementKinds = {
    VT_I2,      VT_I4,      VT_R4,      VT_R8,   VT_CY,       VT_DATE,   VT_BOOL,
    VT_ERROR,   VT_I1,      VT_UI1,     VT_UI2,  VT_UI4,      VT_I8,     VT_UI8,
    VT_DECIMAL, VT_VARIANT, VT_VARIANT, VT_BSTR, VT_DISPATCH, VT_UNKNOWN};

constexpr std::array<LONG, 6> lowerBounds = {
    0, 1, -1, std::numeric_limits<LONG>::min(), std::numeric_limits<LONG>::max(), 7};

BSTR drawBstr(ByteSource& source) {
    switch (source.upTo(3)) {
    case 0:
        return nullptr;
    case 1: { // of a length that is no whole number of units
        const std::string_view bytes = source.text(20);
        return SysAllocStringByteLen(bytes.data(), static_cast<UINT>(bytes.size()));
    }
    default: {
        const platform::OleString text = platform::toOle(source.wideText(20));
        return SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    }
    }
}

} // namespace

VariantWorld::VariantWorld(ByteSource& source, MakeObject makeObject)
    : source_(source), makeObject_(std::move(makeObject)), left_(mostVariants) {}

VariantWorld::~VariantWorld() {
    for (SAFEARRAY* array : lyingArrays_) {
        std::free(array->pvData);
        array->pvData = nullptr;
        array->cLocks = 0;
        array->fFeatures = 0;
        SafeArrayDestroyDescriptor(array);
    }
    for (VARIANT& cell : cells_)
        VariantClear(&cell);
}

void VariantWorld::fill(VARIANT& v, unsigned depth) {
    v = {};
    if (left_ == 0) return;
    --left_;
    switch (source_.upTo(11)) {
    case 0:
    case 1:
    case 2:
        v.vt = source_.pick(numbers);
        v.llVal = source_.number<LONGLONG>();
        break;
    case 3:
        v.decVal = source_.number<DECIMAL>();
        v.vt = VT_DECIMAL;
        break;
    case 4:
        v.bstrVal = drawBstr(source_);
        v.vt = VT_BSTR;
        break;
    case 5:
        v.pdispVal = makeObject_();
        v.vt = source_.oneIn(2) ? VT_UNKNOWN : VT_DISPATCH;
        break;
    case 6:
        v.vt = static_cast<VARTYPE>(VT_ARRAY | source_.pick(elementKinds)); // of no array
        break;
    case 7:
        v.vt = source_.number<VARTYPE>(); // any kind at all, of nothing
        break;
    case 8:
    case 9:
        refer(v, depth);
        break;
    default:
        if (depth < deepest) fillArray(v, depth);
    }
}

void VariantWorld::fillArray(VARIANT& v, unsigned depth) {
    const VARTYPE kind = source_.pick(elementKinds);
    SAFEARRAYBOUND bounds[40] = {};
    const UINT dims = source_.oneIn(16) ? 40 : 1 + source_.upTo(2);
    std::size_t count = 1;
    for (UINT d = 0; d < dims; ++d) {
        const ULONG extent = dims == 40 ? 1 : source_.upTo(4);
        bounds[d] = {count * extent > mostElements ? 1 : extent, source_.pick(lowerBounds)};
        count *= bounds[d].cElements;
    }
    SAFEARRAY* const array = SafeArrayCreate(kind, dims, bounds);
    if (!array) return;
    v.parray = array;
    v.vt = static_cast<VARTYPE>(VT_ARRAY | kind);
    for (std::size_t i = 0; i < count; ++i) {
        if (kind == VT_VARIANT)
            fill(static_cast<VARIANT*>(array->pvData)[i], depth + 1);
        else if (kind == VT_BSTR)
            static_cast<BSTR*>(array->pvData)[i] = drawBstr(source_);
        else if (kind == VT_DISPATCH || kind == VT_UNKNOWN)
            static_cast<IDispatch**>(array->pvData)[i] = makeObject_();
        else if (array->cbElements <= 8)
            std::memcpy(static_cast<char*>(array->pvData) + i * array->cbElements,
                        std::array{source_.number<LONGLONG>()}.data(), array->cbElements);
    }
    // What the VARIANT says of its elements need not be what the array says.
    if (kind != VT_VARIANT && source_.oneIn(8))
        v.vt = static_cast<VARTYPE>(VT_ARRAY | source_.pick(elementKinds));
}

// The memory behind it is as large as it says, and zero.
SAFEARRAY* VariantWorld::newLyingArray() {
    constexpr std::array<ULONG, 9> sizes = {0, 1, 2, 4, 8, 16, 24, 25, 0xFFFFFFFF};
    constexpr std::array<ULONG, 8> extents = {0, 1, 2, 3, 0x7FFFFFFF, 0x80000000, 0xFFFFFFFF, 64};
    constexpr std::array<ULONG, 3> locks = {0, 1, 0xFFFF};
    SAFEARRAY* array = nullptr;
    const UINT dims = 1 + source_.upTo(2);
    if (FAILED(SafeArrayAllocDescriptorEx(source_.pick(elementKinds), dims, &array)))
        return nullptr;
    lyingArrays_.push_back(array);
    array->fFeatures = source_.number<USHORT>();
    array->cbElements = source_.pick(sizes);
    array->cLocks = source_.pick(locks);
    std::size_t bytes = array->cbElements;
    for (UINT d = 0; d < dims; ++d) {
        array->rgsabound[d] = {source_.pick(extents), source_.pick(lowerBounds)};
        if (__builtin_mul_overflow(bytes, array->rgsabound[d].cElements, &bytes))
            bytes = std::numeric_limits<std::size_t>::max();
    }
    if (bytes <= 0x10000 && !source_.oneIn(4)) array->pvData = std::calloc(1, bytes);
    if (source_.oneIn(16)) array->cDims = 0;
    return array;
}

VARIANT& VariantWorld::hostile() {
    VARIANT& v = hostile_.emplace_back();
    if (SAFEARRAY* const array = newLyingArray()) {
        v.parray = array;
        v.vt = static_cast<VARTYPE>(VT_ARRAY | source_.pick(elementKinds));
    }
    return v;
}

void VariantWorld::refer(VARIANT& v, unsigned depth) {
    v.vt = VT_BYREF | VT_VARIANT;
    switch (source_.upTo(4)) {
    case 0: // one that there is already, perhaps the one that this stands in
        if (!cells_.empty()) v.pvarVal = &cells_[source_.byte() % cells_.size()];
        break;
    case 1:
        v.pvarVal = &hostile();
        break;
    case 2: {
        VARIANT& lying = hostile();
        v.vt = static_cast<VARTYPE>(lying.vt | VT_BYREF);
        v.pparray = &lying.parray;
        break;
    }
    default: {
        VARIANT& cell = cells_.emplace_back();
        const bool isPlain = source_.oneIn(2);
        // Where it can refer to itself while it is made.
        if (depth < deepest) fill(cell, depth + 1);
        v.pvarVal = &cell;
        if (!isPlain || (cell.vt & VT_BYREF)) break;
        v.vt = static_cast<VARTYPE>(cell.vt | VT_BYREF);
        v.byref = cell.vt == VT_DECIMAL ? static_cast<void*>(&cell) : &cell.byref;
    }
    }
}

} // namespace fuzz
