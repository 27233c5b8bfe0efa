// Type information without sense: its description, a class populated from it, and every member
// called.
#include "classmodel/class_description.h"
#include "classmodel/namespaces.h"
#include "classmodel/object_creation.h"
#include "comruntime/type_description.h"
#include "fuzz/fuzz_target.h"
#include "fuzz/scripted_server.h"
#include "fuzz/scripted_types.h"
#include "host/embedding.h"
#include "host/live_class.h"

#include <set>

using namespace fuzz;

namespace {

constexpr const char* className = "Scripted";

// Types of members are looked up by the class's name, so the host must know one.
void registerName() {
    static const bool ready = [] {
        axlink2::addClass(axlink2::interfaceNamespace,
                          std::make_unique<axlink2::COMInterfaceClassInfo>(className, nullptr));
        return true;
    }();
    static_cast<void>(ready);
}

std::vector<harray::unique_array> drawInputs(Script& script) {
    std::vector<harray::unique_array> inputs(script.answers.upTo(4));
    for (auto& input : inputs)
        input = hostValue(script.answers, [&script] { return script.makeServer(); });
    return inputs;
}

// The other methods need an object that is alive.
bool endsObject(const std::string& name) { return name == "delete" || name == "release"; }

void callMethods(velmar::LiveClass& owner, const hxArray* object, Script& script) {
    std::multiset<std::string> names;
    for (hos::HOSMethodInfo* method : owner.allMethods()) {
        velmar::signatureText(*method);
        if (!endsObject(method->getName())) names.insert(method->getName());
    }
    for (const std::string& name : names) {
        const auto inputs = drawInputs(script);
        std::vector<const hxArray*> raw;
        for (const auto& input : inputs)
            raw.push_back(input.get());
        const int outputs = static_cast<int>(script.answers.upTo(3));
        attempt([&] { velmar::callMember(object, name, outputs, raw); });
    }
}

void accessProperties(velmar::LiveClass& owner, hxArray* object, Script& script) {
    std::vector<std::string> names;
    hos::HOSIterator properties;
    owner.getProperties(&properties);
    while (properties.hasMoreElements())
        names.push_back(hos::hosiToProp(properties.nextElement())->getName());
    for (const std::string& name : names) {
        attempt([&] { velmar::callMember(object, name, 1, {}); });
        const auto value = hostValue(script.answers, [&script] { return script.makeServer(); });
        attempt([&] { velmar::setMember(object, name, value.get()); });
    }
}

void listen(velmar::LiveClass& owner, const hos::HOSInterfacePtr& object) {
    std::vector<std::string> names;
    hos::HOSIterator events;
    owner.getEvents(&events);
    while (events.hasMoreElements())
        names.push_back(hos::hosiToEvent(events.nextElement())->getName());
    for (const std::string& name : names)
        attempt([&] {
            velmar::addListener(object, name, [](const hxArray*, const hxArray* event) {
                velmar::displayText(event);
            });
        });
}

void useObject(Script& script) {
    const auto server = platform::ComPtr<IDispatch>::adopt(new ScriptedServer(script));
    velmar::LiveClass owner(
        std::make_unique<axlink2::COMInterfaceClassInfo>(className, server.get()), nullptr,
        std::string("Interface.") + className);
    const axlink2::NewObject made = axlink2::makeObjectFrom(&owner, server.get());
    made.record->dispatch = platform::ComPtr<IDispatch>(server).detach();
    const auto object = axlink2::objectArray(made);

    listen(owner, made.object);
    callMethods(owner, object.get(), script);
    accessProperties(owner, object.get(), script);
    callMethods(owner, object.get(), script);
    const char* const end = script.answers.oneIn(2) ? "delete" : "release";
    attempt([&] { velmar::callMember(object.get(), end, 0, {}); });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    prepare();
    registerName();
    const NothingLeft check;
    ByteSource input({data, size});
    // Both parts get some of a short input.
    ByteSource types = input.split(size * (1 + input.upTo(7)) / 10);
    Script script(input);
    ScriptedTypes scripted(types, script);
    script.types = &scripted;
    attempt([&] { useObject(script); });
    script.sinks.clear();
    if (scripted.outstanding != 0) fail("descriptions that weren't taken back");
    return 0;
}
