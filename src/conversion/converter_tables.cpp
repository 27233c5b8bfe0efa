// The tables of converters: which one serves which COM type.
#include "comruntime/interned.h"
#include "conversion/arg_converter.h"
#include "conversion/array_converters.h"
#include "conversion/interface_converters.h"
#include "conversion/numeric_converters.h"
#include "conversion/special_converters.h"
#include "conversion/string_converters.h"

#include <boost/thread/locks.hpp>
#include <boost/thread/shared_mutex.hpp>

#include <map>
#include <memory>
#include <span>
#include <string>
#include <utility>

namespace axlink2 {
namespace {

using ConverterTable = std::map<VARTYPE, std::unique_ptr<ArgVarConverter>>;

// Filled by `initConverters`, then read without a lock.
ConverterTable argConverters;
ConverterTable propConverters;
std::unique_ptr<ArgUnsupportedConverter> unsupportedConverter;

// These grow on demand, each under its lock.
std::map<std::string, std::unique_ptr<ArgVarConverter>> enumConverters;
boost::shared_mutex enumConvertersLock;
ConverterTable safeArrayConverters;
boost::shared_mutex safeArrayConvertersLock;

using Converter = std::unique_ptr<ArgVarConverter>;
struct TableRow {
    VARTYPE key;
    Converter (*make)(VARTYPE key);
};

template <class T>
Converter make(VARTYPE key) {
    return std::make_unique<T>(key);
}

constexpr char int16Scalar[] = "int16 scalar";
constexpr char uint16Scalar[] = "uint16 scalar";
constexpr char int32Scalar[] = "int32 scalar";
constexpr char uint32Scalar[] = "uint32 scalar";
constexpr char int64Scalar[] = "int64 scalar";
constexpr char uint64Scalar[] = "uint64 scalar";
constexpr char singleScalar[] = "single scalar";
constexpr char doubleScalar[] = "double scalar";
constexpr char logicalScalar[] = "logical scalar";

template <class T, const char* name>
Converter makeNumeric(VARTYPE key) {
    return std::make_unique<ArgVLNumericConv<T>>(key, name);
}

constexpr TableRow argRows[] = {
    {VT_I1, make<ArgVLCharConv<signed char>>},
    {VT_UI1, make<ArgVLCharConv<unsigned char>>},
    {VT_I2, makeNumeric<std::int16_t, int16Scalar>},
    {VT_UI2, makeNumeric<std::uint16_t, uint16Scalar>},
    {VT_I4, makeNumeric<std::int32_t, int32Scalar>},
    {VT_INT, makeNumeric<std::int32_t, int32Scalar>},
    {VT_UI4, makeNumeric<std::uint32_t, uint32Scalar>},
    {VT_UINT, makeNumeric<std::uint32_t, uint32Scalar>},
    {VT_I8, makeNumeric<std::int64_t, int64Scalar>},
    {VT_UI8, makeNumeric<std::uint64_t, uint64Scalar>},
    {VT_R4, makeNumeric<float, singleScalar>},
    {VT_R8, makeNumeric<double, doubleScalar>},
    {VT_CY, makeNumeric<double, doubleScalar>},
    {VT_BOOL, makeNumeric<bool, logicalScalar>},
    {VT_BSTR, make<ArgStringConv>},
    {VT_DATE, make<ArgStringConv>},
    {VT_DECIMAL, make<ArgStringConv>},
    {VT_ERROR, make<ArgErrorConv>},
    {VT_HRESULT, make<ArgHResultConv>},
    {VT_VOID, make<ArgVoidConverter>},
    {VT_VARIANT, make<ArgVariantConverter>},
    {VT_DISPATCH, make<ArgDispatchConverter>},
    {VT_UNKNOWN, make<ArgUnknownConverter>},
    {VT_PTR, make<ArgDispatchConverter>},
    {VT_LPWSTR, make<ArgStringConv>},
    {VT_LPSTR, make<ArgStringConv>},
};

constexpr TableRow propRows[] = {
    {VT_I2, make<PropVLNumericConv<std::int16_t>>},
    {VT_I4, make<PropVLNumericConv<std::int32_t>>},
    {VT_UI2, make<PropVLNumericConv<std::uint16_t>>},
    {VT_UI4, make<PropVLNumericConv<std::uint32_t>>},
    {VT_INT, make<PropVLNumericConv<std::int32_t>>},
    {VT_UINT, make<PropVLNumericConv<std::uint32_t>>},
    {VT_R4, make<PropVLNumericConv<float>>},
};

void fill(ConverterTable& table, std::span<const TableRow> rows) {
    for (const TableRow& row : rows)
        table.emplace(row.key, row.make(row.key));
}

ArgVarConverter* find(const ConverterTable& table, VARTYPE key) {
    const auto found = table.find(key);
    return found == table.end() ? nullptr : found->second.get();
}

// A library may give an enumeration the name of a host type that is none; its constants then are
// plain numbers.
Converter makeEnumConverter(const std::string& name) {
    const hos::HOSDataTypePtr type(internedId(name));
    if (type &&
        !dynamic_cast<hos::TypedEnumStringType*>(hos::HOSDataTypePtrHelper::getObject(type)))
        return makeNumeric<std::int32_t, int32Scalar>(VT_I4);
    return std::make_unique<ArgEnumConverter>(name.c_str());
}

// The converter under a key of a table that grows; made, once, when there is none.
template <class Table, class Make>
ArgVarConverter* findOrMake(Table& table, boost::shared_mutex& mutex,
                            const typename Table::key_type& key, Make makeConverter) {
    boost::upgrade_lock<boost::shared_mutex> lock(mutex);
    if (const auto found = table.find(key); found != table.end()) return found->second.get();
    const boost::upgrade_to_unique_lock<boost::shared_mutex> exclusive(lock);
    if (const auto found = table.find(key); found != table.end()) return found->second.get();
    return table.emplace(key, makeConverter()).first->second.get();
}

// Keeps arrays that come out apart from those that go in; it never reaches a VARIANT.
constexpr VARTYPE outputKey = 0x4000;

Converter makeArrayConverter(const COMArrayType& type) {
    if (type.output) return std::make_unique<ArgRefSafeArrayConverter>(type.elementType);
    return std::make_unique<ArgSafeArrayConverter>(type.elementType);
}

struct ConverterChoice {
    ArgVarConverter* operator()(VARTYPE vartype) const {
        ArgVarConverter* converter = find(argConverters, vartype);
        return converter ? converter : unsupportedConverter.get();
    }
    ArgVarConverter* operator()(const COMArrayType& type) const {
        const auto key = static_cast<VARTYPE>(type.elementType | (type.output ? outputKey : 0));
        return findOrMake(safeArrayConverters, safeArrayConvertersLock, key,
                          [&] { return makeArrayConverter(type); });
    }
    ArgVarConverter* operator()(const COMEnumerationType& enumeration) const {
        return findOrMake(enumConverters, enumConvertersLock, enumeration.name,
                          [&] { return makeEnumConverter(enumeration.name); });
    }
    ArgVarConverter* operator()(COMUnsupportedType) const { return unsupportedConverter.get(); }
};

} // namespace

void initConverters() {
    fill(argConverters, argRows);
    fill(propConverters, propRows);
    if (!unsupportedConverter) unsupportedConverter = std::make_unique<ArgUnsupportedConverter>();
}

ArgVarConverter* getArgConverter(const COMMemberType& type) {
    return std::visit(ConverterChoice(), type);
}

ArgVarConverter* getPropConverter(const COMMemberType& type) {
    if (const VARTYPE* vartype = std::get_if<VARTYPE>(&type))
        if (ArgVarConverter* converter = find(propConverters, *vartype)) return converter;
    return getArgConverter(type);
}

} // namespace axlink2
