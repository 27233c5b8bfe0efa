// What a server's type information becomes.
#include "comruntime/description_text.h"
#include "comruntime/probe.h"
#include "comruntime/type_description.h"
#include "servers/kit/type_library.h"
#include "support/alive_check.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;
using kit::FunctionSpec;
using kit::ParamSpec;
using kit::pointerTo;
using kit::safeArrayOf;
using kit::userType;
using platform::ComPtr;

constexpr WORD in = PARAMFLAG_FIN;
constexpr WORD out = PARAMFLAG_FOUT;
constexpr WORD optional = PARAMFLAG_FOPT;
constexpr WORD retval = PARAMFLAG_FOUT | PARAMFLAG_FRETVAL;

// An enumeration, aliases, a record and an interface to refer to.
Probe::Builder& withTypes(Probe::Builder& builder) {
    return builder
        .type({.name = "Color", .constants = {{"red", 0}, {"_secret", 1}, {"crimson", -1}}})
        .type({.name = "_Hidden", .constants = {{"a", 0}}})
        .type({.name = "Hue", .kind = TKIND_ALIAS, .target = userType("Color")})
        .type({.name = "Number", .kind = TKIND_ALIAS, .target = VT_I4})
        .type({.name = "Point", .kind = TKIND_RECORD, .fields = {{"x", VT_R8}, {"y", VT_R8}}})
        .type({.name = "Other", .kind = TKIND_ALIAS, .target = userType("IProbe")})
        .type({.name = "OtherPtr", .kind = TKIND_ALIAS, .target = pointerTo(userType("IProbe"))});
}

std::unique_ptr<COMTypeDescription> describeOne(const FunctionSpec& spec) {
    Probe::Builder builder = Probe::builder();
    withTypes(builder).raw(spec, Probe::nothing);
    return describe(*builder.build());
}

struct TypeDescription : AliveCheck {};

TEST_F(TypeDescription, OfAFunctionFollowsItsFlagsAndTypes) {
    struct Row {
        FunctionSpec spec;
        const char* text; // empty when the member is left out
    };
    const std::string name = "F";
    const auto function = [&](std::vector<ParamSpec> params, kit::TypeSpec result = VT_VOID) {
        return FunctionSpec{.name = name, .dispid = 1, .result = result, .params = params};
    };
    const auto half = [&](INVOKEKIND kind, std::vector<ParamSpec> params,
                          kit::TypeSpec result = VT_VOID) {
        FunctionSpec spec = function(std::move(params), std::move(result));
        spec.kind = kind;
        return spec;
    };
    const auto flagged = [&](FunctionSpec spec, int flags) {
        spec.flags = static_cast<WORD>(flags);
        return spec;
    };
    const Row rows[] = {
        {function({}), "F method()->vt24"},
        {function({{"a", VT_R8, in}, {"b", VT_I4, in}}, VT_BSTR),
         "F method(1:vt5 a, 1:vt3 b)->vt8 required"},
        // Neither in nor out is in.
        {function({{"a", VT_R8, 0}}), "F method(1:vt5 a)->vt24 required"},
        {function({{"a", VT_R8, optional}}), "F method(11:vt5 a)->vt24 optional=1"},
        {function({{"a", pointerTo(VT_I4), out}}), "F method(2:vt3& a)->vt24"},
        {function({{"a", pointerTo(pointerTo(VT_BSTR)), in | out}}),
         "F method(3:vt8& a)->vt24 required"},
        {function({{"r", pointerTo(VT_VARIANT), retval}}, VT_HRESULT), "F method()->vt12"},
        {function({{"r", pointerTo(VT_VARIANT), retval}, {"a", VT_R8, in}}, VT_HRESULT),
         "F method(1:vt5 a)->vt12 required"},
        {function({}, pointerTo(VT_I4)), "F method()->vt26"},
        {function({{"a", safeArrayOf(VT_R8), in}, {"b", pointerTo(safeArrayOf(VT_BSTR)), out}},
                  safeArrayOf(pointerTo(VT_I4))),
         "F method(1:array(5,in) a, 2:array(8,out)& b)->array(3,out) required"},
        {function({{"a", userType("Color"), in}, {"b", pointerTo(userType("Hue")), out}}),
         "F method(1:Color a, 2:Hue& b)->vt24 required"},
        {function({{"a", userType("Point"), in}}, userType("Number")),
         "F method(1:vt12 a)->vt12 required"},
        {function({{"a", userType("_Hidden"), in}}), "F method(1:vt12 a)->vt24 required"},
        {function({{"a", pointerTo(pointerTo(userType("IProbe"))), in},
                   {"b", userType("Other"), in},
                   {"c", userType("OtherPtr"), in}}),
         "F method(1:vt9& a, 1:vt9 b, 1:vt9 c)->vt24 required"},
        {function({{"a", kit::fixedArrayOf(VT_I4, {{3, 0}}), in}}),
         "F method(1:vt28 a)->vt24 required"},
        {function({{"a", VT_INT_PTR, in}}), ""},
        {function({{"a", pointerTo(VT_UINT_PTR), retval}}, VT_HRESULT), ""},
        {function({}, VT_INT_PTR), ""},
        {flagged(function({}), FUNCFLAG_FHIDDEN), ""},
        {flagged(function({}), FUNCFLAG_FRESTRICTED), ""},
        {half(INVOKE_PROPERTYGET, {{"r", pointerTo(VT_I4), retval}}, VT_HRESULT), "F get()->vt3"},
        {half(INVOKE_PROPERTYGET, {{"i", VT_I4, in}}, VT_BSTR), "F get(1:vt3 i)->vt8 required"},
        // A property ends before its first optional parameter; its [retval] stands behind it.
        {half(INVOKE_PROPERTYGET, {{"i", VT_I4, optional}, {"j", VT_I4, optional}}, VT_BSTR),
         "F get()->vt8 optional=2"},
        {half(INVOKE_PROPERTYGET,
              {{"i", VT_I4, optional},
               {"j", VT_INT_PTR, in | optional},
               {"r", pointerTo(VT_R8), retval}},
              VT_HRESULT),
         "F get()->vt5 optional=2"},
        {half(INVOKE_PROPERTYPUT, {{"v", VT_I4, in}}, VT_INT_PTR),
         "F put(1:vt3)->unsupported required"},
        {half(INVOKE_PROPERTYPUTREF, {{"v", VT_DISPATCH, in}}), "F putref(1:vt9)->vt24 required"},
        {half(INVOKE_PROPERTYPUTREF, {{"v", VT_DISPATCH, in}}, VT_INT_PTR), ""},
    };
    for (const Row& row : rows) {
        const auto description = describeOne(row.spec);
        const std::string expected = *row.text ? "1 " + std::string(row.text) + "\n" : "";
        EXPECT_EQ(textOf(description->members), expected);
    }
}

