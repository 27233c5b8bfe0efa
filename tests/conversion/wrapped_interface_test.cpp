// Interfaces that a server hands out: their classes, their references, their place in the tree.
#include "conversion/variant_to_host.h"
#include "conversion/wrapped_interface.h"
#include "support/registry_keys.h"
#include "support/server_fixture.h"

#include <chrono>

namespace {

using namespace axlink2;
using namespace axlink2::test;
using platform::ComPtr;
using test::Array;

// An object whose answers about its type information can be spoilt.
class Leaf : public kit::DispatchObject {
  public:
    Leaf() : DispatchObject(definition()) {}
    static const kit::ClassDefinition& definition() {
        static const auto made =
            kit::ClassBuilder<Leaf>("Leaf", kit::guid("5A0E4F61-6D4C-4E0B-8C41-0A1B6C3D0201"),
                                    kit::guid("5A0E4F61-6D4C-4E0B-8C41-0A1B6C3D0202"))
                .property("Number", &Leaf::number)
                .build();
        return *made;
    }
    LONG number() { return 7; }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        ++asked;
        if (rejections > 0) {
            --rejections;
            return RPC_E_CALL_REJECTED;
        }
        *count = typeInfos;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID lcid, ITypeInfo** info) override {
        if (typeInfoResult != S_OK) {
            *info = nullptr;
            return typeInfoResult;
        }
        return DispatchObject::GetTypeInfo(index, lcid, info);
    }

    int asked = 0;
    int rejections = 0;
    UINT typeInfos = 1;
    HRESULT typeInfoResult = S_OK;
};

class Owner : public Served<Owner> {
  public:
    static constexpr const char* className = "Owner";
    static void declare(Builder& builder) { builder.property("Any", &Owner::anything); }
    platform::ScopedVariant anything() {
        return kit::toVariant(ComPtr<IDispatch>(kit::createDispatch<Leaf>()));
    }
};

VARIANT interfaceIn(IUnknown* object, VARTYPE vt = VT_DISPATCH) {
    VARIANT v{};
    v.vt = vt;
    v.punkVal = object;
    return v;
}

const std::string leafClass = "Interface.5A0E4F61_6D4C_4E0B_8C41_0A1B6C3D0202";

struct WrappedInterface : ServerTest {
    static Array wrap(IDispatch* object, const hos::HOSInterfacePtr& owner = {},
                      VARTYPE vt = VT_DISPATCH, const char* member = "Member") {
        if (object) object->AddRef();
        VARIANT v = interfaceIn(object, vt);
        return Array(wrapInterface(&v, owner, member));
    }
};

TEST_F(WrappedInterface, TakesTheReferenceOverAndIsOfTheClassOfItsIid) {
    const auto leaf = kit::create<Leaf>();
    {
        const Array first = wrap(leaf.get());
        const Array second = wrap(leaf.get(), {}, VT_UNKNOWN);
        EXPECT_EQ(leaf->references(), 3u);
        EXPECT_EQ(described(first), leafClass);
        EXPECT_EQ(described(second), leafClass);
        EXPECT_EQ(classOf(first), classOf(second));
        EXPECT_NE(handle(first), handle(second));
        EXPECT_EQ(number(call(first, "Number", 1)[0].get()), 7);
    }
    EXPECT_EQ(leaf->references(), 1u);
}

TEST_F(WrappedInterface, NothingComesOfNullAndOfWhatIsNoDispatch) {
    EXPECT_EQ(wrap(nullptr), nullptr);
    EXPECT_EQ(wrap(nullptr, {}, VT_UNKNOWN), nullptr);
    const auto closed = kit::create<ClosedServer>();
    EXPECT_EQ(wrap(closed.get(), {}, VT_UNKNOWN), nullptr);
    EXPECT_EQ(closed->references(), 1u);
}

TEST_F(WrappedInterface, WithoutTypeInformationItsClassIsThatOfOwnerAndMember) {
    const Array owner = start<Owner>("Test.WrapOwner");
    const std::string byOwner = std::string("Interface.") + classOf(owner)->getName() + "_Member";
    const auto leaf = kit::create<Leaf>();
    leaf->typeInfos = 0;
    EXPECT_EQ(described(wrap(leaf.get())), "Interface.Member");
    EXPECT_EQ(described(wrap(leaf.get(), handle(owner))), byOwner);
    leaf->typeInfos = 2;
    EXPECT_EQ(described(wrap(leaf.get(), handle(owner))), byOwner);
    leaf->typeInfos = 1;
    for (const HRESULT result : {E_FAIL, S_FALSE}) { // S_FALSE: no object, and no failure
        leaf->typeInfoResult = result;
        EXPECT_EQ(described(wrap(leaf.get(), handle(owner))), byOwner);
    }
    EXPECT_EQ(leaf->references(), 1u);
}

