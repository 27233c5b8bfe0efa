// Population of a class with many members.
#include "bench/cases.h"
#include "classmodel/class_description.h"
#include "classmodel/object_creation.h"
#include "platform/typeinfo_holders.h"
#include "servers/kit/kit.h"

namespace axlink2::bench {
namespace {

constexpr int members = 1000;

class Large : public kit::DispatchObject {
  public:
    Large() : DispatchObject(definition()) {}
    static const kit::ClassDefinition& definition() {
        static const auto made = [] {
            kit::ClassBuilder<Large> builder("Large",
                                             kit::guid("5D1D8A51-7B0E-4D8B-8E3B-1C0C3A9EB011"),
                                             kit::guid("5D1D8A51-7B0E-4D8B-8E3B-1C0C3A9EB012"));
            for (int i = 0; i < members; ++i) {
                const std::string name = "Member" + std::to_string(i);
                if (i % 2)
                    builder.property(name, &Large::get, &Large::put);
                else
                    builder.method(name, &Large::add, {"a", "b"});
            }
            return builder.build();
        }();
        return *made;
    }
    double add(double a, double b) { return a + b; }
    LONG get() { return 1; }
    void put(LONG) {}
};

IDispatch* server() {
    static const auto made = kit::createDispatch<Large>();
    return made.get();
}

// Every function, its name, and whether the server knows it: what any reader must ask.
void walk(std::size_t count) {
    for (; count > 0; --count) {
        platform::ComPtr<ITypeInfo> info;
        server()->GetTypeInfo(0, LOCALE_SYSTEM_DEFAULT, info.put());
        const platform::TypeAttrHolder attributes(info.get(), &ITypeInfo::GetTypeAttr);
        for (UINT index = 0; index < attributes->cFuncs; ++index) {
            const platform::FuncDescHolder function(info.get(), &ITypeInfo::GetFuncDesc, index);
            platform::ScopedBstr name;
            info->GetDocumentation(function->memid, name.put(), nullptr, nullptr, nullptr);
            LPOLESTR text = name.get();
            DISPID dispid = DISPID_UNKNOWN;
            server()->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_SYSTEM_DEFAULT, &dispid);
        }
    }
}

void populate(std::size_t count) {
    static int classes = 0;
    for (; count > 0; --count) {
        const std::string name = "BenchLarge" + std::to_string(++classes);
        makeObjectFrom(
            addClass("Interface", std::make_unique<COMInterfaceClassInfo>(name, server())),
            server());
    }
}

} // namespace

std::vector<Case> populationCases() {
    return {{"population, 1,000 members", walk, populate, 3, 1, 40}};
}

} // namespace axlink2::bench
