// Methods: the choice among members of one name, and what a call does with its values.
#include "host/dispatcher.h"
#include "tests/host/host_test.h"

using namespace host_test;

namespace {

// A method that answers with `answer` in an "any" output.
MethodSpec answering(double answer, std::vector<const char*> inputs) {
    MethodSpec spec{"pick", std::move(inputs), {"any"}};
    spec.body = [answer](std::uint32_t& count, hos::HOSValue* outputs, std::int32_t,
                         hos::HOSValue*) {
        outputs[0] = hos::HOSValue::ofPointer(hxCreateDoubleScalar(answer));
        count = 1;
    };
    return spec;
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
          answering(5, {"class", "any"})}});
    const unique_array one = shape.makeArray();
    const unique_array two = shape.makeArray(2);
    EXPECT_EQ(pick(one.get(), {number(1).get()}), 3);
    EXPECT_EQ(pick(one.get(), {number(1, hxINT32_CLASS).get()}), 4);
    EXPECT_EQ(pick(one.get(), {number(1, hxINT8_CLASS).get()}), 3); // the first of two equals
    EXPECT_EQ(pick(one.get(), {text("a").get()}), 5);
    EXPECT_EQ(pick(one.get(), {row({1, 2}).get()}), 5);
    EXPECT_EQ(pick(two.get(), {text("a").get()}), 5);

    const TestClass loose(
        {{answering(1, {"handle scalar", "any"}), answering(2, {"handle vector", "asciiString"})}});
    EXPECT_EQ(pick(loose.makeArray().get(), {text("a").get()}), 1);
    EXPECT_EQ(pick(loose.makeArray(2).get(), {text("a").get()}), 2);
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
    EXPECT_EQ(pick(object.get(), {}), 4);
    EXPECT_EQ(pick(object.get(), {a.get()}), 3);
    EXPECT_EQ(pick(object.get(), {a.get(), a.get()}), 1);
    EXPECT_EQ(pick(object.get(), {a.get(), a.get(), a.get()}), 2);
}

TEST_F(Methods, NoFitListsTheCandidates) {
    const TestClass shape({{answering(1, {"class", "double scalar"}),
                            {"secret", {"class"}, {}, {}, 0, false, false, 1}}});
    const unique_array object = shape.makeArray();
    try {
        pick(object.get(), {text("a").get()});
        FAIL();
    } catch (...) {
        const velmar::ErrorText error = velmar::describeError(std::current_exception());
        EXPECT_EQ(error.identifier, "VELMAR:NoMatchingSignature");
        EXPECT_NE(error.text.find("any = pick(" + shape.id().str() + ", double scalar)"),
                  std::string::npos)
            << error.text;
    }
    EXPECT_EQ(errorOf([&] { velmar::callMember(object.get(), "secret", 0, {}); }),
              "VELMAR:UndefinedFunction");
    EXPECT_EQ(errorOf([&] { velmar::callMember(object.get(), "none", 0, {}); }),
              "VELMAR:UndefinedFunction");
    EXPECT_FALSE(velmar::hasMethod(object.get(), "secret"));
}

TEST_F(Methods, ValuesArriveAndLeaveInTheFormOfTheirTypes) {
    MethodSpec spec{"mix",
                    {"class", "int16 scalar", "double scalar", "logical scalar", "asciiString",
                     "unicodeString", "cell"},
                    {"int16 scalar", "single scalar", "logical scalar", "unicodeString", "any"}};
    spec.body = [](std::uint32_t& count, hos::HOSValue* outputs, std::int32_t given,
                   hos::HOSValue* inputs) {
        ASSERT_EQ(given, 7);
        EXPECT_EQ(inputs[1].integer(), -3);
        EXPECT_EQ(inputs[2].number(), 2.5);
        EXPECT_EQ(inputs[3].word(), 1u);
        EXPECT_STREQ(inputs[4].pointer<const char>(), "name");
        EXPECT_EQ(*inputs[5].text(), u"wide");
        EXPECT_EQ(hxGetClassID(inputs[6].array()), hxCELL_CLASS);
        outputs[0] = inputs[1];
        outputs[1] = inputs[2];
        outputs[2] = inputs[3];
        outputs[3] = hos::HOSValue::ofPointer(new std::u16string(u"back"));
        outputs[4] = hos::HOSValue::ofPointer(hxCreateDoubleScalar(9));
        count = 5;
    };
    const TestClass shape({{spec}});
    const unique_array object = shape.makeArray();
    const unique_array cell(hxCreateCellMatrix(1, 1));
    const unique_array inputs[] = {number(-2.6), number(2.5), number(1), text("name"),
                                   text("wide")};
    const std::vector<const hxArray*> given{inputs[0].get(), inputs[1].get(), inputs[2].get(),
                                            inputs[3].get(), inputs[4].get(), cell.get()};
    const velmar::Arrays outputs = velmar::callMember(object.get(), "mix", 5, given);
    EXPECT_EQ(hxGetClassID(outputs[0].get()), hxINT16_CLASS);
    EXPECT_EQ(hxGetScalar(outputs[0].get()), -3);
    EXPECT_EQ(hxGetClassID(outputs[1].get()), hxSINGLE_CLASS);
    EXPECT_EQ(hxGetClassID(outputs[2].get()), hxLOGICAL_CLASS);
    EXPECT_EQ(textOf(outputs[3].get()), "back");
    EXPECT_EQ(hxGetScalar(outputs[4].get()), 9);
    // Outputs that nobody asked for end without being converted.
    EXPECT_EQ(velmar::callMember(object.get(), "mix", 0, given).size(), 1u);
}

