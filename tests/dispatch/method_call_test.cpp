// Method calls: what a member declares, what reaches the server, what comes back.
#include "dispatch/method_info.h"
#include "host/text.h"
#include "support/server_fixture.h"

#include <array>

namespace {

using namespace axlink2;
using namespace axlink2::test;
using hos::HOSValue;
using platform::OleString;

class Methods : public Served<Methods> {
  public:
    static constexpr const char* className = "Methods";
    static void declare(Builder& builder);

    void reset() {}
    double sum(double a, double b, double c, double d, double e, double f, double g,
               kit::Out<double> last) {
        last = g;
        return a + b + c + d + e + f + g;
    }
    double twice(double x) { return 2 * x; }
    double scale(double x, kit::Optional<double> factor) { return x * factor.value_or(10); }
    double blend(double x, kit::Optional<double> a, kit::Optional<double> b) {
        return x + a.value_or(10) + b.value_or(100);
    }
    void optionalThenOut(double, kit::Optional<double>, kit::Out<double> c) { c = 5; }
    void out(double a, kit::Out<double> c) { c = a + 1; }
    double results(kit::Out<LONG> first, kit::Out<OleString> second) {
        first = 3;
        second = OLESTR("text");
        return 1.5;
    }
    void pair(kit::Out<LONG> first, kit::Out<OleString> second) { results(first, second); }
    void swap(kit::InOut<LONG> a, kit::InOut<LONG> b) { std::swap(a.value, b.value); }
    OleString item(LONG index) { return index == 1 ? OLESTR("one") : OLESTR("other"); }
    LONG small() { return 70000; }
    void take(IDispatch* first, OleString) { takenReferences = references(first); }
    platform::ComPtr<IDispatch> self() { return platform::ComPtr<IDispatch>::borrow(this); }
    void giveSelf(kit::Out<platform::ComPtr<IDispatch>> object) { object = self(); }
    double fail(LONG result) { throw kit::ComFailure{result, 0}; }
    void takeByte(IDispatch*, unsigned char) {}
    void outDecimal(kit::Out<DECIMAL> number) {
        DECIMAL value{};
        value.wReserved = VT_BSTR; // whatever stood there
        value.Lo32 = 125;
        value.scale = 2;
        number = value;
    }
    // Writes what a careless server leaves behind, and fails or faults.
    static HRESULT leaveGarbage(Methods&, kit::Call& call) {
        call.result->vt = VT_BSTR;
        call.result->bstrVal = reinterpret_cast<BSTR>(0x10);
        return E_FAIL;
    }
    [[gnu::no_sanitize("undefined")]] static HRESULT crashWithOutput(Methods&, kit::Call& call) {
        *call.params.rgvarg[0].pbstrVal = SysAllocString(OLESTR("lost"));
        volatile int* volatile nowhere = nullptr;
        *nowhere = 1; // NOLINT: the fault that is wanted
        return S_OK;
    }
    // Replaces the view that it was given by a value of its own.
    static HRESULT replaceView(Methods&, kit::Call& call) {
        *call.params.rgvarg[0].plVal = 7;
        call.params.rgvarg[0].vt = VT_I4;
        call.params.rgvarg[0].lVal = 9;
        return S_OK;
    }

    // Does the same with a VARIANT that it got by reference, whatever that refers to.
    static HRESULT replaceVariant(Methods&, kit::Call& call) {
        if (call.params.cArgs > 1) {
            call.params.rgvarg[1].vt = VT_BSTR;
            call.params.rgvarg[1].bstrVal = SysAllocString(OLESTR("new"));
        }
        call.params.rgvarg[0] =
            kit::toVariant(platform::ComPtr<IDispatch>(kit::createDispatch<PlainServer>()))
                .detach();
        return isRefusing ? E_FAIL : S_OK;
    }
    // Claims content for what it was only lent.
    static HRESULT lie(Methods&, kit::Call& call) {
        call.params.rgvarg[0].vt = VT_BSTR;
        call.params.rgvarg[1].vt = VT_EMPTY;
        return S_OK;
    }
    static inline bool isRefusing = false;

