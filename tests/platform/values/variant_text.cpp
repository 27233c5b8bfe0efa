// Reading and writing of VARIANTs in the tables' notation.
#include "variant_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <map>
#include <stdexcept>

namespace values_test {

using platform::OleString;

namespace {

// Types that follow each other, by their first one.
const std::pair<VARTYPE, std::vector<std::string_view>> baseTypes[] = {
    {VT_EMPTY,
     {"EMPTY", "NULL", "I2", "I4", "R4", "R8", "CY", "DATE", "BSTR", "DISPATCH", "ERROR", "BOOL",
      "VARIANT", "UNKNOWN", "DECIMAL"}},
    {VT_I1,
     {"I1", "UI1", "UI2", "UI4", "I8", "UI8", "INT", "UINT", "VOID", "HRESULT", "PTR", "SAFEARRAY",
      "CARRAY", "USERDEFINED", "LPSTR", "LPWSTR"}},
    {VT_RECORD, {"RECORD", "INT_PTR", "UINT_PTR"}},
    {VT_FILETIME, {"FILETIME", "BLOB", "STREAM", "STORAGE"}},
    {VT_CF, {"CF", "CLSID", "VERSIONED_STREAM"}}};

const std::pair<const char*, VARTYPE> modifiers[] = {
    {"BYREF", VT_BYREF}, {"ARRAY", VT_ARRAY}, {"VECTOR", VT_VECTOR}, {"RESERVED", VT_RESERVED}};

} // namespace

VARTYPE parseType(std::string_view text) {
    if (const auto bar = text.find('|'); bar != text.npos) {
        for (const auto& [name, bit] : modifiers)
            if (text.substr(0, bar) == name)
                return static_cast<VARTYPE>(bit | parseType(text.substr(bar + 1)));
        throw std::runtime_error("no modifier: " + std::string(text));
    }
    if (text.starts_with('(')) return static_cast<VARTYPE>(std::stoi(std::string(text.substr(1))));
    for (const auto& [first, names] : baseTypes)
        if (const auto found = std::ranges::find(names, text); found != names.end())
            return static_cast<VARTYPE>(first + (found - names.begin()));
    throw std::runtime_error("no type: " + std::string(text));
}

namespace {

OleString unquote(std::string_view text) {
    const std::map<char, char> controls{{'n', '\n'}, {'t', '\t'}, {'r', '\r'}, {'v', '\v'}};
    text = text.substr(1, text.size() - 2);
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            plain += text[i];
        } else if (text[i + 1] >= '0' && text[i + 1] <= '7') {
            plain += static_cast<char>(std::stoi(std::string(text.substr(i + 1, 3)), nullptr, 8));
            i += 3;
        } else {
            const auto control = controls.find(text[++i]);
            plain += control == controls.end() ? text[i] : control->second;
        }
    }
    return platform::toOle(plain);
}

double parseDouble(std::string_view text) {
    double value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
}

std::string doubleText(double value) {
    char text[40];
    std::snprintf(text, sizeof(text), "%.17g", value);
    return text;
}

// "-1.50{sign=0x80 scale=2}": the digits give the magnitude.
DECIMAL parseDecimal(std::string_view text) {
    DECIMAL value{};
    unsigned sign = 0;
    unsigned scale = 0;
    std::sscanf(std::string(text.substr(text.find('{'))).c_str(), "{sign=%x scale=%u}", &sign,
                &scale);
    __extension__ unsigned __int128 magnitude = 0;
    for (const char c : text.substr(0, text.find('{')))
        if (c >= '0' && c <= '9') magnitude = magnitude * 10 + static_cast<unsigned>(c - '0');
    value.sign = static_cast<BYTE>(sign);
    value.scale = static_cast<BYTE>(scale);
    value.Lo64 = static_cast<ULONGLONG>(magnitude);
    value.Hi32 = static_cast<ULONG>(magnitude >> 64);
    return value;
}