TEST_F(WrappedInterface, WithoutTypeInformationAChainIsOfOneClassForEachMember) {
    const auto leaf = kit::create<Leaf>();
    leaf->typeInfos = 0;
    const Array owner = start<Owner>("Test.WrapOwner");
    const std::string byOwner = std::string("Interface.") + classOf(owner)->getName();
    const auto wrapOf = [&](const Array& from, const char* member) {
        return wrap(leaf.get(), handle(from), VT_DISPATCH, member);
    };
    Array link = wrapOf(owner, "Next");
    for (int i = 0; i < 3; ++i)
        link = wrapOf(link, "Next");
    EXPECT_EQ(described(link), byOwner + "_Next");
    const Array other = wrapOf(link, "ext");
    EXPECT_EQ(described(other), byOwner + "_Next_ext");
    EXPECT_EQ(described(wrapOf(wrap(leaf.get()), "Member")), "Interface.Member");
    // What has type information isn't of the like, whatever its name is.
    const std::string typed = leafClass.substr(leafClass.find('.') + 1);
    leaf->typeInfos = 1;
    const Array named = wrap(leaf.get());
    leaf->typeInfos = 0;
    const std::string end = typed.substr(typed.rfind('_') + 1);
    EXPECT_EQ(described(wrapOf(named, end.c_str())), leafClass + "_" + end);
}

// Describes itself, but for who it is.
class Nameless final : public kit::DispatchObject {
  public:
    Nameless() : DispatchObject(definition()) {}
    static const kit::ClassDefinition& definition() {
        static const auto made = kit::ClassBuilder<Nameless>("Nameless", CLSID{}, IID{})
                                     .property("Number", &Nameless::number)
                                     .build();
        return *made;
    }
    LONG number() { return 7; }
};

TEST_F(WrappedInterface, WithoutAnIidItsClassIsThatOfItsMember) {
    const Array object = wrap(kit::create<Nameless>().get(), {}, VT_DISPATCH, "Nobody");
    EXPECT_EQ(described(object), "Interface.Nobody");
    EXPECT_EQ(number(call(object, "Number", 1)[0].get()), 7);
}

TEST_F(WrappedInterface, ABusyServerGetsASecond) {
    const auto leaf = kit::create<Leaf>();
    const auto asked = [&] {
        leaf->asked = 0;
        const auto began = std::chrono::steady_clock::now();
        const std::string name = described(wrap(leaf.get()));
        const auto took = std::chrono::steady_clock::now() - began;
        EXPECT_GE(took, std::chrono::milliseconds(50) * std::min(leaf->asked - 1, 20));
        return name;
    };
    asked(); // the class is populated, which asks as well
    leaf->rejections = 3;
    EXPECT_EQ(asked(), leafClass);
    EXPECT_EQ(leaf->asked, 4);
    leaf->rejections = 1000;
    EXPECT_EQ(asked(), "Interface.Member");
    EXPECT_EQ(1000 - leaf->rejections, leaf->asked);
    EXPECT_GE(leaf->asked, 21);
}

TEST_F(WrappedInterface, ObjectsInVariantsAndArraysHaveReferencesOfTheirOwn) {
    const auto leaf = kit::create<Leaf>();
    IDispatch* const raw = leaf.get();
    const auto expectObjects = [&](VARIANT v, const std::string& expected, ULONG references) {
        hxArray* out = nullptr;
        variantToHost(&v, &out, {});
        const Array owned(out);
        EXPECT_EQ(described(owned), expected);
        EXPECT_EQ(leaf->references(), references);
    };
    expectObjects(interfaceIn(raw), leafClass, 2);
    for (const VARTYPE vt : {VT_DISPATCH, VT_UNKNOWN}) {
        IUnknown* elements[] = {raw, nullptr, raw};
        ScopedSafeArray array = safeArray(vt, {{3}}, elements);
        raw->AddRef();
        raw->AddRef();
        const ScopedVariant v = variantOf(vt, std::move(array));
        expectObjects(v.get(), "cell 3x1 {" + leafClass + ", double nan, " + leafClass + "}", 5);
    }
    VARIANT elements[] = {interfaceIn(raw), interfaceIn(raw, VT_UNKNOWN)};
    raw->AddRef();
    raw->AddRef();
    const ScopedVariant v = variantOf(VT_VARIANT, safeArray(VT_VARIANT, {{2}}, elements));
    // A bare IUnknown in a VARIANT isn't among the types that the host knows.
    expectObjects(v.get(), "cell 2x1 {" + leafClass + ", double nan}", 4);
    EXPECT_EQ(leaf->references(), 3u);
}

