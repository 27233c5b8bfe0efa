// The functions through which COM loads the sample server.
#include "servers/kit/class_factory.h"
#include "servers/sample/identities.h"
#include "servers/sample/server.h"

#include <array>

namespace {

constexpr std::array<kit::ServedClass, 2> servedClasses = {{
    {sample::serverClass, [] { return kit::createDispatch<sample::Server>(); }},
    {sample::childClass, [] { return kit::createDispatch<sample::Child>(); }},
}};

} // namespace

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** object) {
    return kit::getClassObject(servedClasses, clsid, iid, object);
}

STDAPI DllCanUnloadNow() { return kit::canUnloadNow(); }