std::string decimalText(const DECIMAL& value) {
    __extension__ unsigned __int128 magnitude = value.Hi32;
    magnitude = (magnitude << 64) | value.Lo64;
    std::string text;
    const int scale = value.scale <= 28 ? value.scale : 0; // an illegal one isn't applied
    for (int digits = 0; magnitude != 0 || digits <= scale; magnitude /= 10) {
        text.insert(text.begin(), static_cast<char>('0' + static_cast<int>(magnitude % 10)));
        if (++digits == scale) text.insert(text.begin(), '.');
    }
    char suffix[40];
    std::snprintf(suffix, sizeof(suffix), "{sign=0x%02X scale=%d}", value.sign, value.scale);
    return (value.sign ? "-" : "") + text + suffix;
}

// "sa{dims=1 cb=4 ... b0=1..+3}" with some content; another element size than the kind's is LONG's.
SAFEARRAY* parseArray(VARTYPE vt, std::string_view text) {
    unsigned size = 0;
    int lower = 0;
    unsigned elements = 0;
    if (std::sscanf(std::string(text).c_str(), "sa{dims=1 cb=%u feat=%*x locks=0 b0=%d..+%u", &size,
                    &lower, &elements) != 3)
        throw std::runtime_error("no vector: " + std::string(text));
    SAFEARRAY* array = SafeArrayCreateVector(vt, lower, elements);
    if (array->cbElements != size) {
        SafeArrayDestroy(array);
        array = SafeArrayCreateVector(VT_I4, lower, elements);
    }
    if (vt == VT_UI1)
        for (unsigned i = 0; i != elements; ++i)
            static_cast<BYTE*>(array->pvData)[i] = static_cast<BYTE>(i % 2 ? 0 : 'A' + i / 2);
    return array;
}

} // namespace

WrittenVariant::WrittenVariant(std::string_view type, std::string_view value)
    : variant_(build(parseType(type), value)) {}

WrittenVariant::WrittenVariant(std::string_view typeAndValue)
    : WrittenVariant(typeAndValue.substr(0, typeAndValue.find(' ')),
                     typeAndValue.find(' ') == typeAndValue.npos
                         ? std::string_view()
                         : typeAndValue.substr(typeAndValue.find(' ') + 1)) {}

WrittenVariant::~WrittenVariant() {
    VariantClear(&variant_);
    for (VARIANT& value : kept_)
        VariantClear(&value);
}

VARIANT& WrittenVariant::keep(VARIANT value) { return kept_.emplace_back(value); }

VARIANT WrittenVariant::build(VARTYPE vt, std::string_view value) {
    if (!(vt & VT_BYREF)) return buildDirect(vt, value);
    VARIANT reference{};
    reference.vt = vt;
    if (value == "ref null" || value.empty()) return reference;
    value.remove_prefix(std::string_view("-> ").size());
    const auto base = static_cast<VARTYPE>(vt & ~VT_BYREF);
    if (base == VT_VARIANT) {
        value = value.substr(1, value.size() - 2); // [TYPE value]
        const auto space = value.find(' ');
        reference.pvarVal =
            &keep(build(parseType(value.substr(0, space)), value.substr(space + 1)));
    } else {
        VARIANT& target = keep(buildDirect(base, value));
        reference.byref = base == VT_DECIMAL ? static_cast<void*>(&target.decVal) : &target.llVal;
    }
    return reference;
}

VARIANT WrittenVariant::buildDirect(VARTYPE vt, std::string_view value) {
    VARIANT result{};
    result.vt = vt;
    if (vt & VT_ARRAY) {
        if (value.starts_with("sa{"))
            result.parray = parseArray(static_cast<VARTYPE>(vt & VT_TYPEMASK), value);
        return result;
    }
    switch (vt) {
    case VT_R4:
        result.fltVal = static_cast<float>(parseDouble(value));
        break;
    case VT_R8:
    case VT_DATE:
        result.dblVal = parseDouble(value);
        break;
    case VT_BSTR:
        if (value != "null") result.bstrVal = platform::makeBstr(unquote(value)).detach();
        break;
    case VT_DISPATCH:
    case VT_UNKNOWN:
        if (value == "object") result.pdispVal = TestObject::make().detach();
        break;
    case VT_DECIMAL:
        result.decVal = parseDecimal(value);
        result.vt = vt;
        break;
    case VT_UI8:
        result.ullVal = std::stoull(std::string(value));
        break;
    default:
        if (value != "-" && value != "?" && !value.empty())
            result.llVal =
                std::stoll(std::string(value), nullptr, value.starts_with("0x") ? 16 : 10);
    }
    return result;
}