TEST_F(TypeDescription, SaysWhichMembersBecomeMethodsAndWhichProperties) {
    struct Half {
        int kind;
        bool requiresInput = false;
    };
    struct Row {
        std::vector<Half> halves;
        bool isMethod;
        bool isProperty;
        const char* result;
    };
    const Row rows[] = {
        {{{INVOKE_FUNC}}, true, false, "vt1"},
        {{{INVOKE_PROPERTYGET}}, false, true, "vt2"},
        {{{INVOKE_PROPERTYGET, true}}, true, false, "vt2"},
        {{{INVOKE_PROPERTYPUT, true}}, false, false, "vt24"},
        {{{INVOKE_PROPERTYPUT}}, false, true, "vt24"},
        {{{INVOKE_PROPERTYPUTREF}}, false, true, "vt24"},
        {{{INVOKE_PROPERTYGET}, {INVOKE_PROPERTYPUT, true}}, false, true, "vt2"},
        {{{INVOKE_PROPERTYGET, true}, {INVOKE_PROPERTYPUT, true}}, true, false, "vt2"},
        {{{INVOKE_FUNC}, {INVOKE_PROPERTYGET}}, true, true, "vt1"},
        {{}, false, false, "vt24"},
    };
    for (const Row& row : rows) {
        COMMemberEntry entry("P");
        for (const Half& half : row.halves) {
            auto signature = std::make_unique<COMMemberSignature>();
            signature->requiresInput = half.requiresInput;
            signature->returnType = static_cast<VARTYPE>(half.kind);
            entry.set(half.kind, std::move(signature));
        }
        EXPECT_EQ(entry.isMethod(), row.isMethod) << textOf(entry);
        EXPECT_EQ(entry.isProperty(), row.isProperty) << textOf(entry);
        EXPECT_EQ(textOf(entry.resultType()), row.result);
    }
}

TEST_F(TypeDescription, ReadsEnumerationsOnceWithoutHiddenConstants) {
    const auto description = describeOne({.name = "F",
                                          .dispid = 1,
                                          .params = {{"a", userType("Color"), in},
                                                     {"b", userType("Color"), in},
                                                     {"c", userType("Hue"), in}}});
    ASSERT_EQ(description->enumerations.size(), 2u);
    for (const char* name : {"Color", "Hue"}) { // which is an alias of the other
        const auto& constants = description->enumerations.at(name);
        ASSERT_EQ(constants.size(), 2u) << name;
        EXPECT_EQ(constants[0].name, "red");
        EXPECT_EQ(constants[1].name, "crimson");
        EXPECT_EQ(constants[1].value, -1);
    }
}

