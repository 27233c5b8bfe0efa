// Methods: the choice among members of one name, and what a call does with its values.
#include "host/dispatcher.h"
#include "tests/host/host_test.h"

using namespace host_test;

namespace {

// A method that answers with `answer` in an "any" output.
MethodSpec answering(double answer, std::vector<const char*> inputs) {
    return {"pick", std::move(inputs), {"any"}, [answer](Call call) {
                call.give(hxCreateDoubleScalar(answer));
            }};
}

double pick(const hxArray* object, const std::vector<const hxArray*>& inputs) {
    const velmar::Arrays outputs = velmar::callMember(object, "pick", 1, inputs);
    return hxGetScalar(outputs.at(0).get());
}

} // namespace

class Methods : public HostTest {};

TEST_F(Methods, TheCloserTypeWinsFromLeftToRight) {
    const TestClass shape(
        {{answering(1, {"handle scalar", "any"}), answering(2, {"handle vector", "asciiString"}),
          answering(3, {"class", "double scalar"}), answering(4, {"class", "int32 scalar"}),
          answering(5, {"class", "any"}), answering(6, {"class", "cell"})}});
    const TestClass loose(
        {{answering(1, {"handle scalar", "any"}), answering(2, {"handle vector", "asciiString"})}});
    const struct {
        unique_array object, input;
        double answer;
    } rows[] = {
        {shape.makeArray(), number(1), 3},
        {shape.makeArray(), number(1, hxINT32_CLASS), 4},
        {shape.makeArray(), number(1, hxINT8_CLASS), 3}, // the first of two equals
        {shape.makeArray(), text("a"), 5},
        {shape.makeArray(), row({1, 2}), 5},
        {shape.makeArray(2), text("a"), 5},
        {shape.makeArray(), unique_array(hxCreateCellMatrix(1, 1)), 6},
        {loose.makeArray(), text("a"), 1},
        {loose.makeArray(2), text("a"), 2},
    };
    for (const auto& row : rows)
        EXPECT_EQ(pick(row.object.get(), {row.input.get()}), row.answer);
}

TEST_F(Methods, OnesThatGiveTheWantedOutputsComeFirst) {
    MethodSpec silent = {"pick", {"class", "asciiString"}, {}, [](Call) {}};
    const TestClass shape({{silent, answering(2, {"class", "any"})}});
    const unique_array object = shape.makeArray();
    const unique_array a = text("a");
    EXPECT_TRUE(velmar::callMember(object.get(), "pick", 0, {a.get()}).empty());
    EXPECT_EQ(pick(object.get(), {a.get()}), 2);
    EXPECT_EQ(errorOf([&] { velmar::callMember(object.get(), "pick", 2, {a.get()}); }),
              "VELMAR:maxlhs");
}

TEST_F(Methods, AnExactCountBeatsOptionalAndVariableInputs) {
    MethodSpec optional = answering(1, {"class", "asciiString", "any"});
    optional.optional = 1;
    MethodSpec variable = answering(2, {"class", "asciiString", "any"});
    variable.variableInput = true;
    const TestClass shape({{optional, variable, answering(3, {"handle scalar", "any"}),
                            answering(4, {"handle scalar"})}});
    const unique_array object = shape.makeArray();
    const unique_array a = text("a");
    std::vector<const hxArray*> inputs;
    for (const double answer : {4, 3, 1, 2}) {
        EXPECT_EQ(pick(object.get(), inputs), answer);
        inputs.push_back(a.get());
    }
}

TEST_F(Methods, NoFitListsTheCandidates) {
    const TestClass shape({{answering(1, {"class", "double scalar"}),
                            {"secret", {"class"}, {}, {}, 0, false, false, 1}}});
    const unique_array object = shape.makeArray();
    const auto error =
        axlink2::test::describedErrorOf([&] { pick(object.get(), {text("a").get()}); });
    EXPECT_EQ(error.identifier, "VELMAR:NoMatchingSignature");
    const std::string candidate = "any = pick(" + shape.id().str() + ", double scalar)";
    EXPECT_NE(error.text.find(candidate), std::string::npos) << error.text;
    for (const char* unknown : {"secret", "none"})
        EXPECT_EQ(errorOf([&] { velmar::callMember(object.get(), unknown, 0, {}); }),
                  "VELMAR:UndefinedFunction");
    EXPECT_FALSE(velmar::hasMethod(object.get(), "secret"));
}

