// Property reads and writes, from the language and through the member itself.
#include "classmodel/instance_record.h"
#include "dispatch/property_info.h"
#include "host/text.h"
#include "support/server_fixture.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;
using hos::HOSValue;
using platform::OleString;

class Properties : public kit::DispatchObject {
  public:
    Properties() : DispatchObject(definition()) {}
    static const kit::ClassDefinition& definition();

    OleString name() { return name_; }
    void setName(OleString name) { name_ = std::move(name); }
    LONG width() { return width_; }
    void setWidth(LONG width) { width_ = width; }
    LONG count() { return 7; }
    IDispatch* child() { return nullptr; }
    void setChild(IDispatch*) {}
    void setBoth(IDispatch*) {}
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

const kit::ClassDefinition& Properties::definition() {
    static const auto made =
        kit::ClassBuilder<Properties>("Properties",
                                      kit::guid("0B2C5C39-5F0A-4B0E-9B4D-65C9A0D7E011"),
                                      kit::guid("0B2C5C39-5F0A-4B0E-9B4D-65C9A0D7E012"))
            .property("Name", &Properties::name, &Properties::setName)
            .property("Width", &Properties::width, &Properties::setWidth)
            .property("Count", &Properties::count)
            .property("Child", &Properties::child)
            .putRef("Child", &Properties::setChild)
            .property("Both", &Properties::child, &Properties::setBoth)
            .putRef("Both", &Properties::setBoth)
            .property("Parts", &Properties::parts, &Properties::setParts)
            .property("Error", &Properties::error)
            .declare(VT_R8)
            .property("Bad", &Properties::bad)
            .variable("Tag", &Properties::tag)
            .variable("Kind", &Properties::kind)
            .readOnly()
            .raw({.name = "ErrorReference", .kind = INVOKE_PROPERTYGET, .result = VT_R8},
                 [](Properties&, kit::Call& call) {
                     call.result->vt = VT_ERROR | VT_BYREF;
                     call.result->scode = E_NOTIMPL;
                     return S_OK;
                 })
            .raw({.name = "Crash", .kind = INVOKE_PROPERTYGET, .result = VT_R8},
                 [](Properties&, kit::Call&) -> HRESULT { throw 1; })
            .build();
    return *made;
}

struct PropertyAccess : ServerTest {
    Array object = start<Properties>("Test.Properties");
    kit::CallLog log;

