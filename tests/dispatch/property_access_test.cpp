// Property reads and writes, from the language and through the member itself.
#include "dispatch/property_info.h"
#include "host/text.h"
#include "support/server_fixture.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;
using hos::HOSValue;
using platform::OleString;

class Properties : public Served<Properties> {
  public:
    static constexpr const char* className = "Properties";
    static void declare(Builder& builder) {
        builder.property("Name", &Properties::name, &Properties::setName)
            .property("Width", &Properties::width, &Properties::setWidth)
            .property("Count", &Properties::count)
            .property("Child", &Properties::child)
            .putRef("Child", &Properties::setChild)
            .property("Both", &Properties::child, &Properties::setChild)
            .putRef("Both", &Properties::setChild)
            .property("Parts", &Properties::parts, &Properties::setParts)
            .property("Error", &Properties::error)
            .declare(VT_R8)
            .property("Bad", &Properties::bad)
            .variable("Tag", &Properties::tag)
            .variable("Kind", &Properties::kind)
            .readOnly()
            .raw({.name = "ErrorReference", .kind = INVOKE_PROPERTYGET, .result = VT_R8},
                 [](Properties&, kit::Call& call) {
                     static SCODE code = E_NOTIMPL;
                     call.result->vt = VT_ERROR | VT_BYREF;
                     call.result->pscode = &code;
                     return S_OK;
                 })
            .raw({.name = "Crash", .kind = INVOKE_PROPERTYGET, .result = VT_R8},
                 [](Properties&, kit::Call&) -> HRESULT { throw 1; });
    }

    OleString name() { return name_; }
    void setName(OleString name) { name_ = std::move(name); }
    LONG width() { return width_; }
    void setWidth(LONG width) { width_ = width; }
    LONG count() { return 7; }
    IDispatch* child() { return nullptr; }
    void setChild(IDispatch*) {}
    std::vector<platform::ScopedVariant> parts() { return {}; }
    void setParts(std::vector<platform::ScopedVariant> parts) { given = parts.size(); }
    kit::ErrorCode error() { return {E_FAIL}; }
    double bad() { throw kit::ServerError{.description = OLESTR("Not now."), .wCode = 12}; }

    LONG tag = 1;
    LONG kind = 2;
    std::size_t given = 0;

  private:
    OleString name_ = OLESTR("first");
    LONG width_ = 10;
};

struct PropertyAccess : ServerTest {
    Array object = start<Properties>("Test.Properties");
    kit::CallLog log;

    Array read(const char* name) { return Array(hxGetPropertyShared(object.get(), 0, name)); }
    void write(const char* name, const Array& value) {
        hxSetProperty(object.get(), 0, name, value.get());
    }
    static hos::HOSPropInfo* property(const Array& object, const char* name) {
        hos::HOSInterfacePtr found;
        classOf(object)->findClassProperty(&found, internedId(name));
        return hos::hosiToProp(found);
    }
};

TEST_F(PropertyAccess, FollowsTheHalvesThatTheServerHas) {
    struct Row {
        const char* name;
        int get;
        int set;
        const char* type;
    };
    constexpr Row rows[] = {
        {"Name", 0, 0, "unicodeString"},  {"Width", 0, 0, "double scalar"},
        {"Count", 0, 2, "double scalar"}, {"Child", 0, 0, "handle"},
        {"Both", 0, 0, "handle"},         {"Tag", 0, 0, "double scalar"},
        {"Kind", 0, 2, "double scalar"},
    };
    for (const Row& row : rows) {
        hos::HOSPropInfo* info = property(object, row.name);
        ASSERT_NE(info, nullptr) << row.name;
        EXPECT_EQ(info->getGetAccess(), row.get) << row.name;
        EXPECT_EQ(info->getSetAccess(), row.set) << row.name;
        hos::HOSDataTypePtr type;
        EXPECT_EQ(info->getDataType(&type)->getID().str(), row.type) << row.name;
        HOSValue initial = HOSValue::ofInteger(1);
        EXPECT_TRUE(info->getDefaultValue(&initial)->isNull());
    }
}

TEST_F(PropertyAccess, ReadsWithOneGetWithoutArguments) {
    EXPECT_EQ(velmar::displayText(read("Name").get()), "first\n");
    ASSERT_EQ(log.calls().size(), 1u);
    const kit::LoggedCall& call = log.calls()[0];
    EXPECT_EQ(call.flags, DISPATCH_PROPERTYGET);
    EXPECT_EQ(call.riid, IID_NULL);
    EXPECT_EQ(call.lcid, LOCALE_USER_DEFAULT);
    EXPECT_TRUE(call.arguments.empty() && call.named.empty());
    EXPECT_TRUE(call.wantsResult);
    const Array width = read("Width");
    EXPECT_EQ(hxGetClassID(width.get()), hxDOUBLE_CLASS);
    EXPECT_EQ(number(width.get()), 10.0);
}