std::string typeName(VARTYPE vt) {
    std::string name;
    for (const auto& [modifier, bit] : modifiers)
        if (vt & bit) name += std::string(modifier) + '|';
    const std::size_t base = vt & VT_TYPEMASK;
    for (const auto& [first, names] : baseTypes)
        if (base >= first && base < first + names.size()) return name.append(names[base - first]);
    return name + '(' + std::to_string(base) + ')';
}

std::string hexText(HRESULT result) {
    char text[11];
    std::snprintf(text, sizeof(text), "0x%08X", static_cast<unsigned>(result));
    return text;
}

std::string quoted(BSTR text) {
    if (!text) return "null";
    std::string result = "\"";
    for (const OLECHAR unit : platform::viewOf(text)) {
        char escape[8];
        std::snprintf(escape, sizeof(escape), "\\%03o", static_cast<unsigned>(unit));
        result += unit == u'\t'   ? "\\t"
                  : unit == u'\n' ? "\\n"
                  : unit < 0x20   ? escape
                                  : platform::toNarrow(platform::OleView(&unit, 1));
    }
    return result + '"';
}

std::string shapeText(const SAFEARRAY* array) {
    if (!array) return "null";
    char text[80];
    std::snprintf(text, sizeof(text), "sa{dims=%d cb=%u feat=0x%04X locks=%u", array->cDims,
                  static_cast<unsigned>(array->cbElements), array->fFeatures,
                  static_cast<unsigned>(array->cLocks));
    std::string result = text;
    for (int i = 0; i != array->cDims; ++i)
        result += " b" + std::to_string(i) + '=' + std::to_string(array->rgsabound[i].lLbound) +
                  "..+" + std::to_string(array->rgsabound[i].cElements);
    return result + '}';
}

std::string valueText(const VARIANT& value) {
    if (value.vt & VT_ARRAY) return shapeText(value.parray);
    switch (value.vt) {
    case VT_I1:
        return std::to_string(static_cast<signed char>(value.cVal));
    case VT_UI1:
        return std::to_string(value.bVal);
    case VT_I2:
    case VT_BOOL:
        return std::to_string(value.iVal);
    case VT_UI2:
        return std::to_string(value.uiVal);
    case VT_I4:
    case VT_INT:
        return std::to_string(value.lVal);
    case VT_UI4:
    case VT_UINT:
        return std::to_string(value.ulVal);
    case VT_I8:
        return std::to_string(value.llVal);
    case VT_UI8:
        return std::to_string(value.ullVal);
    case VT_R4:
        return doubleText(double{value.fltVal});
    case VT_R8:
    case VT_DATE:
        return doubleText(value.dblVal);
    case VT_CY:
        return std::to_string(value.cyVal.int64) + "/10000";
    case VT_DECIMAL:
        return decimalText(value.decVal);
    case VT_BSTR:
        return quoted(value.bstrVal);
    case VT_ERROR:
        return hexText(value.scode);
    case VT_DISPATCH:
    case VT_UNKNOWN:
        return value.punkVal ? "object" : "null";
    case VT_EMPTY:
    case VT_NULL:
        return "-";
    default:
        return "?";
    }
}

std::string outcome(HRESULT result, const VARIANT& value) {
    return hexText(result) + ' ' + typeName(value.vt) + ' ' + valueText(value);
}

} // namespace values_test
