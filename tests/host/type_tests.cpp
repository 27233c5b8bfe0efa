// Data types: conversions of arrays to values and back, and the repository.
#include "tests/host/host_test.h"

#include <cmath>

using namespace host_test;

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double infinity = std::numeric_limits<double>::infinity();

hos::HOSTypeConversion& conversionTo(const char* type) {
    hos::HOSTypeConversion* found = hos::HOSTypeRepository::getConversion(name("any"), name(type));
    EXPECT_NE(found, nullptr) << type;
    return *found;
}

hos::HOSValue converted(const char* type, const hxArray* array) {
    hos::HOSValue value;
    conversionTo(type).convertFromHost(&value, array);
    return value;
}

// The array after a way through the type; the value in between ends.
unique_array through(const char* type, const hxArray* array) {
    const hos::HOSValue value = converted(type, array);
    hxArray* back = nullptr;
    conversionTo(type).convertToHost(&back, value);
    hos::HOSDataTypePtr(name(type))->releaseValue(value);
    return unique_array(back);
}

} // namespace

class Types : public HostTest {};

TEST_F(Types, NumbersRoundHalvesAwayFromZeroAndSaturate) {
    const struct {
        const char* type;
        double number;
        double result;
    } rows[] = {{"int8 scalar", 127.4, 127},
                {"int8 scalar", 127.5, 127},
                {"int8 scalar", -128.5, -128},
                {"int8 scalar", 2.5, 3},
                {"int8 scalar", -2.5, -3},
                {"uint8 scalar", -0.4, 0},
                {"uint8 scalar", 300, 255},
                {"int16 scalar", -1e9, -32768},
                {"uint16 scalar", 65534.5, 65535},
                {"int32 scalar", 1e10, 2147483647.0},
                {"uint32 scalar", 4294967294.5, 4294967295.0},
                {"int64 scalar", -infinity, -9223372036854775808.0},
                {"logical scalar", 0.1, 1},
                {"double scalar", 0.1, 0.1},
                {"single scalar", 0.5, 0.5},
                {"int32 scalar", 0.49999999999999994, 0}};
    for (const auto& row : rows)
        EXPECT_EQ(hxGetScalar(through(row.type, number(row.number).get()).get()), row.result)
            << row.type << " " << row.number;
    EXPECT_EQ(converted("int64 scalar", number(1e300).get()).integer(),
              std::numeric_limits<std::int64_t>::max());
    EXPECT_EQ(converted("uint64 scalar", number(1e300).get()).word(),
              std::numeric_limits<std::uint64_t>::max());
    // 64-bit integers keep their last digit.
    const unique_array large = zeros(1, 1, hxINT64_CLASS);
    *static_cast<std::int64_t*>(hxGetWritableData(large.get())) = 9007199254740993;
    EXPECT_EQ(converted("uint64 scalar", large.get()).word(), 9007199254740993u);
    EXPECT_EQ(converted("int32 scalar", large.get()).integer(), 2147483647);
}

TEST_F(Types, RefuseWhatTheyCannotHold) {
    const std::size_t one[] = {1, 1};
    const struct {
        const char* type;
        unique_array array;
    } rows[] = {
        {"double scalar", text("1")},
        {"double scalar", row({1, 2})},
        {"double scalar", zeros(0, 0)},
        {"double scalar", unique_array(hxCreateNumericArray(2, one, hxDOUBLE_CLASS, hxCOMPLEX))},
        {"double scalar", unique_array(hxCreateSparse(1, 1, 1, hxREAL))},
        {"int32 scalar", number(notANumber)},
        {"logical scalar", number(notANumber)},
        {"unicodeString", number(1)},
        {"asciiString", zeros(2, 2, hxCHAR_CLASS)},
        {"unicodeString", hoststring::createStringArray(1, 1, {std::nullopt})},
        {"handle", number(1)},
        {"handle", zeros(0, 1)},
        {"cell", number(1)},
        {"struct", number(1)},
        {"char", number(notANumber)},
        {"char", row({1, 2})},
        {"double", text("a")}};
    for (const auto& row : rows)
        EXPECT_EQ(errorOf([&] { converted(row.type, row.array.get()); }),
                  "VELMAR:array:WrongConversion")
            << row.type;
}

