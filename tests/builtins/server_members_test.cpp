// propedit, move and interfaces.
#include "builtins/builtin_fixture.h"
#include "servers/sample/faults.h"

#include <algorithm>

namespace {

using namespace axlink2;
using namespace axlink2::test;

// Answers as the test says when it is asked for its pages.
class Paged : public kit::DispatchObject, public ISpecifyPropertyPages {
  public:
    Paged() : DispatchObject(definition()) {}
    static const kit::ClassDefinition& definition();

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        return DispatchObject::QueryInterface(iid, object);
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return DispatchObject::AddRef(); }
    ULONG STDMETHODCALLTYPE Release() override { return DispatchObject::Release(); }

    HRESULT STDMETHODCALLTYPE GetPages(CAUUID* pages) override {
        if (isFaulty) sample::writeThroughNull();
        pages->cElems = pageCount;
        pages->pElems =
            pageCount ? static_cast<GUID*>(CoTaskMemAlloc(pageCount * sizeof(GUID))) : nullptr;
        return answer;
    }

    static inline HRESULT answer = S_OK;
    static inline ULONG pageCount = 0;
    static inline bool isFaulty = false;

  private:
    void* findInterface(REFIID iid) override {
        return iid == IID_ISpecifyPropertyPages ? static_cast<ISpecifyPropertyPages*>(this)
                                                : nullptr;
    }
};

// Lists its default interface last, and an event source between.
const kit::ClassDefinition& Paged::definition() {
    static const auto base = kit::ClassBuilder<Paged>::interface_("_Early", guidOf("_Early"));
    static const auto built = kit::ClassBuilder<Paged>("Paged", guidOf("Paged"), guidOf("IPaged"))
                                  .implements(base)
                                  .source("DPagedEvents", guidOf("DPagedEvents"))
                                  .event("Turned")
                                  .build();
    static const kit::ClassDefinition reordered = [] {
        kit::ClassParts parts = built->parts();
        auto& listed = parts.coclass.interfaces;
        std::ranges::rotate(listed, listed.begin() + 1);
        return kit::ClassDefinition(std::move(parts), {}, {}, nullptr);
    }();
    return reordered;
}

// Has methods under names of built-in ones, and notes which was called.
class Homonym : public Served<Homonym> {
  public:
    static constexpr const char* className = "Homonym";
    static void declare(Builder& builder) {
        builder.method("send", &Homonym::send, {"body"})
            .method("save", &Homonym::save, {"destination"})
            .method("move", &Homonym::move, {"x", "y", "z"})
            .method("delete", &Homonym::erase, {"index"})
            .method("get", &Homonym::fetch, {"name"})
            .method("invoke", &Homonym::run, {"code", "times"})
            .method("release", &Homonym::let, {"count"});
    }
    static inline std::string called;

    void send(kit::Optional<platform::OleString> body) { called = body ? "send body" : "send"; }
    void save(platform::ScopedVariant) { called = "save"; }
    double move(double x, double y, double z) { return called = "move", x + y + z; }
    void erase(double) { called = "delete"; }
    double fetch(platform::OleString) { return called = "get", 5; }
    void run(double, double) { called = "invoke"; }
    void let(double) { called = "release"; }
};

using ServerMembers = BuiltinTest;

TEST_F(ServerMembers, PropeditOnlyAsksForPages) {
    struct Row {
        HRESULT answer;
        ULONG count;
        std::vector<std::string> warnings;
        bool isFaulty = false;
    };
    const Row rows[] = {{S_OK, 2, {}},
                        {S_OK, 0, {"VELMAR:COM:noPropPage"}},
                        {S_FALSE, 2, {"VELMAR:COM:propPageError"}},
                        {E_NOTIMPL, 0, {"VELMAR:COM:propPageError"}},
                        {S_OK, 2, {"VELMAR:COM:propPageError"}, true},
                        {S_OK, 2, {}}};
    const Array paged = start<Paged>("Test.Paged");
    for (const Row& row : rows) {
        Paged::answer = row.answer;
        Paged::pageCount = row.count;
        Paged::isFaulty = row.isFaulty;
        EXPECT_EQ(warnings([&] { ask(0, paged, "propedit"); }), row.warnings);
    }
    const Array gadget = start<Gadget>("Test.Gadget");
    EXPECT_EQ(warnings([&] { EXPECT_TRUE(call(gadget, "propedit", 0).empty()); }),
              std::vector<std::string>{"VELMAR:COM:noPropPage"});
}