    static ULONG references(IDispatch* object) {
        object->AddRef();
        return object->Release();
    }
    static inline ULONG takenReferences = 0;
};

void Methods::declare(Builder& builder) {
    builder.method("Reset", &Methods::reset)
        .method("Sum", &Methods::sum, {"a", "b", "c", "d", "e", "f", "g", "last"})
        .method("Twice", &Methods::twice, {"x"})
        .method("Scale", &Methods::scale, {"x", "factor"})
        .method("Blend", &Methods::blend, {"x", "a", "b"})
        .method("OptionalThenOut", &Methods::optionalThenOut, {"a", "b", "c"})
        .method("Out", &Methods::out, {"a", "c"})
        .method("Results", &Methods::results, {"first", "second"})
        .method("Pair", &Methods::pair, {"first", "second"})
        .method("Swap", &Methods::swap, {"a", "b"})
        .property("Item", &Methods::item, std::vector<std::string>{"index"})
        .method("Small", &Methods::small)
        .declare(VT_I2)
        .method("Take", &Methods::take, {"object", "text"})
        .method("Self", &Methods::self)
        .method("GiveSelf", &Methods::giveSelf, {"object"})
        .method("Fail", &Methods::fail, {"result"})
        .method("TakeByte", &Methods::takeByte, {"object", "byte"})
        .method("OutDecimal", &Methods::outDecimal, {"number"})
        .raw({.name = "ShortCall",
              .params = {{"a", VT_R8},
                         {"b", VT_R8, PARAMFLAG_FIN | PARAMFLAG_FOPT},
                         {"c", kit::pointerTo(VT_R8), PARAMFLAG_FOUT}}},
             [](Methods&, kit::Call&) { return S_OK; })
        .raw({.name = "LeaveGarbage", .result = VT_BSTR}, &Methods::leaveGarbage)
        .raw({.name = "CrashWithOutput",
              .params = {{"text", kit::pointerTo(VT_BSTR), PARAMFLAG_FOUT}}},
             &Methods::crashWithOutput)
        .raw({.name = "ReplaceView", .params = {{"number", kit::pointerTo(VT_I4), PARAMFLAG_FOUT}}},
             &Methods::replaceView)
        .raw({.name = "ReplaceVariant",
              .params = {{"a", kit::pointerTo(VT_VARIANT), PARAMFLAG_FIN | PARAMFLAG_FOUT},
                         {"b", kit::pointerTo(VT_VARIANT), PARAMFLAG_FOUT}}},
             &Methods::replaceVariant)
        .raw({.name = "ReplaceOut", .params = {{"a", kit::pointerTo(VT_VARIANT), PARAMFLAG_FOUT}}},
             &Methods::replaceVariant)
        .raw({.name = "Lie",
              .params = {{"a", kit::pointerTo(VT_VARIANT), PARAMFLAG_FIN | PARAMFLAG_FOUT},
                         {"b", kit::pointerTo(VT_VARIANT), PARAMFLAG_FIN | PARAMFLAG_FOUT}}},
             &Methods::lie)
        .raw({.name = "Crash", .result = VT_R8},
             [](Methods&, kit::Call&) -> HRESULT { throw std::runtime_error("crash"); });
}

struct MethodCall : ServerTest {
    Array object = start<Methods>("Test.Methods");
    kit::CallLog log;

