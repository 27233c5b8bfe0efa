// Members of types that few servers use: codes, bare interfaces, pointers and references as
// results, any number of arguments.
#include "conversion/variant_instance.h"
#include "support/server_fixture.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;
using platform::ComPtr;

constexpr WORD in = PARAMFLAG_FIN;
constexpr WORD out = PARAMFLAG_FOUT;

class Unusual : public Served<Unusual> {
  public:
    static constexpr const char* className = "Unusual";
    static void declare(Builder& builder) {
        builder.method("Codes", &Unusual::codes, {"in", "both", "out", "number"})
            .method("Give", &Unusual::give, {"object"})
            .raw({.name = "Take", .params = {{"object", VT_UNKNOWN}}}, &Unusual::take)
            .raw({.name = "Lend",
                  .params = {{"object", kit::pointerTo(VT_UNKNOWN), in | out},
                             {"other", kit::pointerTo(VT_DISPATCH), in | out}}},
                 &Unusual::take)
            .raw({.name = "Any",
                  .result = VT_I4,
                  .params = {{"name", VT_BSTR}, {"others", kit::safeArrayOf(VT_VARIANT)}},
                  .optionalCount = -1},
                 [](Unusual&, kit::Call& call) {
                     call.result->vt = VT_I4;
                     call.result->lVal = static_cast<LONG>(call.params.cArgs);
                     return S_OK;
                 });
        const auto gives = [&](const char* name, kit::TypeSpec type, INVOKEKIND kind) {
            builder.raw({.name = name, .kind = kind, .result = std::move(type)},
                        [](Unusual&, kit::Call& call) {
                            *call.result = given;
                            return S_OK;
                        });
        };
        gives("Pointer", kit::pointerTo(VT_I4), INVOKE_FUNC);
        gives("Object", VT_DISPATCH, INVOKE_FUNC);
        gives("Unknown", VT_UNKNOWN, INVOKE_FUNC);
        gives("Value", VT_VARIANT, INVOKE_FUNC);
        gives("Text", VT_BSTR, INVOKE_FUNC);
        gives("Numbers", kit::safeArrayOf(VT_R8), INVOKE_FUNC);
        gives("PropUnknown", VT_UNKNOWN, INVOKE_PROPERTYGET);
        gives("PropError", VT_ERROR, INVOKE_PROPERTYGET);
        gives("PropCode", VT_HRESULT, INVOKE_PROPERTYGET);
        gives("PropValue", VT_VARIANT, INVOKE_PROPERTYGET);
    }

    kit::HResult codes(kit::HResult in, kit::InOut<kit::HResult> both, kit::Out<kit::HResult> out,
                       kit::Out<kit::Int> number) {
        out = kit::HResult{both.value.value + 1};
        both = kit::HResult{E_FAIL};
        number = kit::Int{7};
        return in;
    }
    void give(kit::Out<ComPtr<IUnknown>> object) {
        object = ComPtr<IUnknown>::borrow(static_cast<IDispatch*>(this));
    }
    // Counts the references to what it was given while it has it.
    static HRESULT take(Unusual&, kit::Call& call) {
        const VARIANT& first = call.params.rgvarg[0];
        IUnknown* object = first.vt & VT_BYREF ? *first.ppunkVal : first.punkVal;
        object->AddRef();
        seen = object->Release();
        return S_OK;
    }

    static inline ULONG seen = 0;
    static inline VARIANT given{}; // results, owned by the test
};

struct UnusualTypes : ServerTest {
    Array object = start<Unusual>("Test.Unusual");
    Warnings warnings;

    ULONG references() const {
        return static_cast<Unusual&>(*record(object).dispatch).references();
    }
    std::string ask(const std::string& name, std::vector<const hxArray*> inputs = {}) {
        std::string text = described(call(object, name, 1, inputs)[0]);
        if (text.starts_with("Interface.")) text = "object";
        const std::string warned = warnings.take();
        return warned.empty() ? text : text + ", " + warned;
    }
};

TEST_F(UnusualTypes, CodesGoAsErrorsAndComeBackAsNumbers) {
    const kit::CallLog log;
    const Array five = scalar(5);
    const auto outputs = call(object, "Codes", 4, {five.get(), five.get()});
    std::string text;
    for (const Array& output : outputs)
        text += described(output) + "; ";
    EXPECT_EQ(text, "int32 5; int32 -2147467259; int32 6; int32 7; ");
    const auto& arguments = log.calls().at(0).arguments;
    EXPECT_EQ(arguments[3].vt, VT_ERROR);
    EXPECT_EQ(arguments[2].vt, VT_ERROR | VT_BYREF);
    EXPECT_EQ(arguments[1].vt, VT_ERROR | VT_BYREF);
    EXPECT_EQ(arguments[0].vt, VT_INT | VT_BYREF);
}

TEST_F(UnusualTypes, ParametersHaveNamesForPeopleAlone) {
    const hos::HOSMethodInfo& codes = *method(object, "Codes");
    EXPECT_EQ(velmar::labelledSignatureText(codes),
              "[int32 scalar, int32 scalar both, int32 scalar out, int32 scalar number] = "
              "Codes(COM.Test_Unusual, int32 scalar in, int32 scalar both)");
    EXPECT_EQ(velmar::signatureText(codes),
              "[int32 scalar, int32 scalar, int32 scalar, int32 scalar] = "
              "Codes(COM.Test_Unusual, int32 scalar, int32 scalar)");
}

