// Numbers in VARIANTs: one table of kinds, one way in and one way out per form.
#include "platform/portable/number.h"

#include "platform/portable/date_parts.h"
#include "platform/portable/date_text.h"
#include "platform/portable/number_text.h"

#include <algorithm>
#include <bit>
#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>

static_assert(std::endian::native == std::endian::little, "integers are stored by their low bytes");

namespace {

template <class T>
constexpr NumberKind integerKind() {
    return {NumberForm::integer, sizeof(T), std::numeric_limits<T>::min(),
            static_cast<ULONGLONG>(std::numeric_limits<T>::max())};
}

// By VARTYPE, VT_EMPTY to VT_UINT.
constexpr NumberKind kinds[VT_VOID] = {
    {NumberForm::integer, 0, 0, 0}, // VT_EMPTY: zero, in no bytes
    {},
    integerKind<SHORT>(),
    integerKind<LONG>(),
    {NumberForm::real},
    {NumberForm::real},
    {NumberForm::money},
    {NumberForm::date},
    {},
    {},
    {},
    {NumberForm::boolean, sizeof(VARIANT_BOOL), INT16_MIN, INT16_MAX},
    {},
    {},
    {NumberForm::decimal},
    {},
    integerKind<std::int8_t>(),
    integerKind<BYTE>(),
    integerKind<USHORT>(),
    integerKind<ULONG>(),
    integerKind<LONGLONG>(),
    integerKind<ULONGLONG>(),
    integerKind<INT>(),
    integerKind<UINT>(),
};
constexpr NumberKind noNumber{};

constexpr long double moneyUnits = 10000;
constexpr int moneyScale = 4;

// The bytes of an integer, its sign extended to 64 bits.
ULONGLONG integerBits(const VARIANT& source, const NumberKind& kind) {
    if (kind.size == 0) return 0;
    const int unused = 64 - 8 * kind.size;
    const ULONGLONG high = source.ullVal << unused;
    return kind.lowest < 0 ? static_cast<ULONGLONG>(static_cast<LONGLONG>(high) >> unused)
                           : high >> unused;
}

DECIMAL decimalFromSigned(LONGLONG value, int scale) {
    const auto bits = static_cast<ULONGLONG>(value);
    return makeDecimal(value < 0 ? 0 - bits : bits, value < 0, scale);
}

void storeInteger(ULONGLONG bits, const NumberKind& kind, VARTYPE vt, VARIANT& target) {
    target.vt = vt;
    std::memcpy(&target.llVal, &bits, kind.size);
}

// The 64 bits of a magnitude and its sign in a range; the scale doesn't count.
HRESULT wholeInRange(const DECIMAL& whole, LONGLONG lowest, ULONGLONG highest, ULONGLONG& bits) {
    const bool negative = isNegative(whole);
    const ULONGLONG limit = negative ? 0 - static_cast<ULONGLONG>(lowest) : highest;
    if (whole.Hi32 != 0 || whole.Lo64 > limit) return DISP_E_OVERFLOW;
    bits = negative ? 0 - whole.Lo64 : whole.Lo64;
    return S_OK;
}

// The same for a real number, rounded; NaN is out of every range.
template <class Real>
HRESULT realInRange(Real value, LONGLONG lowest, ULONGLONG highest, ULONGLONG& bits) {
    const Real rounded = std::nearbyint(value);
    // The first number above the range is a power of two, exact where the highest isn't.
    const Real above = std::ldexp(Real(1), static_cast<int>(std::bit_width(highest)));
    if (!(rounded >= static_cast<Real>(lowest) && rounded < above)) return DISP_E_OVERFLOW;
    bits = rounded < 0 ? static_cast<ULONGLONG>(static_cast<LONGLONG>(rounded))
                       : static_cast<ULONGLONG>(rounded);
    return S_OK;
}

HRESULT toInteger(const Number& number, LONGLONG lowest, ULONGLONG highest, ULONGLONG& bits) {
    if (number.isReal) return realInRange(number.real, lowest, highest, bits);
    DECIMAL whole;
    rescaleDecimal(number.exact, 0, whole);
    return wholeInRange(whole, lowest, highest, bits);
}

double toDouble(const Number& number) {
    return number.isReal ? number.real : decimalToDouble(number.exact);
}

HRESULT storeReal(const Number& number, VARTYPE vt, VARIANT& target) {
    const double value = toDouble(number);
    if (vt == VT_R4) {
        const bool fromR4 = number.digits < 15;
        if (std::fabs(value) > FLT_MAX && !fromR4) return DISP_E_OVERFLOW;
        target.fltVal = static_cast<float>(value);
    } else {
        target.dblVal = value;
    }
    target.vt = vt;
    return S_OK;
}

HRESULT storeMoney(const Number& number, VARTYPE vt, VARIANT& target) {
    ULONGLONG bits = 0;
    HRESULT result = S_OK;
    if (number.isReal) {
        // In long double: the product has more digits than a double.
        result = realInRange(number.real * moneyUnits, INT64_MIN, INT64_MAX, bits);
    } else {
        DECIMAL units;
        result = rescaleDecimal(number.exact, moneyScale, units);
        if (SUCCEEDED(result)) result = wholeInRange(units, INT64_MIN, INT64_MAX, bits);
    }
    if (SUCCEEDED(result)) {
        target.vt = vt;
        target.cyVal.int64 = static_cast<LONGLONG>(bits);
    }
    return result;
}

// A real number counts with its significant digits, so that 0.1 becomes exactly 0.1.
HRESULT realToDecimal(double value, int digits, DECIMAL& result) {
    if (std::isnan(value)) return DISP_E_BADVARTYPE;
    if (std::isinf(value)) return DISP_E_OVERFLOW;
    char text[40]; // d.ddde+xx
    const auto end = std::to_chars(text, text + sizeof(text), std::fabs(value),
                                   std::chars_format::scientific, digits - 1)
                         .ptr;
    const char* exponentMark = std::find<const char*>(text, end, 'e');
    int exponent = 0;
    std::from_chars(exponentMark + (exponentMark[1] == '+' ? 2 : 1), end, exponent);
    std::string mantissa(1, text[0]);
    mantissa.append(static_cast<const char*>(text) + 2, exponentMark);
    return decimalFromDigits(mantissa, exponent - (digits - 1), value < 0, maxDecimalScale, result);
}

} // namespace