TEST_F(PropertyAccess, WritesWithTheNamedArgumentAndNoResult) {
    write("Width", scalar(2.5));
    ASSERT_EQ(log.calls().size(), 1u);
    const kit::LoggedCall& call = log.calls()[0];
    EXPECT_EQ(call.flags, DISPATCH_PROPERTYPUT);
    EXPECT_EQ(call.named, std::vector<DISPID>{DISPID_PROPERTYPUT});
    ASSERT_EQ(call.arguments.size(), 1u);
    EXPECT_EQ(described(call.arguments[0].value.get()), "I4 3");
    EXPECT_FALSE(call.wantsResult);
    EXPECT_EQ(number(read("Width").get()), 3.0);

    write("Name", text("\u00E4"));
    EXPECT_EQ(velmar::displayText(read("Name").get()), "\u00E4\n");
    write("Tag", scalar(2.5));
    EXPECT_EQ(number(read("Tag").get()), 3.0);
}

TEST_F(PropertyAccess, PutsByReferenceOnlyWhereThereIsNoPlainPut) {
    write("Child", object);
    write("Both", object);
    ASSERT_EQ(log.calls().size(), 2u);
    EXPECT_EQ(log.calls()[0].flags, DISPATCH_PROPERTYPUTREF);
    EXPECT_EQ(log.calls()[1].flags, DISPATCH_PROPERTYPUT);
    EXPECT_EQ(log.calls()[0].arguments.at(0).vt, VT_DISPATCH);
}

TEST_F(PropertyAccess, AnArrayOfObjectsIsPutAndLetGo) {
    write("Parts", cell(Array(hxCreateSharedDataCopy(object.get())), scalar(1)));
    const auto& server = static_cast<const Properties&>(*record(object).dispatch);
    EXPECT_EQ(server.given, 2u);
    log.clear(); // which holds copies of the arguments
    EXPECT_EQ(server.references(), 1u);
}

TEST_F(PropertyAccess, IsRefusedWhereTheServerHasNoSuchHalfOrTheObjectIsDeleted) {
    EXPECT_NE(errorOf([&] { write("Count", scalar(1)); }), "");
    EXPECT_NE(errorOf([&] { write("Kind", scalar(1)); }), "");
    EXPECT_NE(errorOf([&] { write("Width", text("no number")); }), "");
    EXPECT_TRUE(log.calls().empty());
    // The member itself leaves the refusal to the server.
    const auto setCount = [&] {
        property(object, "Count")->setValue(handle(object), HOSValue::ofDouble(1));
    };
    EXPECT_EQ(errorOf(setCount), "VELMAR:COM:E2147614723");
    ASSERT_EQ(log.calls().size(), 1u);
    EXPECT_EQ(log.calls()[0].flags, DISPATCH_PROPERTYPUTREF);
    log.clear();
    destroy(object);
    EXPECT_NE(errorOf([&] { read("Width"); }), "");
    EXPECT_NE(errorOf([&] { write("Width", scalar(1)); }), "");
    EXPECT_TRUE(log.calls().empty());
}

TEST_F(PropertyAccess, ReportsAnErrorAlsoWhenTheServerGivesItAsTheValue) {
    EXPECT_EQ(errorOf([&] { read("Error"); }), "VELMAR:COM:E2147500037");
    EXPECT_EQ(errorOf([&] { read("ErrorReference"); }), "VELMAR:COM:E2147500033");
    EXPECT_EQ(errorOf([&] { read("Crash"); }), "VELMAR:COM:E2147614729");
    const auto error = describedErrorOf([&] { read("Bad"); });
    EXPECT_EQ(error.identifier, "VELMAR:COM:E12");
    EXPECT_NE(error.text.find("Not now."), std::string::npos);
}

// A put that doesn't even declare its value; type libraries of other makers don't hold such a one.
class PutOnly : public Served<PutOnly> {
  public:
    static constexpr const char* className = "PutOnly";
    static void declare(Builder& builder) {
        builder.raw({.name = "Untyped", .kind = INVOKE_PROPERTYPUT},
                    [](PutOnly&, kit::Call&) { return S_OK; });
    }
};

using UntypedProperty = PropertyAccess;

TEST_F(UntypedProperty, IsRefusedBeforeTheServerHearsOfIt) {
    object = start<PutOnly>("Test.PutOnly");
    hos::HOSPropInfo* untyped = property(object, "Untyped");
    ASSERT_NE(untyped, nullptr);
    EXPECT_EQ(untyped->getGetAccess(), 2);
    EXPECT_EQ(untyped->getSetAccess(), 0);
    EXPECT_NE(errorOf([&] { read("Untyped"); }), "");
    EXPECT_EQ(errorOf([&] { untyped->setValue(handle(object), HOSValue::ofDouble(1)); }),
              "VELMAR:COM:invalidargumenttype");
    EXPECT_TRUE(log.calls().empty());
}

} // namespace