TEST_F(Methods, WhatStandsInTheOutputsEndsWhenACallFails) {
    MethodSpec spec{"fail", {"class", "unicodeString"}, {"unicodeString", "any", "int16 scalar"}};
    spec.body = [](Call call) {
        call.give(new std::u16string(u"half done"), hxCreateDoubleScalar(1));
        call.outputs[call.outputCount++] = hos::HOSValue::ofInteger(1);
        velmar::raiseError("Test:failed", "no");
    };
    const unique_array object = TestClass({{spec}}).makeArray();
    EXPECT_EQ(errorOf([&] { velmar::callMember(object.get(), "fail", 3, {text("x").get()}); }),
              "Test:failed");
}

TEST_F(Methods, UnsetOutputsAreEmptyDoublesAndExcessOnesAreRefused) {
    MethodSpec many = answering(1, {"class"});
    many.name = "many";
    many.variableOutput = true;
    const TestClass shape(
        {{{"silent", {"class"}, {"any", "any"}, [](Call) {}}, {"none", {"class"}}, many}});
    const unique_array object = shape.makeArray();
    const auto call = [&](const char* method, int outputs) {
        return velmar::callMember(object.get(), method, outputs, {});
    };
    const velmar::Arrays outputs = call("silent", 2);
    ASSERT_EQ(outputs.size(), 2u);
    EXPECT_EQ(hxGetClassID(outputs[1].get()), hxDOUBLE_CLASS);
    EXPECT_EQ(hxGetM(outputs[1].get()), 0u);
    EXPECT_TRUE(call("silent", 0).empty());
    EXPECT_EQ(errorOf([&] { call("silent", 3); }), "VELMAR:maxlhs");
    EXPECT_EQ(errorOf([&] { call("none", 1); }), "VELMAR:maxlhs");
    EXPECT_EQ(call("many", 3).size(), 3u);
    EXPECT_EQ(call("many", 0).size(), 1u);
}

TEST_F(Methods, TheDispatcherPutsMembersOfAnyInputBeforeFunctions) {
    velmar::defineFunction("pick", [](int, auto* outputs, int, auto*) { outputs[0] = number(-1); });
    const unique_array object = TestClass({{answering(42, {"any", "class"})}}).makeArray();
    const unique_array one = number(1);
    const unique_array name = text("pick");
    const auto call = [](const char* function, const std::vector<const hxArray*>& inputs) {
        return hxGetScalar(velmar::call(function, 1, inputs)[0].get());
    };
    EXPECT_EQ(call("pick", {one.get(), object.get()}), 42);
    EXPECT_EQ(call("pick", {one.get()}), -1);
    EXPECT_EQ(call("builtin", {name.get(), one.get(), object.get()}), -1);
    EXPECT_EQ(errorOf([&] { velmar::call("nobody", 0, {object.get()}); }),
              "VELMAR:UndefinedFunction");
}

TEST_F(Methods, SuperclassesAddTheirMethodsBehindTheOwn) {
    const TestClass base({{answering(1, {"any", "asciiString"}), answering(2, {"any", "any"})}});
    const std::string baseName = base.id().str();
    ClassSpec derivedSpec{{answering(3, {"class", "double scalar"})}};
    derivedSpec.superclasses = {baseName.c_str(), "velmar.mixin.CustomDisplay"};
    const TestClass derived(derivedSpec);
    const unique_array object = derived.makeArray();
    EXPECT_TRUE(hxIsA(object.get(), baseName.c_str()));
    EXPECT_TRUE(hxIsA(object.get(), "velmar.mixin.CustomDisplay"));
    EXPECT_EQ(pick(object.get(), {number(1).get()}), 3);
    EXPECT_EQ(pick(object.get(), {text("x").get()}), 1);
    EXPECT_EQ(pick(object.get(), {row({1, 2}).get()}), 2);
}

TEST_F(Methods, AClassNameCallsItsConstructorOnANewObject) {
    MethodSpec constructor{"own name", {"asciiString"}, {"any"}};
    constructor.body = [](Call call) {
        EXPECT_TRUE(hoIsHOS(call.outputs[0].array()));
        if (std::string(call.inputs[0].pointer<const char>()) == "bad")
            velmar::raiseError("Test:bad", "bad");
        call.outputCount = 1;
    };
    const TestClass shape({{constructor}});
    const TestClass bare({});
    const auto make = [](const TestClass& type, const std::vector<const hxArray*>& inputs) {
        return velmar::call(type.id().str(), 1, inputs);
    };
    const unique_array good = text("good");
    EXPECT_EQ(hoGetClassID(make(shape, {good.get()}).at(0).get()), shape.id());
    EXPECT_EQ(errorOf([&] { make(shape, {text("bad").get()}); }), "Test:bad");
    EXPECT_EQ(errorOf([&] { make(shape, {}); }), "VELMAR:NoMatchingSignature");
    EXPECT_EQ(errorOf([&] { make(bare, {}); }), "VELMAR:class:NoConstructor");
}