TEST_F(Methods, WhatStandsInTheOutputsEndsWhenACallFails) {
    MethodSpec spec{"fail", {"class", "unicodeString"}, {"unicodeString", "any"}};
    spec.body = [](std::uint32_t&, hos::HOSValue* outputs, std::int32_t, hos::HOSValue*) {
        outputs[0] = hos::HOSValue::ofPointer(new std::u16string(u"half done"));
        outputs[1] = hos::HOSValue::ofPointer(hxCreateDoubleScalar(1));
        velmar::raiseError("Test:failed", "no");
    };
    const TestClass shape({{spec}});
    const unique_array object = shape.makeArray();
    EXPECT_EQ(errorOf([&] { velmar::callMember(object.get(), "fail", 2, {text("x").get()}); }),
              "Test:failed");
}

TEST_F(Methods, UnsetOutputsAreEmptyDoublesAndExcessOnesAreRefused) {
    MethodSpec silent{"silent", {"class"}, {"any", "any"}};
    silent.body = [](std::uint32_t&, hos::HOSValue*, std::int32_t, hos::HOSValue*) {};
    MethodSpec none{"none", {"class"}, {}};
    MethodSpec many = answering(1, {"class"});
    many.name = "many";
    many.variableOutput = true;
    const TestClass shape({{silent, none, many}});
    const unique_array object = shape.makeArray();
    const velmar::Arrays outputs = velmar::callMember(object.get(), "silent", 2, {});
    ASSERT_EQ(outputs.size(), 2u);
    EXPECT_EQ(hxGetClassID(outputs[1].get()), hxDOUBLE_CLASS);
    EXPECT_EQ(hxGetM(outputs[1].get()), 0u);
    EXPECT_TRUE(velmar::callMember(object.get(), "silent", 0, {}).empty());
    EXPECT_EQ(errorOf([&] { velmar::callMember(object.get(), "silent", 3, {}); }), "VELMAR:maxlhs");
    EXPECT_EQ(errorOf([&] { velmar::callMember(object.get(), "none", 1, {}); }), "VELMAR:maxlhs");
    EXPECT_EQ(velmar::callMember(object.get(), "many", 3, {}).size(), 3u);
}

TEST_F(Methods, TheDispatcherPutsMembersOfAnyInputBeforeFunctions) {
    MethodSpec spec = answering(42, {"any", "class"});
    const TestClass shape({{spec}});
    velmar::defineFunction("pick", [](int, unique_array* outputs, int, const hxArray* const*) {
        outputs[0] = number(-1);
    });
    const unique_array object = shape.makeArray();
    const unique_array one = number(1);
    const auto call = [](const std::vector<const hxArray*>& inputs) {
        return hxGetScalar(velmar::call("pick", 1, inputs)[0].get());
    };
    EXPECT_EQ(call({one.get(), object.get()}), 42);
    EXPECT_EQ(call({one.get()}), -1);
    const unique_array name = text("pick");
    EXPECT_EQ(
        hxGetScalar(velmar::call("builtin", 1, {name.get(), one.get(), object.get()})[0].get()),
        -1);
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
    constructor.body = [](std::uint32_t& count, hos::HOSValue* outputs, std::int32_t,
                          hos::HOSValue* inputs) {
        EXPECT_TRUE(hoIsHOS(outputs[0].array()));
        if (std::string(inputs[0].pointer<const char>()) == "bad")
            velmar::raiseError("Test:bad", "bad");
        count = 1;
    };
    const TestClass shape({{constructor}});
    const TestClass bare({});
    const unique_array good = text("good");
    const velmar::Arrays made = velmar::call(shape.id().str(), 0, {good.get()});
    EXPECT_EQ(hoGetClassID(made.at(0).get()), shape.id());
    EXPECT_EQ(errorOf([&] { velmar::call(shape.id().str(), 1, {text("bad").get()}); }), "Test:bad");
    EXPECT_EQ(errorOf([&] { velmar::call(shape.id().str(), 1, {}); }),
              "VELMAR:NoMatchingSignature");
    EXPECT_EQ(errorOf([&] { velmar::call(bare.id().str(), 1, {}); }), "VELMAR:class:NoConstructor");
}
