// propedit, move and interfaces.
#include "builtins/builtin_fixture.h"

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
        pages->cElems = pageCount;
        pages->pElems =
            pageCount ? static_cast<GUID*>(CoTaskMemAlloc(pageCount * sizeof(GUID))) : nullptr;
        return answer;
    }

    static inline HRESULT answer = S_OK;
    static inline ULONG pageCount = 0;

  private:
    void* findInterface(REFIID iid) override {
        return iid == IID_ISpecifyPropertyPages ? static_cast<ISpecifyPropertyPages*>(this)
                                                : nullptr;
    }
};

// Lists its default interface last, and an event source between.
const kit::ClassDefinition& Paged::definition() {
    static const auto base = kit::ClassBuilder<Paged>::interface_(
        "_Early", kit::guid("5E1B7A40-93D4-4C0B-9B56-0A3E2C7D1023"));
    static const auto built =
        kit::ClassBuilder<Paged>("Paged", kit::guid("5E1B7A40-93D4-4C0B-9B56-0A3E2C7D1021"),
                                 kit::guid("5E1B7A40-93D4-4C0B-9B56-0A3E2C7D1022"))
            .implements(base)
            .source("DPagedEvents", kit::guid("5E1B7A40-93D4-4C0B-9B56-0A3E2C7D1024"))
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
    };
    const Row rows[] = {{S_OK, 2, {}},
                        {S_OK, 0, {"VELMAR:COM:noPropPage"}},
                        {S_FALSE, 2, {"VELMAR:COM:propPageError"}},
                        {E_NOTIMPL, 0, {"VELMAR:COM:propPageError"}}};
    const Array paged = start<Paged>("Test.Paged");
    for (const Row& row : rows) {
        Paged::answer = row.answer;
        Paged::pageCount = row.count;
        EXPECT_EQ(warnings([&] { ask(0, paged, "propedit"); }), row.warnings);
    }
    const Array gadget = start<Gadget>("Test.Gadget");
    EXPECT_EQ(warnings([&] { EXPECT_TRUE(call(gadget, "propedit", 0).empty()); }),
              std::vector<std::string>{"VELMAR:COM:noPropPage"});
}

TEST_F(ServerMembers, MoveGivesFourZeros) {
    const Array gadget = start<Gadget>("Test.Gadget");
    constexpr std::size_t extents[] = {1, 4};
    const Array position(hxCreateNumericArray(2, extents, hxDOUBLE_CLASS, hxREAL));
    const Array flag(hxCreateLogicalScalar(true));
    const Array answers[] = {ask(0, gadget, "move"), ask(1, gadget, "move", position),
                             ask(1, gadget, "move", position, flag)};
    for (const Array& answer : answers) {
        ASSERT_EQ(hxGetClassID(answer.get()), hxDOUBLE_CLASS);
        ASSERT_EQ(plain(answer.get()), "[](1x4)");
        const auto* zeros = static_cast<const double*>(hxGetData(answer.get()));
        EXPECT_EQ(std::count(zeros, zeros + 4, 0.0), 4);
    }
}

TEST_F(ServerMembers, InterfacesListsThoseOfTheCoclassWithTheDefaultFirst) {
    const Array paged = start<Paged>("Test.Paged");
    EXPECT_EQ(plain(ask(0, paged, "interfaces").get()), "{'IPaged' '_Early'}(2x1)");
    EXPECT_EQ(plain(ask(1, start<Gadget>("Test.Gadget"), "interfaces").get()), "{'IGadget'}(1x1)");
    hos::HOSInterfacePtr withoutServer;
    hoGetArrayElement(paged.get(), 0)->getClass()->newInstance(&withoutServer);
    const Array array(hoCreateHOSMatrix(1, 1, hoGetClassID(paged.get())));
    hoSetArrayElement(array.get(), 0, withoutServer);
    EXPECT_EQ(plain(ask(1, array, "interfaces").get()), "{}(0x1)");
    EXPECT_EQ(warnings([&] { ask(0, array, "propedit"); }),
              std::vector<std::string>{"VELMAR:COM:noPropPage"});
    EXPECT_EQ(errorIn(array, "get", text("Nothing")), "VELMAR:COM:invalidmethodname");
}

} // namespace
