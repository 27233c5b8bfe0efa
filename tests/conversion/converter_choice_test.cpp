// Which converter serves which type, and what it declares to the host.
#include "conversion/arg_converter.h"
#include "support/alive_check.h"
#include "support/errors.h"
#include "support/registered_module.h"

namespace {

using namespace axlink2;

std::string typeName(ArgVarConverter* converter) { return converter->getDataType().getID().str(); }

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
