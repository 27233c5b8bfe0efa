// Calls of members by their names: the traffic, the result, and what goes wrong.
#include "dispatch/call_by_name.h"
#include "host/axlink.h"
#include "support/server_fixture.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;
using hos::HOSValue;
using test::Array;

class Named : public Served<Named> {
  public:
    static constexpr const char* className = "Named";
    static void declare(Builder& builder) {
        builder.method("Join", &Named::join, {"a", "b"})
            .hidden()
            .method("Nothing", &Named::nothing)
            .method("Self", &Named::self)
            .method("Fail", &Named::fail)
            .method("\u00DCber", &Named::nothing)
            .property("Item", &Named::item, &Named::setItem, {"index"})
            .raw({.name = "Garbage"},
                 [](Named&, kit::Call& call) {
                     call.result->vt = VT_BSTR;
                     call.result->bstrVal = reinterpret_cast<BSTR>(0x10);
                     return E_FAIL;
                 })
            .raw({.name = "Crash"}, [](Named&, kit::Call&) -> HRESULT { throw 1; })
            .raw({.name = "Odd"}, [](Named&, kit::Call& call) {
                call.result->vt = VT_VOID;
                return S_FALSE;
            });
    }
    platform::OleString join(platform::OleView a, kit::Optional<platform::OleView> b) {
        return platform::OleString(a) += b.value_or(OLESTR("-"));
    }
    void nothing() {}
    platform::ComPtr<IDispatch> self() { return platform::ComPtr<IDispatch>::borrow(this); }
    void fail() { throw kit::ServerError{.description = OLESTR("No."), .wCode = 1000}; }
    double item(LONG index) { return index * 10; }
    void setItem(LONG, VARIANT) {}
};

struct CallByName : ServerTest {
    Array object = start<Named>("Test.Named");
    kit::CallLog log;
    std::uint32_t outputs = 0;
    HOSValue results[3];

    Array named(const char* name, WORD flags, const std::vector<const hxArray*>& inputs = {}) {
        std::vector<HOSValue> values;
        for (const hxArray* input : inputs)
            values.push_back(HOSValue::ofPointer(input));
        callByName(handle(object), name, flags, &outputs, results,
                   static_cast<std::int32_t>(values.size()), values.data());
        return Array(results[0].array());
    }
    // The one call since the last question: flags, arguments as rgvarg has them, named arguments.
    std::string traffic() {
        EXPECT_EQ(log.calls().size(), 1u);
        const kit::LoggedCall& call = log.calls().at(0);
        EXPECT_EQ(call.lcid, LCID{LOCALE_USER_DEFAULT});
        EXPECT_EQ(call.riid, IID_NULL);
        EXPECT_TRUE(call.wantsResult && call.wantsExcepInfo && call.wantsArgumentError);
        std::string result = std::to_string(call.flags);
        for (const kit::LoggedArgument& argument : call.arguments)
            result += ", " + described(argument.value.get());
        for (const DISPID dispid : call.named)
            result += ", named " + std::to_string(dispid);
        log.clear();
        return result;
    }
};