TEST_F(ServerMembers, MoveGivesFourZeros) {
    const Array gadget = start<Gadget>("Test.Gadget");
    const Array position = doubles({1, 4}, {1, 2, 3, 4});
    const Array flag(hxCreateLogicalScalar(true));
    const std::string zeros = "double 1x4 [0 0 0 0]";
    EXPECT_EQ(described(ask(0, gadget, "move")), zeros);
    EXPECT_EQ(described(ask(1, gadget, "move", position)), zeros);
    EXPECT_EQ(described(ask(1, gadget, "move", position, flag)), zeros);
}

TEST_F(ServerMembers, InterfacesListsThoseOfTheCoclassWithTheDefaultFirst) {
    const Array paged = start<Paged>("Test.Paged");
    EXPECT_EQ(plain(ask(0, paged, "interfaces").get()), "{'IPaged' '_Early'}(2x1)");
    EXPECT_EQ(plain(ask(1, start<Gadget>("Test.Gadget"), "interfaces").get()), "{'IGadget'}(1x1)");
    hos::HOSInterfacePtr withoutServer;
    classOf(paged)->newInstance(&withoutServer);
    const Array array(hoCreateHOSMatrix(1, 1, hoGetClassID(paged.get())));
    hoSetArrayElement(array.get(), 0, withoutServer);
    EXPECT_EQ(plain(ask(1, array, "interfaces").get()), "{}(0x1)");
    EXPECT_EQ(warnings([&] { ask(0, array, "propedit"); }),
              std::vector<std::string>{"VELMAR:COM:noPropPage"});
}

TEST_F(ServerMembers, AnObjectThatWasMadeWithoutAServerSaysSo) {
    start<Gadget>("Test.Gadget");
    const Array any = text("Name"), server = text("server"), none = text("none");
    const Array h = std::move(
        velmar::call("COM.Test_Gadget", 1, {server.get(), any.get(), none.get()}).front());
    const std::string noServer = "VELMAR:COM:invalidmethodname";
    for (const char* method : {"Reset", "Name", "NewGadget"})
        EXPECT_EQ(errorIn(h, method), noServer) << method;
    for (const char* method : {"get", "save", "load", "invoke"})
        EXPECT_EQ(errorIn(h, method, any), noServer) << method;
    EXPECT_EQ(errorIn(h, "set", any, any), noServer);
}

TEST_F(ServerMembers, TheServersMethodsGoBeforeBuiltinsOfTheirNameThatYield) {
    const Array one(hxCreateDoubleScalar(1)), name = text("Name"),
                                              flag(hxCreateLogicalScalar(true));
    const struct {
        const char* method;
        std::vector<const hxArray*> inputs;
        const char* called; // nothing: the built-in
    } rows[] = {
        {"send", {}, "send"},
        {"send", {name.get()}, "send body"},
        {"save", {name.get()}, "save"},
        {"move", {one.get(), flag.get(), one.get()}, "move"},
        {"move", {one.get(), flag.get()}, ""},
        {"release", {one.get()}, "release"},
        {"invoke", {one.get(), one.get()}, "invoke"},
        {"events", {}, ""},
        {"delete", {one.get()}, "VELMAR:COM:toomanyinargs"},
        {"get", {name.get()}, unknownName},
    };
    const Array h = start<Homonym>("Test.Homonym");
    for (const auto& row : rows) {
        Homonym::called.clear();
        const std::string error = errorOf([&] { call(h, row.method, 0, row.inputs); });
        EXPECT_EQ(Homonym::called + error, row.called) << row.method;
    }
    // What the server's doesn't give isn't looked for in the built-in.
    EXPECT_EQ(errorOf([&] { ask(1, h, "send"); }), "VELMAR:maxlhs");
}

} // namespace