TEST_F(WrappedInterface, IsOnItsOwnWhenItCameFromAnUntypedMember) {
    const Array owner = start<Owner>("Test.WrapOwner");
    const Array free = std::move(call(owner, "Any", 1)[0]);
    EXPECT_EQ(described(free), leafClass);
    EXPECT_TRUE(record(free).parents.empty());
}

TEST_F(WrappedInterface, IsNamedByItsRegisteredNamesOrElseByItsIid) {
    const std::string lib = "{5A0E4F61-6D4C-4E0B-8C41-0A1B6C3D04";
    const std::string iid = "{5A0E4F61-6D4C-4E0B-8C41-0A1B6C3D05";
    const auto library = [&](const std::string& number, const std::string& name) {
        return registryKey("TypeLib\\" + lib + number + "}\\1.0", "old") +
               registryKey("TypeLib\\" + lib + number + "}\\2.a", name);
    };
    const auto interfaceOf = [&](const std::string& number, const std::string& name,
                                 const std::string& libraryNumber, const std::string& version) {
        const std::string key = "Interface\\" + iid + number + "}";
        return registryKey(key, name) + registryKey(key + "\\TypeLib", lib + libraryNumber + "}") +
               (version.empty() ? "" : "\"Version\"=\"" + version + "\"\r\n\r\n");
    };
    registerKeys(library("01", "Sheet Library") + library("02", "Other") +
                 library("03", "3 Digits") + library("04", "a(b)[c]{d}:e;f+g|h^i#j k") +
                 interfaceOf("01", "ISheet", "01", "2.a") + interfaceOf("02", "ISheet", "02", "") +
                 interfaceOf("03", "IOld", "02", "1.0") + interfaceOf("04", "ISheet", "03", "") +
                 interfaceOf("05", "I", "04", "") + interfaceOf("06", "IGone", "02", "3.0") +
                 interfaceOf("07", "INoLib", "09", "") + interfaceOf("08", "IPart", "02", "2") +
                 registryKey("Interface\\" + iid + "09}", "IAlone") +
                 interfaceOf("10", "A.B", "02", "") + interfaceOf("11", "IDot", "02", ".a") +
                 interfaceOf("13", "ISheet", "01", "2.a"));
    const auto byIid = [&](const std::string& number) {
        std::string name = iid.substr(1) + number;
        std::replace(name.begin(), name.end(), '-', '_');
        return name;
    };
    const std::pair<std::string, std::string> rows[] = {
        {"01", "Sheet_Library_ISheet"},
        {"02", "Other_ISheet"},
        {"03", "old_IOld"},
        {"04", byIid("04")}, // begins with a digit
        {"05", "a_b__c__d__e_f_g_h_i_j_k_I"},
        {"06", byIid("06")},   // the version isn't registered
        {"07", byIid("07")},   // the library isn't
        {"08", "Other_IPart"}, // a version without a point is none
        {"09", byIid("09")},
        {"10", byIid("10")}, // a point stays and isn't a name's
        {"11", byIid("11")},
        {"12", byIid("12")},
    };
    for (const auto& [number, expected] : rows)
        EXPECT_EQ(interfaceClassName(_bstr_t((iid + number + "}").c_str())), expected);
    // Of two with one name the later goes by its IID, however often each is met.
    for (int i = 0; i < 2; ++i)
        for (const auto& [number, expected] :
             {std::pair<std::string, std::string>{"01", "Sheet_Library_ISheet"},
              {"13", byIid("13")}})
            EXPECT_EQ(interfaceClassForIID(_bstr_t((iid + number + "}").c_str())), expected);
    EXPECT_EQ(interfaceClassName(_bstr_t("COM.A-B_Member")), "COM.A_B_Member");
    EXPECT_STREQ(static_cast<const char*>(sanitizeClassName(_bstr_t("a.b-c d"), false)), "a.b-c_d");
}

} // namespace
