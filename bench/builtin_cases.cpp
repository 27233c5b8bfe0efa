// Built-in members of a class with many properties.
#include "bench/cases.h"
#include "classmodel/class_description.h"
#include "classmodel/object_creation.h"
#include "host/dispatcher.h"
#include "platform/holders.h"
#include "servers/kit/kit.h"

namespace axlink2::bench {
namespace {

constexpr int propertyCount = 1000;

// Numbers, texts and switches in turn.
class Panel : public kit::DispatchObject {
  public:
    Panel() : DispatchObject(definition()) {}
    static const kit::ClassDefinition& definition() {
        static const auto made = [] {
            kit::ClassBuilder<Panel> builder("Panel",
                                             kit::guid("5D1D8A51-7B0E-4D8B-8E3B-1C0C3A9EB021"),
                                             kit::guid("5D1D8A51-7B0E-4D8B-8E3B-1C0C3A9EB022"));
            for (int i = 0; i < propertyCount; ++i) {
                const std::string name = "Property" + std::to_string(i);
                if (i % 3 == 0)
                    builder.property(name, &Panel::number);
                else if (i % 3 == 1)
                    builder.property(name, &Panel::text);
                else
                    builder.property(name, &Panel::isOn);
            }
            return builder.build();
        }();
        return *made;
    }
    double number() { return 1.5; }
    platform::OleString text() { return OLESTR("a text"); }
    bool isOn() { return true; }
};

IDispatch* server() {
    static const auto made = kit::createDispatch<Panel>();
    return made.get();
}

hxArray* object() {
    static const harray::unique_array array = [] {
        const NewObject made = makeObjectFrom(
            addClass("Interface", std::make_unique<COMInterfaceClassInfo>("BenchPanel", server())),
            server());
        made.record->dispatch = platform::ComPtr<IDispatch>::borrow(server()).detach();
        return objectArray(made);
    }();
    return array.get();
}

DISPID dispidOf(const OLECHAR* name) {
    auto* text = const_cast<OLECHAR*>(name);
    DISPID dispid = DISPID_UNKNOWN;
    server()->GetIDsOfNames(IID_NULL, &text, 1, LOCALE_SYSTEM_DEFAULT, &dispid);
    return dispid;
}

void read(DISPID dispid) {
    DISPPARAMS params{};
    platform::ScopedVariant result;
    EXCEPINFO excepInfo{};
    UINT argumentError = 0;
    server()->Invoke(dispid, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET, &params,
                     result.put(), &excepInfo, &argumentError);
}

void readAll(std::size_t count) {
    static const DISPID first = dispidOf(OLESTR("Property0"));
    for (; count > 0; --count)
        for (DISPID i = 0; i < propertyCount; ++i)
            read(first + i);
}

// Every property by its name, as `h.Name` reads it.
void readAllByName(std::size_t count) {
    static const auto names = [] {
        std::vector<std::string> made;
        made.reserve(propertyCount);
        for (int i = 0; i < propertyCount; ++i)
            made.push_back("Property" + std::to_string(i));
        return made;
    }();
    for (; count > 0; --count) {
        std::vector<harray::unique_array> values;
        values.reserve(names.size());
        for (const std::string& name : names)
            values.emplace_back(hxGetPropertyShared(object(), 0, name.c_str()));
    }
}

// `get(h, more...)` as a program writes it.
void get(std::size_t count, int inputCount, const hxArray* const* inputs) {
    Hdispatcher& dispatcher = Hdispatcher::getDispatcher();
    const hos::id symbol = dispatcher.symbol("get");
    for (; count > 0; --count) {
        hxArray* output = nullptr;
        dispatcher
            .lookup(dispatcher.GetCurrentlyExecutingFunctionScope(), symbol, inputCount, inputs)
            ->call(1, &output, inputCount, inputs);
        harray::destroyArray(output);
    }
}

void getAll(std::size_t count) {
    const hxArray* inputs[] = {object()};
    get(count, 1, inputs);
}

void readOne(std::size_t count) {
    static const DISPID dispid = dispidOf(OLESTR("Property999"));
    for (; count > 0; --count)
        read(dispid);
}

void getOne(std::size_t count) {
    static const harray::unique_array name(hxCreateString("property999"));
    const hxArray* inputs[] = {object(), name.get()};
    get(count, 2, inputs);
}

} // namespace

std::vector<Case> builtinCases() {
    return {
        {"get(h), raw: 1,000 reads by name", readAllByName, getAll, 2},
        {"get(h), raw: 1,000 calls of Invoke", readAll, getAll, 2},
        {"get(h,'name'), 1,000 properties", readOne, getOne, 100, 100},
    };
}

} // namespace axlink2::bench
