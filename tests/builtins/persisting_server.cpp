// What the persisting server answers.
#include "builtins/persisting_server.h"

#include <algorithm>

namespace axlink2::test {

const kit::ClassDefinition& PersistingServer::definition() {
    static const auto made = kit::ClassBuilder<PersistingServer>(
                                 "Persisting", kit::guid("5E1B7A40-93D4-4C0B-9B56-0A3E2C7D2001"),
                                 kit::guid("5E1B7A40-93D4-4C0B-9B56-0A3E2C7D2002"))
                                 .property("Value", &PersistingServer::value)
                                 .build();
    return *made;
}

void* PersistingServer::findInterface(REFIID iid) {
    if (std::ranges::find(script.offered, iid) == script.offered.end()) return nullptr;
    if (iid == IID_IPersistFile) return static_cast<IPersistFile*>(this);
    if (iid == IID_IPersistStorage) return static_cast<IPersistStorage*>(this);
    if (iid == IID_IPersistStreamInit) return static_cast<IPersistStreamInit*>(this);
    return static_cast<IPersistStream*>(this);
}

HRESULT PersistingServer::answer(const std::string& call) {
    script.calls += call + ' ';
    const auto found = script.results.find(call);
    return found == script.results.end() ? S_OK : found->second;
}

HRESULT PersistingServer::GetClassID(CLSID* clsid) {
    *clsid = definition().parts().coclass.clsid;
    return answer("GetClassID");
}

HRESULT PersistingServer::Load(IStorage* storage) {
    const HRESULT hr = answer("Storage.Load");
    if (script.withStorage) script.withStorage(storage);
    return hr;
}

HRESULT PersistingServer::Save(IStorage* storage, BOOL sameAsLoad) {
    const HRESULT hr = answer(sameAsLoad ? "Storage.SaveSame" : "Storage.Save");
    if (script.withStorage) script.withStorage(storage);
    return hr;
}

HRESULT PersistingServer::SaveCompleted(IStorage* storage) {
    return answer(storage ? "CompletedElsewhere" : "Completed");
}

HRESULT PersistingServer::Load(IStream* stream) {
    const HRESULT hr = answer("Stream.Load");
    if (script.withStream) script.withStream(stream);
    return hr;
}

HRESULT PersistingServer::Save(IStream* stream, BOOL) {
    const HRESULT hr = answer("Stream.Save");
    if (script.withStream) script.withStream(stream);
    return hr;
}

} // namespace axlink2::test
