// Type information that fails or lies gives a smaller description: never a crash, never a leak.
#include "comruntime/description_text.h"
#include "comruntime/probe.h"
#include "support/alive_check.h"
#include "support/faulty/server.h"

#include <algorithm>

namespace {

using namespace axlink2;
using namespace axlink2::test;

// One of everything that a description reads.
std::unique_ptr<const kit::ClassDefinition> richDefinition() {
    auto base = Probe::Builder::interface_("IBase", guidOf("IBase"));
    base.raw({.name = "Base", .dispid = 30}, Probe::nothing);
    Probe::Builder builder = Probe::builder();
    builder.inherits(base)
        .type({.name = "Color", .constants = {{"red", 0}, {"green", 1}}})
        .type({.name = "Hue", .kind = TKIND_ALIAS, .target = kit::userType("Color")})
        .type({.name = "Other", .kind = TKIND_ALIAS, .target = kit::userType("IProbe")})
        .variable("Flag", &Probe::flag)
        .raw({.name = "F",
              .dispid = 20,
              .params = {{"a", kit::userType("Hue"), PARAMFLAG_FIN},
                         {"b", kit::userType("Other"), PARAMFLAG_FIN},
                         {"c", VT_I4, PARAMFLAG_FIN}}},
             Probe::nothing)
        .source("DEvents", guidOf("DEvents"))
        .event("Tick", {{"Count", VT_I4}, {"Name", VT_BSTR}});
    return builder.build();
}

struct FaultyTypeInformation : AliveCheck {
    const std::unique_ptr<const kit::ClassDefinition> definition = richDefinition();

    std::unique_ptr<COMTypeDescription> describe(FaultPlan& plan) {
        const auto real = kit::createDispatch<Probe>(*definition);
        std::unique_ptr<COMTypeDescription> description;
        {
            const auto server = faultyServer(real.get(), plan);
            description = COMTypeDescription::ofServer(server.get());
        }
        EXPECT_EQ(plan.outstanding, 0);
        return description;
    }
};

bool isPartOf(const COMMemberMap& part, const COMMemberMap& whole) {
    return std::all_of(part.begin(), part.end(),
                       [&](const auto& item) { return whole.contains(item.first); });
}

TEST_F(FaultyTypeInformation, WithEachCallFailingInTurnLosesMembersAndNothingElse) {
    FaultPlan healthy;
    const auto whole = describe(healthy);
    ASSERT_EQ(whole->members.size(), 3u);
    ASSERT_EQ(whole->events.size(), 1u);
    ASSERT_GT(healthy.calls, 40);

    for (const auto kind : {FaultPlan::Fail, FaultPlan::Garbage, FaultPlan::EmptySuccess}) {
        int smaller = 0;
        for (int call = 0; call < healthy.calls; ++call) {
            FaultPlan plan{.kind = kind, .failingCall = call};
            const auto description = describe(plan);
            if (!description) {
                ++smaller;
                continue;
            }
            EXPECT_TRUE(isPartOf(description->members, whole->members)) << call;
            EXPECT_TRUE(isPartOf(description->events, whole->events)) << call;
            if (textOf(description->members) != textOf(whole->members) ||
                textOf(description->events) != textOf(whole->events))
                ++smaller;
        }
        EXPECT_GT(smaller, healthy.calls / 3);
    }
}

TEST_F(FaultyTypeInformation, ThatLiesAboutItsCountsGivesWhatIsThere) {
    FaultPlan honest;
    FaultPlan lying{.lyingCount = 300};
    const auto whole = describe(honest);
    const auto description = describe(lying);
    EXPECT_EQ(textOf(description->members), textOf(whole->members));
    EXPECT_EQ(textOf(description->events), textOf(whole->events));
}

TEST_F(FaultyTypeInformation, ThatClaimsParametersItDoesNotGiveLosesTheFunctions) {
    FaultPlan plan{.lyingParameters = true};
    const auto description = describe(plan);
    EXPECT_EQ(textOf(description->members), "1 Flag get()->vt2 put()->vt0\n");
    EXPECT_TRUE(description->events.empty());
}

} // namespace
