// Enumerations of type libraries as host types.
#include "classmodel/enum_conversion.h"
#include "host/text.h"
#include "support/server_fixture.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;

enum class Fruit : LONG { Apple = 0, Pear = 1, Quince = -1 };

class Basket : public kit::DispatchObject {
  public:
    explicit Basket(const kit::ClassDefinition& definition = Basket::definition())
        : DispatchObject(definition) {}
    static kit::ClassBuilder<Basket> builder(const CLSID& clsid) {
        kit::ClassBuilder<Basket> builder("Basket", clsid,
                                          kit::guid("3D1F0C11-7C0B-4C55-8B85-2C7F9E0AA022"));
        builder.enumeration<Fruit>("TestFruit", {{"Apple", 0}, {"Pear", 1}, {"Quince", -1}})
            .method("Next", &Basket::next, {"fruit"})
            .property("Held", &Basket::held, &Basket::hold);
        return builder;
    }
    static const kit::ClassDefinition& definition() {
        static const auto made = builder(kit::guid("3D1F0C11-7C0B-4C55-8B85-2C7F9E0AA021")).build();
        return *made;
    }
    Fruit next(Fruit fruit) { return static_cast<Fruit>(static_cast<LONG>(fruit) + 1); }
    Fruit held() { return held_; }
    void hold(Fruit fruit) { held_ = fruit; }

  private:
    Fruit held_ = Fruit::Quince;
};

struct Enumerations : ServerTest {
    Array object = start<Basket>("Test.Basket");

    std::string next(const Array& fruit) {
        return velmar::displayText(call(object, "Next", 1, {fruit.get()})[0].get());
    }
    static Array text(const char* text) { return Array(hxCreateString(text)); }
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

enum class CellNumber : LONG {};

class Prison : public kit::DispatchObject {
  public:
    Prison() : DispatchObject(definition()) {}
    static const kit::ClassDefinition& definition() {
        static const auto made =
            kit::ClassBuilder<Prison>("Prison", kit::guid("3D1F0C11-7C0B-4C55-8B85-2C7F9E0AA061"),
                                      kit::guid("3D1F0C11-7C0B-4C55-8B85-2C7F9E0AA062"))
                .enumeration<CellNumber>("cell", {{"First", 1}})
                .method("Next", &Prison::next, {"cell"})
                .build();
        return *made;
    }
    CellNumber next(CellNumber cell) {
        return static_cast<CellNumber>(static_cast<LONG>(cell) + 1);
    }
};

TEST_F(Enumerations, NamedLikeAHostTypeArePlainNumbers) {
    const Array prison = start<Prison>("Test.Prison");
    const Array one = scalar(1);
    EXPECT_EQ(number(call(prison, "Next", 1, {one.get()})[0].get()), 2.0);
}

TEST_F(Enumerations, BelongToTheFirstClassThatBringsTheirName) {
    enum class Other : LONG { Stone = 0 };
    class Quarry : public kit::DispatchObject {
      public:
        Quarry() : DispatchObject(definition()) {}
        static const kit::ClassDefinition& definition() {
            static const auto made =
                kit::ClassBuilder<Quarry>("Quarry",
                                          kit::guid("3D1F0C11-7C0B-4C55-8B85-2C7F9E0AA031"),
                                          kit::guid("3D1F0C11-7C0B-4C55-8B85-2C7F9E0AA032"))
                    .enumeration<Other>("TestFruit", {{"Stone", 0}})
                    .method("Find", &Quarry::find)
                    .build();
            return *made;
        }
        Other find() { return Other::Stone; }
    };
    const Array quarry = start<Quarry>("Test.Quarry");
    EXPECT_EQ(velmar::displayText(call(quarry, "Find", 1)[0].get()), "Apple\n");
}

} // namespace
