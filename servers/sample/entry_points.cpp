// The functions through which COM loads the sample server.
#include "servers/kit/class_factory.h"
#include "servers/sample/documents.h"
#include "servers/sample/identities.h"
#include "servers/sample/server.h"

#include <array>

namespace {

template <class Class>
platform::ComPtr<IDispatch> make() {
    return kit::createDispatch<Class>();
}

constexpr std::array<kit::ServedClass, 6> servedClasses = {{
    {sample::serverClass, make<sample::Server>},
    {sample::childClass, make<sample::Child>},
    {sample::fileDocumentClass, make<sample::FileDocument>},
    {sample::storageDocumentClass, make<sample::StorageDocument>},
    {sample::streamInitDocumentClass, make<sample::StreamInitDocument>},
    {sample::streamDocumentClass, make<sample::StreamDocument>},
}};

} // namespace

STDAPI DllGetClassObject(REFCLSID clsid, REFIID iid, void** object) {
    return kit::getClassObject(servedClasses, clsid, iid, object);
}

STDAPI DllCanUnloadNow() { return kit::canUnloadNow(); }