TEST_F(Types, TextAndArraysComeBackAsTheyWent) {
    EXPECT_EQ(textOf(through("unicodeString", string(u"\u00e4b").get()).get()), "\xC3\xA4"
                                                                                "b");
    EXPECT_EQ(textOf(through("asciiString", text("").get()).get()), "");
    EXPECT_EQ(textOf(through("char", string(u"abc").get()).get()), "abc");
    EXPECT_TRUE(std::isnan(hxGetScalar(through("double scalar", number(notANumber).get()).get())));
    const unique_array doubles = through("double", zeros(2, 3, hxINT8_CLASS).get());
    EXPECT_EQ(hxGetClassID(doubles.get()), hxDOUBLE_CLASS);
    EXPECT_EQ(hxGetN(doubles.get()), 3u);
    EXPECT_EQ(hxGetNumberOfElements(through("any", nullptr).get()), 0u);
    // What stands for no object, and for a character by its number.
    EXPECT_EQ(hxGetNumberOfElements(through("handle", zeros(0, 0).get()).get()), 0u);
    EXPECT_EQ(hxGetScalar(through("char", number(300).get()).get()), 300);
}

TEST_F(Types, ClassesAreTypesOfTheirObjects) {
    TestClass own({});
    TestClass other({});
    EXPECT_TRUE(hos::HOSDataTypePtr(own.id()));
    const unique_array array = own.makeArray(2);
    EXPECT_EQ(hoGetClassID(through(own.id().c_str(), array.get()).get()), own.id());
    EXPECT_EQ(errorOf([&] { converted(other.id().c_str(), array.get()); }),
              "VELMAR:array:WrongConversion");
    EXPECT_FALSE(hos::HOSTypeRepository::getType(name("Test.NoSuchClass")));
    EXPECT_FALSE(hos::HOSTypeRepository::getType(hos::id()));
}

TEST_F(Types, KeepTheirFirstTypeAndConversion) {
    struct Conversion final : hos::HOSTypeConversion {
        explicit Conversion(int& ends) : ends(ends) {}
        ~Conversion() override { ++ends; }
        void convertToHost(hxArray**, hos::HOSValue) override {}
        void convertFromHost(hos::HOSValue*, const hxArray*) override {}
        int& ends;
    };
    static int ends = 0;
    auto* first = new Conversion(ends);
    hos::HOSTypeRepository::addConversion(name("any"), name("test.type"), first);
    hos::HOSTypeRepository::addConversion(name("any"), name("test.type"), new Conversion(ends));
    EXPECT_EQ(hos::HOSTypeRepository::getConversion(name("any"), name("test.type")), first);
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(hos::HOSTypeRepository::getConversion(name("test.type"), name("any")), nullptr);
    EXPECT_FALSE(hos::HOSTypeRepository::getType(name("test.type")));
}

TEST_F(Types, EnumerationsFindNamesWhateverTheirCase) {
    const hos::HOSDataTypePtr base(name("int32 scalar"));
    auto* color = hos::TypedEnumStringType::createCaseInsensitiveInstance(base, "Color", nullptr);
    color->addValue(1, "Red", nullptr);
    color->addValue(-2, "Green", nullptr);
    color->addValue(1, "Rot", nullptr);
    color->addValue(3, "Blässe Ж", nullptr);
    EXPECT_EQ(hos::TypedEnumStringType::createCaseInsensitiveInstance(base, "Color", nullptr),
              color);
    hos::HOSValue value;
    // An unknown name leaves the value.
    for (const auto& [name, number] :
         {std::pair("gREEN", -2), {"ROT", 1}, {"Blue", 1}, {"BLÄSSE ж", 3}}) {
        color->valueOfName(&value, name);
        EXPECT_EQ(value.integer(), number) << name;
    }
    EXPECT_FALSE(color->hasName("Blue"));
    EXPECT_STREQ(color->valueName(hos::HOSValue::ofInteger(1)), "Red");
    EXPECT_EQ(color->valueName(hos::HOSValue::ofInteger(9)), nullptr);
    hos::Enumeration<hos::HOSValue> values = color->getPossibleValues();
    EXPECT_EQ(values.nextElement().integer(), 1);
    EXPECT_EQ(values.nextElement().integer(), -2);
    EXPECT_EQ(values.nextElement().integer(), 3);
    EXPECT_THROW(values.nextElement(), hos::ENoElements);
}