TEST_F(TypeDescription, KeepsConstantsOfOtherWidthsThatFit) {
    Probe::Builder builder = Probe::builder();
    builder.type({.name = "Wide",
                  .constants = {{"small", 7, VT_I2}, {"large", 1LL << 40, VT_I8}, {"plain", 2}}});
    builder.raw({.name = "F", .dispid = 1, .params = {{"a", userType("Wide"), in}}},
                Probe::nothing);
    const auto description = describe(*builder.build());
    const auto& constants = description->enumerations.at("Wide");
    ASSERT_EQ(constants.size(), 2u);
    EXPECT_EQ(constants[0].value, 7);
    EXPECT_EQ(constants[1].name, "plain");
}

TEST_F(TypeDescription, MergesVariablesBasesAndHalvesByDispid) {
    auto base = Probe::Builder::interface_("IBase", guidOf("IBase"));
    base.raw({.name = "Shared", .dispid = 5, .result = VT_I4}, Probe::nothing);
    Probe::Builder builder = Probe::builder();
    builder.inherits(base)
        .variable("Flag", &Probe::flag)
        .dispid(2)
        .variable("Number", &Probe::number)
        .dispid(3)
        .readOnly()
        .variable("Hidden", &Probe::number)
        .dispid(4)
        .hidden()
        .variable("Restricted", &Probe::number)
        .dispid(11)
        .restricted()
        .variable("Pointer", &Probe::number)
        .dispid(12)
        .declare(pointerTo(VT_I4))
        .variable("Numbers", &Probe::number)
        .dispid(13)
        .declare(safeArrayOf(VT_R8))
        .raw({.name = "_Secret", .dispid = 6}, Probe::nothing)
        .raw({.name = "Half", .dispid = 8, .kind = INVOKE_PROPERTYGET, .result = VT_I2},
             Probe::nothing)
        .raw({.name = "Unknown", .dispid = 10}, Probe::nothing)
        .unknownByName();
    const auto description = describe(*builder.build());
    ASSERT_NE(description, nullptr);
    EXPECT_EQ(textOf(description->members), "2 Flag get()->vt2 put()->vt0\n"
                                            "3 Number get()->vt3\n"
                                            "5 Shared method()->vt3\n"
                                            "8 Half get()->vt2\n"
                                            "12 Pointer get()->vt26 put()->vt0\n"
                                            "13 Numbers get()->array(5,out) put()->vt0\n");
}

// Only a dispinterface repeats what it inherits; the bases of others are walked.
TEST_F(TypeDescription, TakesABasesSignatureUnderTheNameThatCameFirst) {
    auto root = Probe::Builder::interface_("IRoot", guidOf("IRoot"));
    root.interfaceKind(TKIND_INTERFACE).raw({.name = "Root", .dispid = 21}, Probe::nothing);
    auto base = Probe::Builder::interface_("IBase", guidOf("IBase"));
    base.interfaceKind(TKIND_INTERFACE)
        .inherits(root)
        .raw({.name = "Shared", .dispid = 5, .result = VT_I4}, Probe::nothing)
        .raw({.name = "BaseOnly", .dispid = -7}, Probe::nothing)
        .raw({.name = "Same", .dispid = 9}, Probe::nothing);
    Probe::Builder builder = Probe::builder();
    builder.interfaceKind(TKIND_INTERFACE)
        .inherits(base)
        .raw({.name = "Mine", .dispid = 5, .result = VT_R8}, Probe::nothing)
        .raw({.name = "Same", .dispid = 8}, Probe::nothing);
    const auto description = describe(*builder.build());
    ASSERT_NE(description, nullptr);
    EXPECT_EQ(textOf(description->members), "-7 BaseOnly method()->vt24\n"
                                            "5 Mine method()->vt3\n"
                                            "8 Same method()->vt24\n"
                                            "9 Same method()->vt24\n"
                                            "21 Root method()->vt24\n");
}