const NumberKind& numberKind(VARTYPE vt) noexcept { return vt < VT_VOID ? kinds[vt] : noNumber; }

HRESULT loadNumber(const VARIANT& source, Number& number) noexcept {
    const NumberKind& kind = numberKind(source.vt);
    switch (kind.form) {
    case NumberForm::integer:
    case NumberForm::boolean: {
        const ULONGLONG bits = integerBits(source, kind);
        number.exact = kind.lowest < 0 ? decimalFromSigned(static_cast<LONGLONG>(bits), 0)
                                       : makeDecimal(bits, false);
        return S_OK;
    }
    case NumberForm::real:
    case NumberForm::date:
        number.isReal = true;
        number.real = source.vt == VT_R4 ? double{source.fltVal} : source.dblVal;
        number.digits = source.vt == VT_R4 ? 7 : 15;
        return S_OK;
    case NumberForm::money:
        number.exact = decimalFromSigned(source.cyVal.int64, moneyScale);
        return S_OK;
    case NumberForm::decimal:
        number.exact = source.decVal;
        return checkDecimal(source.decVal);
    case NumberForm::none:
        break;
    }
    return DISP_E_TYPEMISMATCH;
}

HRESULT loadNumberText(std::u16string_view text, const NumberKind& target, Number& number) {
    if (target.form == NumberForm::date) {
        number.isReal = true;
        return readDate(text, number.real);
    }
    const auto read = readNumber(text);
    if (!read) return DISP_E_TYPEMISMATCH;
    if (read->isBits) {
        number.exact = makeDecimal(read->bits, false);
        // The bits of a negative integer of the target's width stand for that integer.
        const int unused = target.form == NumberForm::integer ? 64 - 8 * target.size : 0;
        if (target.lowest < 0 && read->bits > target.highest &&
            (read->bits << unused) >> unused == read->bits)
            number.exact = makeDecimal((0 - (read->bits << unused)) >> unused, true);
        return S_OK;
    }
    switch (target.form) {
    case NumberForm::real:
    case NumberForm::boolean:
        number.isReal = true;
        return numberToDouble(*read, number.real);
    case NumberForm::integer:
        return decimalFromDigits(read->digits, read->exponent, read->negative, 0, number.exact);
    case NumberForm::money:
        return decimalFromDigits(read->digits, read->exponent, read->negative, moneyScale,
                                 number.exact);
    default:
        return decimalFromDigits(read->digits, read->exponent, read->negative, maxDecimalScale,
                                 number.exact);
    }
}

HRESULT storeNumber(const Number& number, VARTYPE vt, VARIANT& target) {
    const NumberKind& kind = numberKind(vt);
    switch (kind.form) {
    case NumberForm::integer: {
        ULONGLONG bits = 0;
        const HRESULT result = toInteger(number, kind.lowest, kind.highest, bits);
        if (SUCCEEDED(result)) storeInteger(bits, kind, vt, target);
        return result;
    }
    case NumberForm::boolean:
        target.vt = vt;
        target.boolVal = (number.isReal ? number.real != 0 : !isZero(number.exact)) ? VARIANT_TRUE
                                                                                    : VARIANT_FALSE;
        return S_OK;
    case NumberForm::real:
        return storeReal(number, vt, target);
    case NumberForm::date:
        return isDate(toDouble(number)) ? storeReal(number, vt, target) : DISP_E_OVERFLOW;
    case NumberForm::money:
        return storeMoney(number, vt, target);
    case NumberForm::decimal: {
        DECIMAL exact = number.exact;
        if (number.isReal)
            if (const HRESULT result = realToDecimal(number.real, number.digits, exact);
                FAILED(result))
                return result;
        target.decVal = exact;
        target.vt = vt; // the same word as the DECIMAL's reserved one
        return S_OK;
    }
    case NumberForm::none:
        break;
    }
    return DISP_E_TYPEMISMATCH;
}

bool copyIntegerBits(const VARIANT& source, VARTYPE vt, VARIANT& target) noexcept {
    const NumberKind& from = numberKind(source.vt);
    const NumberKind& to = numberKind(vt);
    if (to.form != NumberForm::integer ||
        !(from.form == NumberForm::boolean ||
          (from.form == NumberForm::integer && from.size == to.size)))
        return false;
    storeInteger(integerBits(source, from), to, vt, target);
    return true;
}

std::string numberToText(const Number& number) {
    return number.isReal ? doubleToText(number.real, number.digits) : decimalToText(number.exact);
}
