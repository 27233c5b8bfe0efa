// Making and describing values.
#include "servers/sample/values.h"

#include <algorithm>
#include <numeric>

namespace sample {

using platform::OleString;
using platform::ScopedSafeArray;
using platform::ScopedVariant;

namespace {

struct Kind {
    VARTYPE vt;
    const OLECHAR* word; // as a caller asks for it
    const OLECHAR* name;
};

constexpr Kind kinds[] = {
    {VT_EMPTY, OLESTR("empty"), OLESTR("VT_EMPTY")},
    {VT_NULL, OLESTR("null"), OLESTR("VT_NULL")},
    {VT_I1, OLESTR("int8"), OLESTR("VT_I1")},
    {VT_UI1, OLESTR("uint8"), OLESTR("VT_UI1")},
    {VT_I2, OLESTR("int16"), OLESTR("VT_I2")},
    {VT_UI2, OLESTR("uint16"), OLESTR("VT_UI2")},
    {VT_I4, OLESTR("int32"), OLESTR("VT_I4")},
    {VT_UI4, OLESTR("uint32"), OLESTR("VT_UI4")},
    {VT_I8, OLESTR("int64"), OLESTR("VT_I8")},
    {VT_UI8, OLESTR("uint64"), OLESTR("VT_UI8")},
    {VT_INT, OLESTR("int"), OLESTR("VT_INT")},
    {VT_UINT, OLESTR("uint"), OLESTR("VT_UINT")},
    {VT_R4, OLESTR("single"), OLESTR("VT_R4")},
    {VT_R8, OLESTR("double"), OLESTR("VT_R8")},
    {VT_CY, OLESTR("currency"), OLESTR("VT_CY")},
    {VT_DATE, OLESTR("date"), OLESTR("VT_DATE")},
    {VT_DECIMAL, OLESTR("decimal"), OLESTR("VT_DECIMAL")},
    {VT_BSTR, OLESTR("text"), OLESTR("VT_BSTR")},
    {VT_BOOL, OLESTR("bool"), OLESTR("VT_BOOL")},
    {VT_ERROR, OLESTR("error"), OLESTR("VT_ERROR")},
    {VT_UNKNOWN, OLESTR("unknown"), OLESTR("VT_UNKNOWN")},
    {VT_DISPATCH, OLESTR("object"), OLESTR("VT_DISPATCH")},
    {VT_VARIANT, OLESTR("variant"), OLESTR("VT_VARIANT")},
};

OleString numberText(LONGLONG number) { return platform::toOle(std::to_string(number)); }

OleString kindText(VARTYPE vt) {
    const auto kind = std::ranges::find(kinds, static_cast<VARTYPE>(vt & VT_TYPEMASK), &Kind::vt);
    const OleString name =
        kind == std::end(kinds) ? numberText(vt & VT_TYPEMASK) : OleString(kind->name);
    return (vt & VT_BYREF ? OLESTR("VT_BYREF|") : OLESTR("")) +
           ((vt & VT_ARRAY ? OLESTR("VT_ARRAY|") : OLESTR("")) + name);
}

// "2x3"; a lower bound that isn't 0 shows as "1..3".
OleString shapeText(SAFEARRAY* array) {
    OleString text;
    for (UINT d = 1; d <= SafeArrayGetDim(array); ++d) {
        LONG lower = 0;
        LONG upper = 0;
        kit::check(SafeArrayGetLBound(array, d, &lower));
        kit::check(SafeArrayGetUBound(array, d, &upper));
        if (d > 1) text += OLESTR("x");
        if (lower)
            text += numberText(lower) + OLESTR("..") + numberText(upper);
        else
            text += numberText(LONGLONG{upper} + 1);
    }
    return text;
}

// An array of that shape, whose elements `number` makes from 1, 2, 3 and so on.
template <class T, class Number>
kit::Array<T> numbered(std::vector<SAFEARRAYBOUND> bounds, Number number) {
    using Traits = kit::ValueTraits<T>;
    kit::Array<T> result{ScopedSafeArray::adopt(
        SafeArrayCreate(Traits::vt, static_cast<UINT>(bounds.size()), bounds.data()))};
    if (!result.array) throw kit::ComFailure{E_INVALIDARG};
    LONG next = 0;
    for (auto& element : kit::elementsOf<typename Traits::Payload>(result.array.get()))
        element = Traits::give(number(++next));
    return result;
}

double asDouble(LONG number) { return number; }

ULONG countOf(LONG count) {
    if (count < 0) throw kit::ComFailure{E_INVALIDARG};
    return static_cast<ULONG>(count);
}

std::vector<SAFEARRAYBOUND> pairs(LONG dimensions) {
    if (dimensions < 1 || dimensions > 4) throw kit::ComFailure{E_INVALIDARG};
    return std::vector<SAFEARRAYBOUND>(countOf(dimensions), SAFEARRAYBOUND{2, 0});
}

} // namespace

OleString Values::describe(VARIANT value) {
    if (value.vt == (VT_BYREF | VT_VARIANT))
        return OLESTR("VT_BYREF|VT_VARIANT to ") + describe(*value.pvarVal);
    if (value.vt & VT_ARRAY) {
        SAFEARRAY* array = value.vt & VT_BYREF ? *value.pparray : value.parray;
        return kindText(value.vt) + OLESTR(" ") + shapeText(array);
    }
    if (value.vt == VT_ERROR && value.scode == DISP_E_PARAMNOTFOUND)
        return OLESTR("a missing argument");
    return kindText(value.vt);
}

ScopedVariant Values::makeValue(platform::OleView word) {
    const auto kind = std::ranges::find(kinds, word, &Kind::word);
    if (kind == std::end(kinds)) throw kit::ComFailure{DISP_E_BADVARTYPE};
    ScopedVariant value;
    switch (kind->vt) {
    case VT_EMPTY:
    case VT_NULL:
        value->vt = kind->vt;
        return value;
    case VT_ERROR:
        return kit::toVariant(kit::ErrorCode{E_ACCESSDENIED});
    case VT_UNKNOWN:
        return kit::toVariant(unknownItem());
    case VT_DISPATCH:
        return anyItem(1);
    default:
        value = kit::toVariant(42.0);
        kit::check(VariantChangeType(value.inOut(), value.inOut(), 0, kind->vt));
        return value;
    }
}

kit::Array<double> Values::makeMatrix(LONG rows, LONG columns) {
    return numbered<double>({{countOf(rows), 0}, {countOf(columns), 0}}, asDouble);
}

kit::Array<double> Values::makeGrid(LONG dimensions) {
    return numbered<double>(pairs(dimensions), asDouble);
}

kit::Array<ScopedVariant> Values::makeCells(LONG dimensions) {
    return numbered<ScopedVariant>(pairs(dimensions),
                                   [](LONG number) { return kit::toVariant(number); });
}

kit::Array<LONG> Values::makeShifted(LONG count, LONG lower) {
    return numbered<LONG>({{countOf(count), lower}},
                          [=](LONG number) { return lower + number - 1; });
}

void Values::append(kit::InOut<kit::Array<double>> values, double value) {
    const auto old = kit::elementsOf<double>(values.value.array.get());
    std::vector<double> longer(old.begin(), old.end());
    longer.push_back(value);
    values = kit::Array<double>{
        ScopedSafeArray::adopt(kit::ValueTraits<std::vector<double>>::give(std::move(longer)))};
}

void Values::squares(LONG count, kit::Out<kit::Array<double>> values) {
    values = numbered<double>({{countOf(count), 1}},
                              [](LONG number) { return asDouble(number) * number; });
}

Items& Values::collection() {
    if (!items_) items_ = kit::create<Items>();
    return *items_.get();
}

platform::ComPtr<IDispatch> Values::items() {
    return platform::ComPtr<IDispatch>::borrow(&collection());
}

platform::ComPtr<IUnknown> Values::unknownItem() {
    return platform::ComPtr<IUnknown>::borrow(collection().item(1).get());
}

std::vector<ScopedVariant> Values::mixed() {
    std::vector<ScopedVariant> result;
    result.push_back(kit::toVariant(1.5));
    result.push_back(kit::toVariant(OleString(OLESTR("text"))));
    result.push_back(anyItem(1));
    result.push_back(kit::toVariant(makeMatrix(2, 2)));
    return result;
}

} // namespace sample