    Array read(const char* name) { return Array(hxGetPropertyShared(object.get(), 0, name)); }
    void write(const char* name, const hxArray* value) {
        hxSetProperty(object.get(), 0, name, value);
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
    const Array value = scalar(2.5);
    write("Width", value.get());
    ASSERT_EQ(log.calls().size(), 1u);
    const kit::LoggedCall& call = log.calls()[0];
    EXPECT_EQ(call.flags, DISPATCH_PROPERTYPUT);
    EXPECT_EQ(call.named, std::vector<DISPID>{DISPID_PROPERTYPUT});
    ASSERT_EQ(call.arguments.size(), 1u);
    EXPECT_EQ(call.arguments[0].vt, VT_I4);
    EXPECT_EQ(call.arguments[0].value->lVal, 3);
    EXPECT_FALSE(call.wantsResult);
    EXPECT_EQ(number(read("Width").get()), 3.0);

    const Array text(hxCreateString("\u00E4"));
    write("Name", text.get());
    EXPECT_EQ(velmar::displayText(read("Name").get()), "\u00E4\n");
    write("Tag", value.get());
    EXPECT_EQ(number(read("Tag").get()), 3.0);
}

TEST_F(PropertyAccess, PutsByReferenceOnlyWhereThereIsNoPlainPut) {
    write("Child", object.get());
    write("Both", object.get());
    ASSERT_EQ(log.calls().size(), 2u);
    EXPECT_EQ(log.calls()[0].flags, DISPATCH_PROPERTYPUTREF);
    EXPECT_EQ(log.calls()[1].flags, DISPATCH_PROPERTYPUT);
    EXPECT_EQ(log.calls()[0].arguments.at(0).vt, VT_DISPATCH);
}

TEST_F(PropertyAccess, AnArrayOfObjectsIsPutAndLetGo) {
    const Array parts(hxCreateCellMatrix(1, 2));
    hxSetCell(parts.get(), 0, hxCreateSharedDataCopy(object.get()));
    hxSetCell(parts.get(), 1, hxCreateDoubleScalar(1));
    write("Parts", parts.get());
    const auto& server =
        static_cast<const Properties&>(*recordOf(hoGetArrayElement(object.get(), 0))->dispatch);
    EXPECT_EQ(server.given, 2u);
    log.clear(); // which holds copies of the arguments
    EXPECT_EQ(server.references(), 1u);
}

TEST_F(PropertyAccess, IsRefusedByTheHostWhereTheServerHasNoSuchHalf) {
    const Array value = scalar(1);
    EXPECT_NE(errorOf([&] { write("Count", value.get()); }), "");
    EXPECT_NE(errorOf([&] { write("Kind", value.get()); }), "");
    EXPECT_TRUE(log.calls().empty());
    // The member itself leaves the refusal to the server.
    const hos::HOSInterfacePtr handle = hoGetArrayElement(object.get(), 0);
    const auto setDirectly = [&](const char* name) {
        property(object, name)->setValue(handle, HOSValue::ofDouble(1));
    };
    EXPECT_EQ(errorOf([&] { setDirectly("Count"); }), "VELMAR:COM:E2147614723");
    ASSERT_EQ(log.calls().size(), 1u);
    EXPECT_EQ(log.calls()[0].flags, DISPATCH_PROPERTYPUTREF);
    EXPECT_EQ(log.calls().size(), 1u);
}

TEST_F(PropertyAccess, ReportsAnErrorAlsoWhenTheServerGivesItAsTheValue) {
    EXPECT_EQ(errorOf([&] { read("Error"); }), "VELMAR:COM:E2147500037");
    EXPECT_EQ(errorOf([&] { read("ErrorReference"); }), "VELMAR:COM:E2147500033");
    EXPECT_EQ(errorOf([&] { read("Crash"); }), "VELMAR:COM:E2147614729");
    const auto error = describedErrorOf([&] { read("Bad"); });
    EXPECT_EQ(error.identifier, "VELMAR:COM:E12");
    EXPECT_NE(error.text.find("Not now."), std::string::npos);
    const Array notANumber(hxCreateString("text"));
    log.clear();
    EXPECT_NE(errorOf([&] { write("Width", notANumber.get()); }), "");
    EXPECT_TRUE(log.calls().empty());
}

TEST_F(PropertyAccess, OfADeletedObjectIsAnError) {
    hoGetArrayElement(object.get(), 0)->destroy(hos::HOSGetPublicClient());
    const Array value = scalar(1);
    EXPECT_NE(errorOf([&] { read("Width"); }), "");
    EXPECT_NE(errorOf([&] { write("Width", value.get()); }), "");
    EXPECT_TRUE(log.calls().empty());
}

// A put that doesn't even declare its value; type libraries of other makers don't hold such a one.
class PutOnly : public kit::DispatchObject {
  public:
    PutOnly() : DispatchObject(definition()) {}
    static const kit::ClassDefinition& definition() {
        static const auto made =
            kit::ClassBuilder<PutOnly>("PutOnly", kit::guid("0B2C5C39-5F0A-4B0E-9B4D-65C9A0D7E031"),
                                       kit::guid("0B2C5C39-5F0A-4B0E-9B4D-65C9A0D7E032"))
                .raw({.name = "Untyped", .kind = INVOKE_PROPERTYPUT},
                     [](PutOnly&, kit::Call&) { return S_OK; })
                .build();
        return *made;
    }
};

struct UntypedProperty : ServerTest {};

TEST_F(UntypedProperty, IsRefusedBeforeTheServerHearsOfIt) {
    const Array object = start<PutOnly>("Test.PutOnly");
    const hos::HOSInterfacePtr handle = hoGetArrayElement(object.get(), 0);
    hos::HOSPropInfo* untyped = property(object, "Untyped");
    ASSERT_NE(untyped, nullptr);
    EXPECT_EQ(untyped->getGetAccess(), 2);
    EXPECT_EQ(untyped->getSetAccess(), 0);
    const kit::CallLog log;
    EXPECT_NE(errorOf([&] { Array(hxGetPropertyShared(object.get(), 0, "Untyped")); }), "");
    EXPECT_EQ(errorOf([&] { untyped->setValue(handle, HOSValue::ofDouble(1)); }),
              "VELMAR:COM:invalidargumenttype");
    EXPECT_TRUE(log.calls().empty());
}

} // namespace
