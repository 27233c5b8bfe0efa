// actxserver: its forms, its errors, and how servers and classes come into being.
#include "classmodel/class_description.h"
#include "classmodel/instance_record.h"
#include "classmodel/object_creation.h"
#include "host/text.h"
#include "support/server_fixture.h"

namespace {

using namespace axlink2;
using namespace axlink2::test;

class Simple : public kit::DispatchObject {
  public:
    Simple() : DispatchObject(definition()) { ++made; }
    static const kit::ClassDefinition& definition() {
        static const auto definition =
            kit::ClassBuilder<Simple>("Simple", kit::guid("C7C3E0B5-50B5-4A0C-8F77-55B02A6D9001"),
                                      kit::guid("C7C3E0B5-50B5-4A0C-8F77-55B02A6D9002"))
                .build();
        return *definition;
    }
    static inline int made = 0;
};

// A server that has no IDispatch.
class Closed : public IUnknown, kit::LiveObject {
  public:
    Closed() : LiveObject("Closed") {}
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        *out = iid == IID_IUnknown ? this : nullptr;
        if (*out) AddRef();
        return *out ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }
    virtual ~Closed() = default;

  private:
    ULONG references_ = 1;
};

class ClosedFactory : public IClassFactory {
  public:
    virtual ~ClosedFactory() = default;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** out) override {
        *out = this;
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 2; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID iid, void** out) override {
        auto* object = new Closed();
        const HRESULT hr = object->QueryInterface(iid, out);
        object->Release();
        return hr;
    }
    HRESULT STDMETHODCALLTYPE LockServer(BOOL) override { return S_OK; }
};

struct ActXServer : ServerTest {
    std::vector<std::string> warnings;

    ActXServer() {
        velmar::setWarningWriter([this](const std::string& identifier, const std::u16string& text) {
            warnings.push_back(identifier + " " + hsys::i18n::to_string(text));
        });
        kit::registerProgId("Test.Simple", Simple::definition().parts().coclass.clsid);
    }
    ~ActXServer() override { velmar::setWarningWriter(nullptr); }

    static Array text(const char* text) { return Array(hxCreateString(text)); }

    static Array create(int nlhs, const std::vector<Array>& inputs) {
        std::vector<const hxArray*> raw;
        for (const Array& input : inputs)
            raw.push_back(input.get());
        Array output;
        COM2::actxserver(nlhs, &output, static_cast<int>(raw.size()), raw.data());
        return output;
    }
    template <class... Inputs>
    static std::vector<Array> arrays(Inputs... inputs) {
        std::vector<Array> list;
        (list.push_back(std::move(inputs)), ...);
        return list;
    }
    template <class... Inputs>
    static std::string failure(int nlhs, Inputs... inputs) {
        const auto list = arrays(std::move(inputs)...);
        return errorOf([&] { create(nlhs, list); });
    }
    template <class... Texts>
    static Array createWith(Texts... texts) {
        std::vector<Array> list;
        (list.push_back(text(texts)), ...);
        return create(1, list);
    }
};

struct ActXServerStarted : ActXServer {
    kit::ClassRegistration registration{kit::registerInProcess<Simple>()};
};

TEST_F(ActXServerStarted, MakesOneObjectOfTheProgIdsClassWithAServerOfItsOwn) {
    const Array first = createWith("Test.Simple");
    EXPECT_TRUE(hoIsHOS(first.get()) && hxIsScalar(first.get()));
    EXPECT_EQ(hoGetClassID(first.get()).str(), "COM.Test_Simple");
    const int made = Simple::made;
    const Array second = create(0, [] {
        std::vector<Array> inputs;
        inputs.push_back(hoststring::createStringArray(u"Test.Simple"));
        return inputs;
    }());
    EXPECT_EQ(Simple::made, made + 1);
    const hos::HOSInterfacePtr a = hoGetArrayElement(first.get(), 0);
    const hos::HOSInterfacePtr b = hoGetArrayElement(second.get(), 0);
    EXPECT_EQ(a->getClass(), b->getClass());
    EXPECT_NE(recordOf(a)->dispatch, recordOf(b)->dispatch);
}

TEST_F(ActXServerStarted, TakesOptionsInAnyCaseAndIgnoresValuesThatAreNoText) {
    EXPECT_TRUE(createWith("Test.Simple", ""));
    EXPECT_TRUE(createWith("Test.Simple", "INTERFACE", "IDispatch"));
    EXPECT_TRUE(createWith("Test.Simple", "MachineName", "", "interface", "IDispatch"));
    // The later of two machines counts.
    EXPECT_TRUE(createWith("Test.Simple", "machinename", "elsewhere", "machinename", ""));
    std::vector<Array> inputs;
    inputs.push_back(text("Test.Simple"));
    inputs.push_back(scalar(1));
    EXPECT_TRUE(create(1, inputs));
    inputs[1] = text("machinename");
    inputs.push_back(scalar(1));
    EXPECT_TRUE(create(1, inputs));
    EXPECT_TRUE(warnings.empty());
}

TEST_F(ActXServerStarted, WarnsOfUnknownOptionsWithTheirPosition) {
    EXPECT_TRUE(createWith("Test.Simple", "interface", "IDispatch", "colour", "red"));
    ASSERT_EQ(warnings.size(), 1u);
    EXPECT_EQ(warnings[0].find("VELMAR:COM:unknownparam "), 0u);
    EXPECT_NE(warnings[0].find('4'), std::string::npos);
    const auto refused =
        describedErrorOf([&] { create(1, arrays(text("Test.Simple"), scalar(1), text("x"))); });
    EXPECT_NE(refused.text.find('2'), std::string::npos) << refused.text;
    const std::string longName(2000, 'X');
    EXPECT_TRUE(createWith("Test.Simple", longName.c_str(), "red"));
    EXPECT_EQ(warnings.size(), 2u);
}