    // The member's own operation, with exactly these inputs behind the object and this count.
    struct Answer {
        std::uint32_t count;
        std::array<HOSValue, 4> outputs;
    };
    Answer invoke(const char* name, std::uint32_t outputs, std::vector<HOSValue> inputs = {}) {
        inputs.insert(inputs.begin(), HOSValue::ofPointer(object.get()));
        Answer answer{outputs, {}};
        method(object, name)
            ->invoke(nullptr, &answer.count, answer.outputs.data(),
                     static_cast<std::int32_t>(inputs.size()), inputs.data());
        return answer;
    }
    const kit::LoggedCall& onlyCall() {
        EXPECT_EQ(log.calls().size(), 1u);
        return log.calls().at(0);
    }
};

HOSValue real(double x) { return HOSValue::ofDouble(x); }
HOSValue integer(std::int64_t i) { return HOSValue::ofInteger(i); }
std::string taken(HOSValue text) {
    const std::unique_ptr<std::u16string> owned(text.pointer<std::u16string>());
    return hsys::i18n::to_string(*owned);
}

TEST_F(MethodCall, DeclaresInputsAndOutputsInHostTypes) {
    const std::string own = "COM.Test_Methods";
    using Names = std::vector<std::string>;
    struct Row {
        const char* name;
        Names inputs;
        Names outputs;
    };
    const Row rows[] = {
        {"Reset", {own}, {}},
        {"Twice", {own, "double scalar"}, {"double scalar"}},
        {"Scale", {own, "double scalar", "double scalar"}, {"double scalar"}},
        {"Results", {own}, {"double scalar", "int32 scalar", "unicodeString"}},
        {"Swap", {own, "int32 scalar", "int32 scalar"}, {"int32 scalar", "int32 scalar"}},
        {"Item", {own, "int32 scalar"}, {"unicodeString"}},
        {"Take", {own, "handle", "unicodeString"}, {}},
        {"Self", {own}, {"handle"}},
    };
    for (const Row& row : rows) {
        hos::Enumeration<hos::id> inputs;
        hos::Enumeration<hos::id> outputs;
        const hos::HOSMethodSignature* signature = method(object, row.name)->getSignature();
        EXPECT_EQ(namesOf(std::move(*signature->getInputs(&inputs))), row.inputs) << row.name;
        EXPECT_EQ(namesOf(std::move(*signature->getOutputs(&outputs))), row.outputs) << row.name;
    }
}

TEST_F(MethodCall, MakesOneInvokeWithTheArgumentsInReverse) {
    EXPECT_EQ(invoke("Scale", 1, {real(2), real(3)}).outputs[0].number(), 6.0);
    const kit::LoggedCall& call = onlyCall();
    EXPECT_EQ(call.riid, IID_NULL);
    EXPECT_EQ(call.lcid, LOCALE_USER_DEFAULT);
    EXPECT_EQ(call.flags, DISPATCH_METHOD);
    EXPECT_TRUE(call.wantsResult && call.wantsExcepInfo && call.wantsArgumentError);
    EXPECT_TRUE(call.named.empty());
    ASSERT_EQ(call.arguments.size(), 2u);
    EXPECT_EQ(described(call.arguments[0].value.get()), "R8 3");
    EXPECT_EQ(described(call.arguments[1].value.get()), "R8 2");
    log.clear();
    EXPECT_EQ(invoke("Reset", 0).count, 0u);
    EXPECT_TRUE(onlyCall().arguments.empty() && onlyCall().wantsResult);
    log.clear();
    EXPECT_EQ(taken(invoke("Item", 1, {integer(1)}).outputs[0]), "one");
    EXPECT_EQ(onlyCall().flags, DISPATCH_PROPERTYGET);
    EXPECT_TRUE(onlyCall().named.empty());
    EXPECT_EQ(onlyCall().arguments.size(), 1u);
}

TEST_F(MethodCall, PassesNothingForWhatWasLeftOut) {
    EXPECT_EQ(invoke("Scale", 1, {real(2)}).outputs[0].number(), 20.0);
    EXPECT_EQ(onlyCall().arguments.size(), 1u);
    log.clear();
    // Behind a left-out input no output is passed either: the server refuses the short call.
    EXPECT_NE(errorOf([&] { invoke("OptionalThenOut", 1, {real(2)}); }), "");
    EXPECT_EQ(onlyCall().arguments.size(), 1u);
    log.clear();
    // Where it takes the call, the output is asked for all the same: an empty VARIANT is zero.
    EXPECT_EQ(invoke("ShortCall", 1, {real(1)}).outputs[0].number(), 0.0);
    EXPECT_EQ(onlyCall().arguments.size(), 1u);
}

TEST_F(MethodCall, DeliversTheResultFirstThenTheOutputsThatWereWanted) {
    const Answer all = invoke("Results", 3);
    EXPECT_EQ(all.outputs[0].number(), 1.5);
    EXPECT_EQ(all.outputs[1].integer(), 3);
    EXPECT_EQ(taken(all.outputs[2]), "text");
    EXPECT_TRUE(invoke("Results", 1).outputs[1].isNull());
    for (const std::uint32_t wanted : {0u, 1u}) {
        const Answer first = invoke("Pair", wanted);
        EXPECT_EQ(first.count, 1u);
        EXPECT_EQ(first.outputs[0].integer(), 3);
        EXPECT_TRUE(first.outputs[1].isNull());
    }
    EXPECT_EQ(invoke("Swap", 0, {integer(1), integer(2)}).count, 1u);
    log.clear();
    EXPECT_EQ(invoke("Out", 1, {real(1)}).outputs[0].number(), 2.0);
    EXPECT_EQ(onlyCall().arguments.at(0).vt, VT_BYREF | VT_R8);
    EXPECT_EQ(onlyCall().arguments.at(1).vt, VT_R8);
    log.clear();
    // What the server wrote into its inputs comes back.
    const Answer swapped = invoke("Swap", 2, {integer(1), integer(2)});
    EXPECT_EQ(swapped.outputs[0].integer(), 2);
    EXPECT_EQ(swapped.outputs[1].integer(), 1);
    EXPECT_EQ(onlyCall().arguments[0].vt, VT_BYREF | VT_I4);
    EXPECT_EQ(taken(invoke("OutDecimal", 1).outputs[0]),
              "1.25"); // which fills the whole VARIANT
}

TEST_F(MethodCall, TakesMoreArgumentsThanMostMembersHave) {
    std::vector<Array> numbers;
    std::vector<const hxArray*> inputs;
    for (int i = 1; i <= 7; ++i)
        inputs.push_back(numbers.emplace_back(scalar(i)).get());
    const velmar::Arrays outputs = call(object, "Sum", 2, inputs);
    EXPECT_EQ(number(outputs[0].get()), 28);
    EXPECT_EQ(number(outputs[1].get()), 7);
}

TEST_F(MethodCall, GivesAnInterfaceAReferenceForTheTimeOfTheCall) {
    const std::u16string word = u"x";
    invoke("Take", 0, {HOSValue::ofPointer(object.get()), HOSValue::ofPointer(&word)});
    EXPECT_EQ(onlyCall().arguments[1].vt, VT_DISPATCH);
    // The object's own, the argument's and the log's.
    EXPECT_EQ(Methods::takenReferences, 3u);
    log.clear();
    // A later conversion that fails gives nothing back too often.
    const Array letters = text("ab");
    const auto takeByte = [&] { call(object, "TakeByte", 0, {object.get(), letters.get()}); };
    EXPECT_EQ(errorOf(takeByte), "VELMAR:class:MustBeScalar");
    EXPECT_TRUE(log.calls().empty());
    EXPECT_EQ(Methods::references(record(object).dispatch), 1u);
}

TEST_F(MethodCall, MakesObjectsOfInterfacesAndLinksThemToTheirOwner) {
    for (const char* name : {"Self", "GiveSelf"}) {
        const Array self(invoke(name, 1).outputs[0].array());
        ASSERT_TRUE(handle(self)) << name;
        EXPECT_EQ(record(self).dispatch, record(object).dispatch);
        EXPECT_EQ(recordOf(record(self).parents[0].object), &record(object));
        EXPECT_EQ(number(call(self, "Twice", 1, {scalar(2).get()})[0].get()), 4.0);
    }
    EXPECT_EQ(Methods::references(record(object).dispatch), 1u);
    EXPECT_TRUE(record(object).children.empty());
}

TEST_F(MethodCall, ReportsFailuresAndTrustsNothingThatTheyLeaveBehind) {
    const auto error = describedErrorOf([&] { invoke("Fail", 1, {integer(DISP_E_TYPEMISMATCH)}); });
    EXPECT_EQ(error.identifier, "VELMAR:COM:E2147614725");
    EXPECT_NE(error.text.find('1'), std::string::npos) << error.text; // the argument's position
    EXPECT_EQ(errorOf([&] { invoke("Crash", 1); }), "VELMAR:COM:E2147614729");
    EXPECT_EQ(errorOf([&] { invoke("LeaveGarbage", 1); }), "VELMAR:COM:E2147500037");
    EXPECT_EQ(errorOf([&] { invoke("CrashWithOutput", 1); }), "VELMAR:COM:E2147614729");
    EXPECT_EQ(invoke("ReplaceView", 1).outputs[0].integer(), 7);
    // A result that doesn't fit what was declared.
    EXPECT_EQ(errorOf([&] { invoke("Small", 1); }), "VELMAR:COM:E2147614730");
}

TEST_F(MethodCall, TakesWhatAServerPutIntoTheSlotOfAVariant) {
    const Array inputs[] = {scalar(1), Array(hxCreateSharedDataCopy(object.get()))};
    for (const Array& input : inputs) {
        const auto both = call(object, "ReplaceVariant", 2, {input.get()});
        EXPECT_EQ(described(both[0]), "'new'");
        EXPECT_TRUE(handle(both[1]));
        // Given back where nobody wants it, too, and when the call fails.
        call(object, "ReplaceVariant", 1, {input.get()});
        Methods::isRefusing = true;
        EXPECT_NE(errorOf([&] { call(object, "ReplaceVariant", 2, {input.get()}); }), "");
        Methods::isRefusing = false;
    }
    EXPECT_TRUE(handle(call(object, "ReplaceOut", 1)[0]));
    const auto lied = call(object, "Lie", 2, {inputs[0].get(), inputs[0].get()});
    EXPECT_EQ(described(lied[0]), "double nan");
    EXPECT_EQ(described(lied[1]), "double 1");
}

TEST_F(MethodCall, ComesFromTheLanguageWithConversionsAndChoice) {
    const Array two = scalar(2.4);
    EXPECT_EQ(number(call(object, "Twice", 1, {two.get()})[0].get()), 4.8);
    std::vector<const hxArray*> inputs;
    for (const double sum : {112.4, 104.8, 7.2}) {
        inputs.push_back(two.get());
        EXPECT_DOUBLE_EQ(number(call(object, "Blend", 1, inputs)[0].get()), sum);
    }
    const auto swapped = call(object, "Swap", 2, {two.get(), two.get()});
    EXPECT_EQ(described(swapped[0]), "int32 2");
    EXPECT_NE(errorOf([&] { call(object, "Twice", 1); }), "");
    EXPECT_NE(errorOf([&] { call(object, "NoSuchMember", 1); }), "");
}

} // namespace
