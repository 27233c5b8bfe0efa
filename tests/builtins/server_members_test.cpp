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
    EXPECT_EQ(errorIn(array, "get", text("Nothing")), "VELMAR:COM:invalidmethodname");
}

} // namespace
