// Values as text.
#include "support/values.h"

#include "host/embedding.h"
#include "host/text.h"

#include <boost/format.hpp>

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstring>

namespace axlink2::test {
namespace {

struct Kind {
    VARTYPE vt;
    const char* name;
    std::string (*payload)(const void* at);
};

template <class T>
T read(const void* at) {
    T value;
    std::memcpy(&value, at, sizeof value);
    return value;
}

template <class T>
std::string number(T value) {
    if constexpr (std::is_floating_point_v<T>)
        if (std::isnan(value)) return "nan"; // without a sign
    std::array<char, 32> text;
    return std::string(text.data(), std::to_chars(text.begin(), text.end(), value).ptr);
}

template <class T>
std::string numberAt(const void* at) {
    return number(read<T>(at));
}

std::string hexAt(const void* at) {
    return (boost::format("%08X") % static_cast<unsigned>(read<SCODE>(at))).str();
}

template <class Unit>
std::string quoted(const Unit* units, std::size_t count) {
    std::string result = "'";
    for (std::size_t i = 0; i < count; ++i) {
        if (units[i] >= ' ' && units[i] < 0x7F)
            result += static_cast<char>(units[i]);
        else
            result += (boost::format("\\%x") % static_cast<unsigned>(units[i])).str();
    }
    return result + "'";
}

std::string textAt(const void* at) {
    const BSTR bstr = read<BSTR>(at);
    return bstr ? quoted(bstr, SysStringLen(bstr)) : "null";
}

std::string pointerAt(const void* at) { return read<void*>(at) ? "object" : "null"; }

std::string variantAt(const void* at) {
    return "(" + described(*static_cast<const VARIANT*>(at)) + ")";
}

constexpr Kind kinds[] = {
    {VT_I2, "I2", numberAt<SHORT>},
    {VT_I4, "I4", numberAt<LONG>},
    {VT_R4, "R4", numberAt<float>},
    {VT_R8, "R8", numberAt<double>},
    {VT_CY, "CY", numberAt<LONGLONG>},
    {VT_DATE, "DATE", numberAt<double>},
    {VT_BSTR, "BSTR", textAt},
    {VT_DISPATCH, "DISPATCH", pointerAt},
    {VT_ERROR, "ERROR", hexAt},
    {VT_BOOL, "BOOL", numberAt<SHORT>},
    {VT_VARIANT, "VARIANT", variantAt},
    {VT_UNKNOWN, "UNKNOWN", pointerAt},
    {VT_I1, "I1", numberAt<signed char>},
    {VT_UI1, "UI1", numberAt<BYTE>},
    {VT_UI2, "UI2", numberAt<USHORT>},
    {VT_UI4, "UI4", numberAt<ULONG>},
    {VT_I8, "I8", numberAt<LONGLONG>},
    {VT_UI8, "UI8", numberAt<ULONGLONG>},
    {VT_INT, "INT", numberAt<INT>},
    {VT_UINT, "UINT", numberAt<UINT>},
};

const Kind* kindOf(VARTYPE vt) {
    for (const Kind& kind : kinds)
        if (kind.vt == vt) return &kind;
    return nullptr;
}

// The bounds in the caller's order: the descriptor has them the other way round.
std::string boundsOf(const SAFEARRAY& array) {
    std::string result;
    for (int i = array.cDims; i-- > 0;) {
        const SAFEARRAYBOUND& bound = array.rgsabound[i];
        if (!result.empty()) result += ",";
        if (bound.lLbound)
            result += number(bound.lLbound) + ".." +
                      number(bound.lLbound + static_cast<LONG>(bound.cElements) - 1);
        else
            result += number(bound.cElements);
    }
    return "[" + result + "]";
}

std::string describedArray(const Kind& kind, const SAFEARRAY* array) {
    if (!array) return std::string(kind.name) + "[] null";
    std::string result = kind.name + boundsOf(*array);
    std::size_t count = 1;
    for (int i = 0; i < array->cDims; ++i)
        count *= array->rgsabound[i].cElements;
    for (std::size_t i = 0; i < count; ++i)
        result +=
            " " + kind.payload(static_cast<std::byte*>(array->pvData) + i * array->cbElements);
    return result;
}

template <class T>
std::string numbersOf(const hxArray* array) {
    std::string result;
    const T* data = static_cast<const T*>(hxGetData(array));
    for (std::size_t i = 0; i < hxGetNumberOfElements(array); ++i)
        result += (i ? " " : "") + number(data[i]);
    return result;
}

struct NumericText {
    hxClassID id;
    std::string (*elements)(const hxArray* array);
};

constexpr NumericText numericTexts[] = {
    {hxLOGICAL_CLASS, numbersOf<BYTE>},     {hxDOUBLE_CLASS, numbersOf<double>},
    {hxSINGLE_CLASS, numbersOf<float>},     {hxINT8_CLASS, numbersOf<signed char>},
    {hxUINT8_CLASS, numbersOf<BYTE>},       {hxINT16_CLASS, numbersOf<SHORT>},
    {hxUINT16_CLASS, numbersOf<USHORT>},    {hxINT32_CLASS, numbersOf<LONG>},
    {hxUINT32_CLASS, numbersOf<ULONG>},     {hxINT64_CLASS, numbersOf<LONGLONG>},
    {hxUINT64_CLASS, numbersOf<ULONGLONG>},
};

std::string shapeOf(const hxArray* array) {
    std::string result;
    for (std::size_t i = 0; i < hxGetNumberOfDimensions(array); ++i)
        result += (i ? "x" : " ") + number(hxGetDimensions(array)[i]);
    return result;
}

std::string describedCell(const hxArray* array) {
    std::string result = "cell" + shapeOf(array) + " {";
    for (std::size_t i = 0; i < hxGetNumberOfElements(array); ++i)
        result += (i ? ", " : "") + described(hxGetCell(array, i));
    return result + "}";
}

std::string describedChars(const hxArray* array) {
    const auto units =
        quoted(static_cast<const char16_t*>(hxGetData(array)), hxGetNumberOfElements(array));
    const bool isRow = hxGetNumberOfDimensions(array) == 2 && hxGetM(array) == 1;
    return isRow && !hxIsEmpty(array) ? units : "char" + shapeOf(array) + " " + units;
}

} // namespace

Array logicals(const std::vector<std::size_t>& extents, const std::vector<BYTE>& bytes) {
    Array array(hxCreateLogicalArray(extents.size(), extents.data()));
    std::ranges::copy(bytes, static_cast<BYTE*>(hxGetWritableData(array.get())));
    return array;
}

Array chars(std::size_t rows, std::size_t columns, std::u16string_view units) {
    Array array = harray::create(units);
    const std::size_t extents[] = {rows, columns};
    hxSetDimensions(array.get(), 2, extents);
    return array;
}

Array complexScalar() {
    const std::size_t extents[] = {1, 1};
    return Array(hxCreateNumericArray(2, extents, hxDOUBLE_CLASS, hxCOMPLEX));
}

Array sparse() { return Array(hxCreateSparse(2, 2, 1, hxREAL)); }

Array nested(int depth) {
    Array array = scalar(1);
    for (int i = 0; i < depth; ++i)
        array = cell({1, 1}, std::move(array));
    return array;
}

ScopedSafeArray safeArray(VARTYPE vt, const std::vector<Bound>& bounds, const void* data) {
    std::vector<SAFEARRAYBOUND> native;
    for (const Bound& bound : bounds)
        native.push_back({bound.count, bound.lower});
    auto array = ScopedSafeArray::adopt(
        SafeArrayCreate(vt, static_cast<UINT>(native.size()), native.data()));
    if (!data) return array;
    std::size_t bytes = array->cbElements;
    for (const Bound& bound : bounds)
        bytes *= bound.count;
    std::memcpy(array->pvData, data, bytes);
    return array;
}

ScopedVariant variantOf(VARTYPE vt, ScopedSafeArray array) {
    ScopedVariant v;
    v->vt = static_cast<VARTYPE>(vt | VT_ARRAY);
    v->parray = array.detach();
    return v;
}

ScopedVariant variant(VARTYPE vt, LONGLONG payload) {
    ScopedVariant v;
    v->vt = vt;
    v->llVal = payload;
    return v;
}

ScopedVariant reference(VARTYPE vt, void* to) {
    ScopedVariant v = variant(static_cast<VARTYPE>(vt | VT_BYREF));
    v->byref = to;
    return v;
}

ScopedVariant real(double value, VARTYPE vt) { return variant(vt, std::bit_cast<LONGLONG>(value)); }

ScopedVariant single(float value) { return variant(VT_R4, std::bit_cast<std::int32_t>(value)); }

ScopedVariant bstr(platform::OleView text) {
    ScopedVariant v;
    v->bstrVal = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
    v->vt = VT_BSTR;
    return v;
}

ScopedVariant decimal(ULONG value) {
    ScopedVariant v;
    v->decVal = {};
    v->decVal.Lo64 = value;
    v->vt = VT_DECIMAL;
    return v;
}

std::string described(const VARIANT& v) {
    if (v.vt == VT_EMPTY) return "EMPTY";
    const Kind* kind = kindOf(v.vt & VT_TYPEMASK);
    if (!kind) return "VT " + number(v.vt);
    const std::string mark = v.vt & VT_BYREF ? "&" : "";
    if (v.vt & VT_ARRAY)
        return mark + describedArray(*kind, v.vt & VT_BYREF ? *v.pparray : v.parray);
    return mark + kind->name + " " + kind->payload(v.vt & VT_BYREF ? v.byref : &v.llVal);
}

std::string described(const hxArray* array) {
    if (!array) return "null";
    const hxClassID id = hxGetClassID(array);
    const std::string name = hxGetClassName(array);
    if (id == hxCELL_CLASS) return describedCell(array);
    if (id == hxCHAR_CLASS) return describedChars(array);
    for (const NumericText& row : numericTexts) {
        if (row.id != id) continue;
        if (hxIsScalar(array)) return name + " " + row.elements(array);
        return name + shapeOf(array) + " [" + row.elements(array) + "]";
    }
    return name;
}

std::string described(const Array& array) { return described(array.get()); }

Warnings::Warnings() {
    velmar::setWarningWriter([this](const std::string& identifier, const std::u16string& text) {
        seen_ += (seen_.empty() ? "" : " ") + identifier;
        lastText_ = text;
    });
}

Warnings::~Warnings() { velmar::setWarningWriter(nullptr); }

std::string Warnings::take() { return std::exchange(seen_, {}); }

} // namespace axlink2::test
