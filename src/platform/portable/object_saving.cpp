// Class identifiers in storages and streams, and objects that save themselves there.
#include "platform/portable/persistence.h"
#include "platform/portable/storage_calls.h"

extern "C" {

HRESULT WriteClassStg(IStorage* storage, REFCLSID clsid) {
    return storage ? storage->SetClass(clsid) : E_INVALIDARG;
}

HRESULT ReadClassStg(IStorage* storage, CLSID* clsid) {
    if (!clsid || !storage) return E_INVALIDARG;
    STATSTG stat{};
    const HRESULT hr = storage->Stat(&stat, STATFLAG_NONAME);
    *clsid = SUCCEEDED(hr) ? stat.clsid : CLSID_NULL;
    return hr;
}

HRESULT WriteClassStm(IStream* stream, REFCLSID clsid) {
    return stream ? stream->Write(&clsid, sizeof(clsid), nullptr) : E_INVALIDARG;
}

HRESULT ReadClassStm(IStream* stream, CLSID* clsid) {
    if (!clsid || !stream) return E_INVALIDARG;
    *clsid = CLSID_NULL;
    CLSID read{};
    ULONG count = 0;
    const HRESULT hr = stream->Read(&read, sizeof(read), &count);
    if (FAILED(hr)) return hr;
    if (count != sizeof(read)) return STG_E_READFAULT;
    *clsid = read;
    return S_OK;
}

HRESULT OleSave(IPersistStorage* object, IStorage* storage, BOOL sameAsLoad) {
    if (!object || !storage) return E_INVALIDARG;
    CLSID clsid{};
    HRESULT hr = object->GetClassID(&clsid);
    if (hr == S_OK) hr = WriteClassStg(storage, clsid);
    if (hr == S_OK) hr = object->Save(storage, sameAsLoad);
    return hr == S_OK ? storage->Commit(STGC_DEFAULT) : hr;
}

HRESULT OleSaveToStream(IPersistStream* object, IStream* stream) {
    if (!object || !stream) return E_INVALIDARG;
    CLSID clsid{};
    HRESULT hr = object->GetClassID(&clsid);
    if (hr == S_OK) hr = WriteClassStm(stream, clsid);
    return hr == S_OK ? object->Save(stream, TRUE) : hr;
}
}