TEST_F(TypeDescription, TakesEventsFromTheDefaultSourceOfTheFirstCoclassThatListsTheInterface) {
    const IID source = guidOf("DProbeEvents");
    Probe::Builder builder = Probe::builder();
    builder.source("DProbeEvents", source)
        .event("Tick", {{"Count", VT_I4}, {"Last", pointerTo(VT_BOOL), in | out | retval}})
        .event("_Private")
        .event("Done")
        .event("Odd", {{"p", VT_INT_PTR}});
    const auto description = describe(*builder.build());
    EXPECT_EQ(description->sourceInterfaceIID, source);
    EXPECT_EQ(textOf(description->events), "1 Tick method(1:vt3 Count, b:vt11& Last)->vt0\n"
                                           "3 Done method()->vt0\n");

    const auto without = describeOne({.name = "F", .dispid = 1});
    EXPECT_EQ(without->sourceInterfaceIID, GUID_NULL);
    EXPECT_TRUE(without->events.empty());
}

// A library of these coclasses, whose interfaces all are there.
ComPtr<ITypeLib> libraryOf(const std::vector<kit::CoclassSpec>& coclasses) {
    kit::LibrarySpec spec{.name = "Probes", .guid = guidOf("Probes"), .coclasses = coclasses};
    spec.types = {{.name = "Point", .kind = TKIND_RECORD, .fields = {{"x", VT_R8}}}};
    for (const char* name : {"IProbe", "DFirst", "DSecond"})
        spec.interfaces.push_back(
            {.name = name,
             .iid = guidOf(name),
             .functions = {
                 {.name = "Called", .dispid = 1},
                 {.name = "Property", .dispid = 2, .kind = INVOKE_PROPERTYGET, .result = VT_I4}}});
    return kit::makeTypeLibrary(spec);
}

TEST_F(TypeDescription, TakesEventsFromTheFirstSourceThatIsADefaultOfTheFirstCoclassThatFits) {
    constexpr int source = IMPLTYPEFLAG_FSOURCE;
    constexpr int standard = IMPLTYPEFLAG_FDEFAULT | source;
    constexpr int restricted = standard | IMPLTYPEFLAG_FRESTRICTED;
    using Interfaces = std::vector<kit::ImplementedSpec>;
    const kit::ImplementedSpec main{"IProbe", IMPLTYPEFLAG_FDEFAULT};
    const struct {
        std::vector<Interfaces> coclasses;
        const char* source; // null where there is none
    } rows[] = {
        {{{main, {"DFirst", standard}, {"DSecond", standard}}}, "DFirst"},
        {{{main, {"DFirst", source}, {"DSecond", standard}}}, "DSecond"},
        {{{main, {"DFirst", restricted}, {"DSecond", standard}}}, "DSecond"},
        {{{main, {"DFirst", standard}}, {main, {"DSecond", standard}}}, "DFirst"},
        {{{main}, {main, {"DSecond", standard}}}, nullptr},
        {{{{"DFirst", standard}}, {main, {"DSecond", standard}}}, "DSecond"},
    };
    for (const auto& row : rows) {
        std::vector<kit::CoclassSpec> coclasses;
        for (const Interfaces& interfaces : row.coclasses) {
            const std::string name = "Probe" + std::to_string(coclasses.size());
            coclasses.push_back({.name = name, .clsid = guidOf(name), .interfaces = interfaces});
        }
        const auto library = libraryOf(coclasses);
        ComPtr<ITypeInfo> info;
        ASSERT_EQ(library->GetTypeInfoOfGuid(guidOf("IProbe"), info.put()), S_OK);
        const COMTypeDescription description(info.get(), nullptr);
        EXPECT_EQ(description.sourceInterfaceIID, row.source ? guidOf(row.source) : GUID_NULL);
        // A property of a source is no event.
        EXPECT_EQ(textOf(description.events), row.source ? "1 Called method()->vt0\n" : "");
    }
}

TEST_F(TypeDescription, HasNoMembersThatAreNotReachedByDispatch) {
    const auto library = libraryOf({});
    ComPtr<ITypeInfo> record;
    ASSERT_EQ(library->GetTypeInfo(0, record.put()), S_OK);
    EXPECT_TRUE(COMTypeDescription(record.get(), nullptr).members.empty());
}

TEST_F(TypeDescription, IsMissingForAServerWithoutTypeInformation) {
    Probe::Builder builder = Probe::builder();
    EXPECT_EQ(describe(*builder.withoutTypeInfo().build()), nullptr);
    class Doubled final : public Probe {
      public:
        using Probe::Probe;
        HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
            *count = 2;
            return S_OK;
        }
    };
    const auto definition = Probe::builder().build();
    const auto doubled = kit::createDispatch<Doubled>(*definition);
    EXPECT_EQ(COMTypeDescription::ofServer(doubled.get()), nullptr);
    EXPECT_EQ(COMTypeDescription::ofServer(nullptr), nullptr);
}

} // namespace