TEST_F(CallByName, SendsUntypedArgumentsLastFirst) {
    const Array a = text("a");
    const Array three = numeric<LONG>(hxINT32_CLASS, {1, 1}, {3});
    const Array pair = cell(scalar(1), text("b"));
    const Array missing = doubles({0, 0}, {});
    constexpr WORD method = DISPATCH_METHOD;
    constexpr WORD put = DISPATCH_PROPERTYPUT;
    struct Row {
        const char* name;
        WORD flags;
        std::vector<const hxArray*> inputs;
        std::string traffic;
        std::string result = "double nan";
    };
    const Row rows[] = {
        {"Nothing", method, {}, "1"},
        {"nothing", method, {}, "1"},
        {"\u00DCber", method, {}, "1"},
        {"Join", method, {a.get(), a.get()}, "1, BSTR 'a', BSTR 'a'", "'aa'"},
        {"Join", method, {a.get(), missing.get()}, "1, ERROR 80020004, BSTR 'a'", "'a-'"},
        {"Item", DISPATCH_PROPERTYGET, {three.get()}, "2, I4 3", "double 30"},
        {"Item", put, {three.get(), a.get()}, "4, BSTR 'a', I4 3, named -3"},
        {"Item",
         put,
         {three.get(), pair.get()},
         "4, VARIANT[1,2] (R8 1) (BSTR 'b'), I4 3, named -3"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        EXPECT_EQ(described(named(row.name, row.flags, row.inputs)), row.result);
        EXPECT_EQ(traffic(), row.traffic);
    }
}

TEST_F(CallByName, KeepsWhatArgumentsReferToForTheTimeOfTheCall) {
    axlink::setPassSafeArrayByRef(true);
    const Array three = scalar(3);
    const Array pair = cell(scalar(1), text("b"));
    named("Item", DISPATCH_PROPERTYPUT, {three.get(), pair.get()});
    axlink::setPassSafeArrayByRef(false);
    EXPECT_EQ(traffic(), "4, VARIANT[1,2] (R8 1) (BSTR 'b'), R8 3, named -3");
}

TEST_F(CallByName, DeliversOneOutput) {
    for (const auto& [asked, told] : {std::pair(0u, 1u), std::pair(1u, 1u), std::pair(3u, 3u)}) {
        outputs = asked;
        named("Nothing", DISPATCH_METHOD);
        EXPECT_EQ(outputs, told);
        EXPECT_TRUE(results[1].isNull() && results[2].isNull());
    }
    Warnings warnings;
    EXPECT_EQ(described(named("Odd", DISPATCH_METHOD)), "double nan");
    EXPECT_EQ(warnings.take(), "VELMAR:COM:unsupportedVARIANTtype");
}

TEST_F(CallByName, AnInterfaceBelongsToTheObjectsTree) {
    const Array self = named("Self", DISPATCH_METHOD);
    EXPECT_EQ(recordOf(record(object).children.begin()->second), &record(self));
}

TEST_F(CallByName, ReportsWhatFails) {
    const auto error = [&](const char* name, WORD flags = DISPATCH_METHOD,
                           const std::vector<const hxArray*>& inputs = {}) {
        return errorOf([&] { named(name, flags, inputs); });
    };
    EXPECT_EQ(error("Absent"), "VELMAR:COM:E2147614726"); // DISP_E_UNKNOWNNAME
    EXPECT_TRUE(log.calls().empty());
    EXPECT_EQ(error("Fail"), "VELMAR:COM:E1000");
    EXPECT_EQ(error("Garbage"), "VELMAR:COM:E2147500037");
    EXPECT_NE(error("Crash"), "");
    const Array number = scalar(1);
    const Array complex = complexScalar();
    log.clear();
    EXPECT_EQ(error("Join", DISPATCH_METHOD, {number.get(), complex.get()}),
              "VELMAR:COM:invalidargumenttype");
    EXPECT_TRUE(log.calls().empty());
    // The only argument is the first one.
    const Array word = text("word");
    const auto mismatch =
        describedErrorOf([&] { named("Item", DISPATCH_PROPERTYGET, {word.get()}); });
    EXPECT_EQ(mismatch.text.substr(0, 10), "Argument 1");
    log.clear();
    // There's no second try with another kind of call.
    EXPECT_EQ(error("Item", DISPATCH_METHOD, {number.get()}), "VELMAR:COM:E2147614723");
    EXPECT_EQ(log.calls().size(), 1u);
}

TEST_F(CallByName, NeedsAServer) {
    const auto server =
        platform::ComPtr<IDispatch>::adopt(std::exchange(record(object).dispatch, nullptr));
    EXPECT_EQ(errorOf([&] { named("Nothing", DISPATCH_METHOD); }), "VELMAR:COM:invalidmethodname");
    destroy(object);
    const auto gone = describedErrorOf([&] { named("Nothing", DISPATCH_METHOD); });
    EXPECT_EQ(gone.identifier, "VELMAR:UndefinedFunction");
    EXPECT_NE(gone.text.find("invoke"), std::string::npos);
}

} // namespace
