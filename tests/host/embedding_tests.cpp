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
        const unique_array handle = velmar::createFunctionHandle(
            "@f", [held](int, unique_array* outputs, int, const hxArray* const*) {
                outputs[0] = number(*held);
            });
        const unique_array copy(hxCreateSharedDataCopy(handle.get()));
        EXPECT_STREQ(hxGetClassName(copy.get()), "function_handle");
        EXPECT_EQ(velmar::textOfHandle(copy.get()), "@f");
        unique_array output;
        (*velmar::functionOfHandle(copy.get()))(1, &output, 0, nullptr);
        EXPECT_EQ(hxGetScalar(output.get()), 1);
    }
    EXPECT_EQ(held.use_count(), 1);
    EXPECT_EQ(velmar::functionOfHandle(number(1).get()), nullptr);
}

TEST_F(Embedding, AModuleThatIsNoneIsRefusedWithItsName) {
    try {
        velmar::loadModule("no/such/module.so");
        FAIL();
    } catch (const std::runtime_error& error) {
        EXPECT_NE(std::string(error.what()).find("no/such/module.so"), std::string::npos);
    }
    // A library without the functions of a module: the one of this test's own host.
    try {
        velmar::loadModule(HOST_LIBRARY);
        FAIL();
    } catch (const std::runtime_error& error) {
        EXPECT_NE(std::string(error.what()).find("RegisterAxlink2"), std::string::npos);
    }
}
