// Functions, function handles and modules of an embedding program.
#include "tests/host/host_test.h"

using namespace host_test;

class Embedding : public HostTest {};

TEST_F(Embedding, FunctionsAreCalledDefinedAnewAndFillUnsetOutputs) {
    velmar::defineFunction("twice",
                           [](int, unique_array* outputs, int, const hxArray* const* inputs) {
                               outputs[0] = number(2 * hxGetScalar(inputs[0]));
                           });
    const unique_array three = number(3);
    const velmar::Arrays outputs = velmar::call("twice", 2, {three.get()});
    ASSERT_EQ(outputs.size(), 2u);
    EXPECT_EQ(hxGetScalar(outputs[0].get()), 6);
    EXPECT_EQ(hxGetNumberOfElements(outputs[1].get()), 0u);
    velmar::defineFunction("twice", [](int, unique_array*, int, const hxArray* const*) {
        // Defining a function anew while it runs leaves this call whole.
        velmar::defineFunction("twice", [](int, unique_array*, int, const hxArray* const*) {});
        velmar::raiseError("Test:inner", "inner");
    });
    EXPECT_EQ(errorOf([&] { velmar::call("twice", 0, {three.get()}); }), "Test:inner");
    EXPECT_TRUE(velmar::call("twice", 0, {three.get()}).empty());
    EXPECT_TRUE(velmar::hasFunction("disp"));
    EXPECT_FALSE(velmar::hasFunction("thrice"));
}

TEST_F(Embedding, FunctionHandlesKeepWhatTheyHold) {
    const auto held = std::make_shared<int>(1);
    {
        const unique_array handle =
            velmar::createFunctionHandle("@f", [held](int, auto*, int, auto*) {});
        const unique_array copy(hxCreateSharedDataCopy(handle.get()));
        EXPECT_STREQ(hxGetClassName(copy.get()), "function_handle");
        EXPECT_EQ(velmar::textOfHandle(copy.get()), "@f");
    }
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_EQ(velmar::functionOfHandle(number(1).get()), nullptr);
}

TEST_F(Embedding, AModuleThatIsNoneIsRefusedWithItsName) {
    // The second one is a library without the functions of a module: the host.
    const std::pair<const char*, const char*> rows[] = {{"no/such/module.so", "no/such/module.so"},
                                                        {HOST_LIBRARY, "RegisterAxlink2"}};
    for (const auto& [library, part] : rows) {
        const auto error =
            axlink2::test::describedErrorOf([name = library] { velmar::loadModule(name); });
        EXPECT_NE(error.text.find(part), std::string::npos) << error.text;
    }
}
