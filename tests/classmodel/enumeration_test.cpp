// Enumerations of type libraries as host types.
#include "classmodel/enum_conversion.h"
#include "host/text.h"
#include "support/server_fixture.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;

enum class Fruit : LONG { Apple = 0, Pear = 1, Quince = -1 };

class Basket : public Served<Basket> {
  public:
    static constexpr const char* className = "Basket";
    static void declare(Builder& builder) {
        builder.enumeration<Fruit>("TestFruit", {{"Apple", 0}, {"Pear", 1}, {"Quince", -1}})
            .method("Next", &Basket::next, {"fruit"})
            .property("Held", &Basket::held, &Basket::hold);
    }
    Fruit next(Fruit fruit) { return static_cast<Fruit>(static_cast<LONG>(fruit) + 1); }
    Fruit held() { return held_; }
    void hold(Fruit fruit) { held_ = fruit; }

  private:
    Fruit held_ = Fruit::Quince;
};

// An enumeration named like a host type, and one whose name another class has brought.
enum class CellNumber : LONG {};
enum class Stone : LONG {};

class Quarry : public Served<Quarry> {
  public:
    static constexpr const char* className = "Quarry";
    static void declare(Builder& builder) {
        builder.enumeration<CellNumber>("cell", {{"First", 1}})
            .enumeration<Stone>("TestFruit", {{"Flint", 0}})
            .method("Same", &Quarry::same, {"cell"})
            .method("Find", &Quarry::find);
    }
    CellNumber same(CellNumber cell) { return cell; }
    Stone find() { return Stone(); }
};

enum class Metal : LONG {};

class Mine : public Served<Mine> {
  public:
    static constexpr const char* className = "Mine";
    static void declare(Builder& builder) {
        builder.enumeration<Metal>("TestMetal", {{"Iron", 0}, {"Gold", 1}})
            .method("Melt", &Mine::melt, {"metal"});
    }
    Metal melt(Metal metal) { return metal; }
};

struct Enumerations : ServerTest {
    Array object = start<Basket>("Test.Basket");

    std::string next(const Array& fruit) {
        return velmar::displayText(call(object, "Next", 1, {fruit.get()})[0].get());
    }
};

TEST_F(Enumerations, CrossAsNamesAndAsNumbers) {
    EXPECT_EQ(next(text("Apple")), "Pear\n");
    EXPECT_EQ(next(text("qUINCE")), "Apple\n");
    EXPECT_EQ(next(scalar(0)), "Pear\n");
    EXPECT_EQ(next(hoststring::createStringArray(u"apple")), "Pear\n");
    // A value without a name comes back as a number, and any number goes out.
    const auto unnamed = call(object, "Next", 1, {scalar(41).get()});
    EXPECT_EQ(hxGetClassID(unnamed[0].get()), hxDOUBLE_CLASS);
    EXPECT_EQ(number(unnamed[0].get()), 42.0);
}

TEST_F(Enumerations, RefuseTextThatNamesNoConstant) {
    const auto error = describedErrorOf([&] { next(text("Plum")); });
    EXPECT_EQ(error.identifier, "VELMAR:class:InvalidEnumValue");
    EXPECT_NE(error.text.find("Plum"), std::string::npos);
}

TEST_F(Enumerations, AreValuesOfProperties) {
    const Array held(hxGetPropertyShared(object.get(), 0, "Held"));
    EXPECT_EQ(velmar::displayText(held.get()), "Quince\n");
    const Array pear = text("pear");
    hxSetProperty(object.get(), 0, "Held", pear.get());
    const Array changed(hxGetPropertyShared(object.get(), 0, "Held"));
    EXPECT_EQ(velmar::displayText(changed.get()), "Pear\n");
}

TEST_F(Enumerations, AreNumbersUnderAHostTypesNameAndBelongToTheFirstClassThatBringsThem) {
    const Array quarry = start<Quarry>("Test.Quarry");
    const auto same = call(quarry, "Same", 1, {scalar(1).get()});
    EXPECT_EQ(number(same[0].get()), 1.0);
    EXPECT_EQ(velmar::displayText(call(quarry, "Find", 1)[0].get()), "Apple\n");
}

TEST_F(Enumerations, AreFinishedAfterAPopulationThatFailedHalfway) {
    const hos::HOSDataTypePtr base(internedId("int32 scalar"));
    auto* begun =
        hos::TypedEnumStringType::createCaseInsensitiveInstance(base, "TestMetal", nullptr);
    begun->addValue(0, "Iron", nullptr); // there was no memory for the rest
    const Array mine = start<Mine>("Test.Mine");
    const auto melted = call(mine, "Melt", 1, {text("gold").get()});
    EXPECT_EQ(velmar::displayText(melted[0].get()), "Gold\n");
}

} // namespace
