// Libraries that misbehave as they are loaded, and what holds all the same.
#include "platform/registry_files.h"
#include "platform/text.h"
#include "support/registry_keys.h"
#include "support/server_fixture.h"

#include <cfenv>
#include <filesystem>
#include <xmmintrin.h>

namespace {

using namespace axlink2;
using namespace axlink2::test;

class Crashing : public Served<Crashing> {
  public:
    static constexpr const char* className = "Crashing";
    static void declare(Builder& builder) {
        builder.raw({.name = "Crash"}, [](Crashing&, kit::Call&) -> HRESULT { return crash(); });
    }
    [[gnu::no_sanitize("undefined")]] static HRESULT crash() {
        volatile int* volatile nowhere = nullptr;
        *nowhere = 1; // NOLINT: the fault that is wanted
        return S_OK;
    }
};

struct HostileLibrary : ServerTest, ::testing::WithParamInterface<const char*> {};

TEST_P(HostileLibrary, LeavesAllThatFollowsAsItWas) {
    platform::loadRegistryFile(std::filesystem::path(SAMPLE_FOLDER) / "sample_server.reg");
    const std::string name = std::filesystem::path(GetParam()).stem().string();
    kit::registerProgId(name, guidOf(name));
    OLECHAR id[39];
    StringFromGUID2(guidOf(name), id, 39);
    registerKeys(registryKey("CLSID\\" + platform::toNarrow(id) + "\\InprocServer32",
                             std::filesystem::path(GetParam()).generic_string()));
    const unsigned before = _mm_getcsr() & ~unsigned{_MM_EXCEPT_MASK};
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(errorOf([&] { startRegistered(name); }), "VELMAR:COM:servercreationfailed");

    EXPECT_EQ(_mm_getcsr() & ~unsigned{_MM_EXCEPT_MASK}, before);
    EXPECT_EQ(std::fegetround(), FE_TONEAREST);
    EXPECT_EQ(errorOf([&] { startRegistered("Sample.Server.1"); }), "");
    const Array crashing = start<Crashing>("Test.Crashing");
    for (int i = 0; i < 2; ++i)
        EXPECT_EQ(errorOf([&] { call(crashing, "Crash", 0); }), "VELMAR:COM:E2147614729");
}

INSTANTIATE_TEST_SUITE_P(, HostileLibrary, ::testing::Values(HOSTILE_LIBRARIES));

} // namespace