TEST_F(ActXServerStarted, RefusesWrongArguments) {
    EXPECT_EQ(failure(2, text("Test.Simple")), "VELMAR:maxlhs");
    EXPECT_EQ(failure(1), "VELMAR:minrhs");
    EXPECT_EQ(failure(1, text("a"), text("b"), text("c"), text("d"), text("e"), text("f")),
              "VELMAR:maxrhs");
    EXPECT_EQ(failure(1, text("Test.Simple"), text("a"), text("b"), text("c")),
              "VELMAR:COM:numargs");
    EXPECT_EQ(failure(1, scalar(1)), "VELMAR:COM:invalidArg");
    EXPECT_EQ(failure(1, hoststring::createStringArray(1, 1, {std::nullopt})),
              "VELMAR:COM:invalidArg");
    EXPECT_EQ(failure(1, text("Test.Simple"), scalar(1), text("x")), "VELMAR:COM:unknownparam");
    EXPECT_EQ(failure(1, text("Test.Simple"), text("interface"), text("idispatch")),
              "VELMAR:COM:unsupported64bit");
    // Options come before the ProgID.
    EXPECT_EQ(failure(1, scalar(1), text("interface"), text("IUnknown")),
              "VELMAR:COM:unsupported64bit");
}

TEST_F(ActXServerStarted, NamesTheProgIdOrTheSystemsReasonWhenNothingStarts) {
    const auto unknown = describedErrorOf([&] { createWith("No.Such.Server"); });
    EXPECT_EQ(unknown.identifier, "VELMAR:COM:InvalidProgid");
    EXPECT_NE(unknown.text.find("No.Such.Server"), std::string::npos);

    const Array known = createWith("Test.Simple");
    EXPECT_EQ(failure(1, text("Test.Simple"), text("elsewhere")),
              "VELMAR:COM:servercreationfailed");

    kit::registerProgId("Test.Away", kit::guid("C7C3E0B5-50B5-4A0C-8F77-55B02A6D90FF"));
    const auto away = describedErrorOf([&] { createWith("Test.Away"); });
    EXPECT_EQ(away.identifier, "VELMAR:COM:servercreationfailed");
    EXPECT_NE(away.text.size(), 0u);
    EXPECT_EQ(findClass("COM", "Test_Away"), nullptr);
}

// A server that starts another of its own ProgID while it starts.
class Recursive : public kit::DispatchObject {
  public:
    Recursive() : DispatchObject(definition()) {
        static bool first = true;
        if (!std::exchange(first, false)) return;
        inner = ServerTestAccess::startRegistered("Test.Recursive");
    }
    static const kit::ClassDefinition& definition() {
        static const auto made = kit::ClassBuilder<Recursive>(
                                     "Recursive", kit::guid("C7C3E0B5-50B5-4A0C-8F77-55B02A6D9031"),
                                     kit::guid("C7C3E0B5-50B5-4A0C-8F77-55B02A6D9032"))
                                     .method("Run", &Recursive::run)
                                     .build();
        return *made;
    }
    double run() { return 5; }
    static inline harray::unique_array inner;

  private:
    struct ServerTestAccess : ServerTest {
        using ServerTest::startRegistered;
    };
};

TEST_F(ActXServer, SharesTheClassWithAServerThatItsOwnServerHasStarted) {
    const Array outer = start<Recursive>("Test.Recursive");
    EXPECT_EQ(hoGetArrayElement(outer.get(), 0)->getClass(),
              hoGetArrayElement(Recursive::inner.get(), 0)->getClass());
    EXPECT_EQ(number(call(outer, "Run", 1)[0].get()), 5.0);
    EXPECT_EQ(number(call(Recursive::inner, "Run", 1)[0].get()), 5.0);
    Recursive::inner.reset();
}

TEST_F(ActXServer, RefusesAServerWithoutIDispatch) {
    const CLSID clsid = kit::guid("C7C3E0B5-50B5-4A0C-8F77-55B02A6D9011");
    kit::registerProgId("Test.Closed", clsid);
    ClosedFactory factory;
    DWORD cookie = 0;
    ASSERT_EQ(
        CoRegisterClassObject(clsid, &factory, CLSCTX_INPROC_SERVER, REGCLS_MULTIPLEUSE, &cookie),
        S_OK);
    EXPECT_EQ(failure(1, text("Test.Closed")), "VELMAR:COM:servercreationfailed");
    CoRevokeClassObject(cookie);
}

TEST_F(ActXServerStarted, KeepsNoServerForAProgIdThatItsClassNameDoesNotGiveBack) {
    kit::registerProgId("Test.-Odd", Simple::definition().parts().coclass.clsid);
    const int alive = kit::liveObjects();
    const auto error = describedErrorOf([&] { createWith("Test.-Odd"); });
    EXPECT_EQ(error.identifier, "VELMAR:COM:invalidprogid");
    EXPECT_NE(error.text.find("Test Odd"), std::string::npos);
    EXPECT_NE(error.text.find("800401f3"), std::string::npos);
    EXPECT_EQ(kit::liveObjects(), alive);
    kit::registerProgId("Test_One.Server-2", Simple::definition().parts().coclass.clsid);
    EXPECT_EQ(hoGetClassID(createWith("Test_One.Server-2").get()).str(),
              "COM.Test__One_Server___2");
}

} // namespace