TEST_F(UnusualTypes, AnInterfaceIsLentForTheTimeOfTheCall) {
    call(object, "Take", 0, {object.get()});
    EXPECT_EQ(Unusual::seen, 2u);
    call(object, "Lend", 0, {object.get(), object.get()});
    EXPECT_EQ(Unusual::seen, 3u); // twice
    EXPECT_EQ(references(), 1u);
}

// Ends where it isn't wrapped, too.
TEST_F(UnusualTypes, ABareInterfaceOfAMethodIsANaNWithAWarning) {
    EXPECT_EQ(ask("Give"), "double nan, VELMAR:COM:unsupportedVARIANTtype");
    EXPECT_EQ(references(), 1u);
}

TEST_F(UnusualTypes, ResultsAreWhatTheServerGaveWhateverItDeclared) {
    LONG number = 5;
    auto code = static_cast<SCODE>(0x8BADF00D); // which no system has a text for
    ScopedVariant text = bstr(OLESTR("a"));
    const double two[] = {1, 2};
    ScopedSafeArray numbers = safeArray(VT_R8, {{2}}, two);
    const std::string failed = "'ActiveX VT_ERROR: '";
    const std::string nothing = "double nan";
    const std::string refused = nothing + ", VELMAR:COM:unsupportedVARIANTtype";
    IDispatch* self = record(object).dispatch;
    const auto lent = [&](VARTYPE vt) { // for the one call that takes it over
        self->AddRef();
        return variant(vt, reinterpret_cast<LONGLONG>(self)).detach();
    };
    struct Row {
        const char* member;
        VARIANT given;
        std::string expected;
    };
    const Row rows[] = {
        {"Pointer", variant(VT_I4, 5).detach(), "int32 5"},
        {"Pointer", reference(VT_I4, &number).get(), "int32 5"},
        {"Pointer", VARIANT{}, nothing},
        {"Pointer", variant(VT_VOID).get(), refused},
        {"Pointer", lent(VT_DISPATCH), "object"},
        {"Pointer", lent(VT_PTR), "object"},
        {"Object", lent(VT_UNKNOWN), "object"},
        {"Object", reference(VT_DISPATCH, &self).get(), "object"},
        {"Object", variant(VT_DISPATCH).get(), nothing},
        {"Object", variant(VT_I4, 5).get(), nothing},
        {"Object", reference(VT_DISPATCH, nullptr).get(), nothing},
        {"Unknown", variant(VT_UNKNOWN).get(), refused},
        {"Unknown", lent(VT_UNKNOWN), refused},
        {"Value", reference(VT_I4, &number).get(), "int32 5"},
        {"Value", reference(VT_VARIANT, text.inOut()).get(), "'a'"},
        {"Text", reference(VT_BSTR, &text.inOut()->bstrVal).get(), "'a'"},
        {"Numbers", reference(VT_ARRAY | VT_R8, numbers.inOut()).get(), "double 1x2 [1 2]"},
        {"PropUnknown", lent(VT_UNKNOWN), "object"},
        {"PropUnknown", variant(VT_UNKNOWN).get(), nothing},
        {"PropUnknown", variant(VT_I4, 5).get(), nothing},
        {"PropError", variant(VT_ERROR, code).get(), failed},
        {"PropError", reference(VT_ERROR, &code).get(), failed},
        {"PropCode", variant(VT_ERROR, 5).get(), "int32 5"},
    };
    for (const Row& row : rows) {
        Unusual::given = row.given;
        EXPECT_EQ(ask(row.member), row.expected) << row.member << " " << row.given.vt;
    }
    EXPECT_EQ(references(), 1u);

    Unusual::given = reference(VT_ERROR, &code).get();
    EXPECT_EQ(errorOf([&] { ask("PropValue"); }), "VELMAR:COM:E2343432205");
    Unusual::given = variantOf(VT_ERROR, safeArray(VT_ERROR, {{1}})).detach();
    EXPECT_TRUE(ask("PropValue").starts_with(nothing)); // an array of these isn't known
}

TEST_F(UnusualTypes, AVariantBehindAReferenceIsReadBeforeTheServerChangesIt) {
    LONG number = 5;
    Unusual::given = reference(VT_I4, &number).get();
    hos::HOSValue inputs[] = {hos::HOSValue::ofPointer(object.get())};
    hos::HOSValue output;
    std::uint32_t count = 1;
    method(object, "Value")->invoke(nullptr, &count, &output, 1, inputs);
    number = 6;
    const std::unique_ptr<COMVariantInstance> value(output.pointer<COMVariantInstance>());
    EXPECT_EQ(described(*value->variant), "I4 5");
}

TEST_F(UnusualTypes, AnyNumberOfInputsAreArgumentsOfTheirOwn) {
    EXPECT_EQ(velmar::labelledSignatureText(*method(object, "Any")),
              "int32 scalar = Any(COM.Test_Unusual, unicodeString name, any varargin...)");
    kit::CallLog log;
    const Array name = text("n");
    const Array pair = doubles({1, 2}, {1, 2});
    const Array nothing = doubles({0, 0}, {});
    EXPECT_EQ(ask("Any", {name.get()}), "int32 1");
    EXPECT_EQ(ask("Any", {name.get(), pair.get(), object.get(), nothing.get()}), "int32 4");
    std::string arguments;
    for (const kit::LoggedArgument& argument : log.calls().at(1).arguments)
        arguments += described(argument.value.get()) + "; ";
    EXPECT_EQ(arguments, "ERROR 80020004; DISPATCH object; R8[1,2] 1 2; BSTR 'n'; ");
    std::vector<const hxArray*> many(9, name.get());
    EXPECT_EQ(ask("Any", many), "int32 9");
    log.clear(); // which holds copies
    EXPECT_EQ(references(), 1u);
}

} // namespace
