// The module as the host loads it.
#include "classmodel/namespaces.h"
#include "comruntime/interned.h"
#include "host/class.h"
#include "host/embedding.h"
#include "support/alive_check.h"
#include "support/errors.h"
#include "support/registered_module.h"

namespace {

using namespace axlink2;

struct Module : test::AliveCheck {};

TEST_F(Module, IsLoadedFromItsLibraryAndOffersItsFunctions) {
    velmar::loadModule(AXLINK2_MODULE);
    velmar::loadModule(AXLINK2_MODULE);
    EXPECT_TRUE(velmar::hasFunction("actxserver"));
    EXPECT_TRUE(velmar::hasFunction("actxGetRunningServer"));
    const harray::unique_array progId(hxCreateString("No.Such.Server"));
    EXPECT_EQ(test::errorOf([&] { velmar::call("actxserver", 1, {progId.get()}); }),
              "VELMAR:COM:InvalidProgid");
    EXPECT_EQ(test::errorOf([&] { velmar::call("actxGetRunningServer", 1, {progId.get()}); }),
              "VELMAR:COM:invalidprogid");
}

TEST_F(Module, ThatIsMissingIsAClearError) {
    try {
        velmar::loadModule("/nowhere/axlink2.so");
        FAIL();
    } catch (const std::runtime_error& error) {
        EXPECT_NE(std::string(error.what()).find("/nowhere/axlink2.so"), std::string::npos);
    }
}

TEST_F(Module, RegistersItsNamespacesOnce) {
    hos::HOSPackage* com = hos::HOSPackage::getNamespace(internedId("COM"));
    hos::HOSPackage* interfaces = hos::HOSPackage::getNamespace(internedId("Interface"));
    ASSERT_TRUE(com && interfaces);
    EXPECT_STREQ(com->getName(), "COM");
    EXPECT_STREQ(interfaces->getName(), "Interface");
    RegisterAxlink2();
    EXPECT_EQ(hos::HOSPackage::getNamespace(internedId("COM")), com);
    hos::HOSInterfacePtr handle;
    com->findClass(&handle, "NeverMade", 0);
    EXPECT_FALSE(handle);
}

TEST_F(Module, KeepsAThreadInItsOwnApartment) {
    EXPECT_EQ(CoInitializeEx(nullptr, COINIT_MULTITHREADED), RPC_E_CHANGED_MODE);
}

} // namespace
