// Which converter serves which type, and what it declares to the host.
#include "conversion/arg_converter.h"
#include "support/alive_check.h"
#include "support/errors.h"
#include "support/registered_module.h"

namespace {

using namespace axlink2;

std::string typeName(ArgVarConverter* converter) { return converter->getDataType().getID().str(); }

struct Row {
    VARTYPE vt;
    const char* parameter; // data type as a parameter
    const char* property;
};

constexpr Row rows[] = {
    {VT_I1, "char", "char"},
    {VT_UI1, "char", "char"},
    {VT_I2, "int16 scalar", "double scalar"},
    {VT_UI2, "uint16 scalar", "double scalar"},
    {VT_I4, "int32 scalar", "double scalar"},
    {VT_INT, "int32 scalar", "double scalar"},
    {VT_UI4, "uint32 scalar", "double scalar"},
    {VT_UINT, "uint32 scalar", "double scalar"},
    {VT_I8, "int64 scalar", "int64 scalar"},
    {VT_UI8, "uint64 scalar", "uint64 scalar"},
    {VT_R4, "single scalar", "double scalar"},
    {VT_R8, "double scalar", "double scalar"},
    {VT_CY, "double scalar", "double scalar"},
    {VT_BOOL, "logical scalar", "logical scalar"},
    {VT_BSTR, "unicodeString", "unicodeString"},
    {VT_DATE, "unicodeString", "unicodeString"},
    {VT_DECIMAL, "unicodeString", "unicodeString"},
    {VT_ERROR, "unicodeString", "unicodeString"},
    {VT_LPSTR, "unicodeString", "unicodeString"},
    {VT_LPWSTR, "unicodeString", "unicodeString"},
    {VT_HRESULT, "int32 scalar", "int32 scalar"},
    {VT_VOID, "double", "double"},
    {VT_DISPATCH, "handle", "handle"},
    {VT_PTR, "handle", "handle"},
    {VT_UNKNOWN, "any", "any"},
};

TEST(ConverterChoice, DeclaresTheHostTypeOfEveryVartype) {
    for (const Row& row : rows) {
        ArgVarConverter* parameter = getArgConverter(row.vt);
        ArgVarConverter* property = getPropConverter(row.vt);
        EXPECT_EQ(typeName(parameter), row.parameter) << row.vt;
        EXPECT_EQ(typeName(property), row.property) << row.vt;
        EXPECT_EQ(parameter->vartype, row.vt);
        EXPECT_EQ(property->vartype, row.vt);
        EXPECT_TRUE(hos::HOSDataTypePtrHelper::getObject(parameter->getDataType())) << row.vt;
        EXPECT_EQ(getArgConverter(row.vt), parameter);
    }
}

TEST(ConverterChoice, FallsBackToOneThatIsRefusedOnlyWhenUsed) {
    const COMMemberType unknown[] = {VARTYPE{VT_EMPTY}, VARTYPE{VT_NULL}, VARTYPE{VT_CARRAY},
                                     VARTYPE{VT_RECORD}, COMUnsupportedType()};
    for (const COMMemberType& type : unknown) {
        ArgVarConverter* converter = getArgConverter(type);
        EXPECT_EQ(typeName(converter), "double scalar");
        EXPECT_EQ(converter->vartype, 0);
        EXPECT_EQ(converter, getPropConverter(type));
        VARIANT v{};
        VARIANT backing{};
        EXPECT_EQ(test::errorOf([&] { converter->fromVariant(v); }),
                  "VELMAR:COM:invalidargumenttype");
        EXPECT_EQ(test::errorOf([&] { converter->toVariant({}, &v, &backing, false); }),
                  "VELMAR:COM:invalidargumenttype");
    }
}

TEST(ConverterChoice, SharesOneConverterAmongEnumerationsOfOneName) {
    ArgVarConverter* first = getArgConverter(COMEnumerationType{"ChoiceColor"});
    EXPECT_EQ(first, getPropConverter(COMEnumerationType{"ChoiceColor"}));
    EXPECT_NE(first, getArgConverter(COMEnumerationType{"OtherColor"}));
    EXPECT_EQ(typeName(first), "ChoiceColor");
    EXPECT_EQ(first->vartype, VT_I4);
}

} // namespace
