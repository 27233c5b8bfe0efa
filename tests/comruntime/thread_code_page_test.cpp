// Names are UTF-8 whatever narrow text is to the thread, which only Windows lets a program choose.
#include "comruntime/description_text.h"
#include "comruntime/probe.h"
#include "support/alive_check.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;

using ThreadCodePage = AliveCheck;

TEST_F(ThreadCodePage, DoesNotChangeNames) {
    const LCID before = GetThreadLocale();
    ASSERT_TRUE(SetThreadLocale(MAKELCID(MAKELANGID(LANG_RUSSIAN, SUBLANG_DEFAULT), SORT_DEFAULT)));
    Probe::Builder builder = Probe::builder();
    builder.raw({.name = "Gr\u00F6\u00DFe\u4E2D", .dispid = 1}, Probe::nothing);
    const auto description = describe(*builder.build());
    SetThreadLocale(before);
    EXPECT_EQ(textOf(description->members), "1 Gr\u00F6\u00DFe\u4E2D method()->vt24\n");
}

} // namespace
