// save and load.
#include "builtins/persistence.h"

#include "builtins/call_support.h"
#include "builtins/lent_storage.h"
#include "classmodel/instance_record.h"
#include "comruntime/server_call.h"
#include "host/exception.h"
#include "host/message_ids.h"
#include "host/text.h"
#include "platform/file_replacement.h"
#include "platform/holders.h"

#include <algorithm>
#include <limits>

namespace axlink2 {
namespace {

using platform::ComPtr;
using platform::OleString;

HRESULT persist(IPersistFile* server, const OleString& path, bool isLoad) {
    return askServer(
        [&] { return isLoad ? server->Load(path.c_str(), 0) : server->Save(path.c_str(), FALSE); });
}

HRESULT loadFromStorage(IPersistStorage* server, IStorage* storage) {
    return askServer([&] {
        const HRESULT hr = server->Load(storage);
        return FAILED(hr) ? hr : server->HandsOffStorage();
    });
}

HRESULT saveToStorage(IPersistStorage* server, IStorage* storage) {
    return askServer([&] {
        const HRESULT hr = OleSave(server, storage, FALSE);
        return hr == S_OK ? server->SaveCompleted(nullptr) : hr;
    });
}

HRESULT persist(IPersistStorage* server, const OleString& path, bool isLoad) {
    constexpr DWORD loading = STGM_TRANSACTED | STGM_SHARE_DENY_WRITE | STGM_READ;
    constexpr DWORD saving = STGM_TRANSACTED | STGM_CREATE | STGM_SHARE_EXCLUSIVE | STGM_READWRITE;
    ComPtr<IStorage> storage;
    const HRESULT opened =
        isLoad ? StgOpenStorage(path.c_str(), nullptr, loading, nullptr, 0, storage.put())
               : StgCreateDocfile(path.c_str(), saving, 0, storage.put());
    if (FAILED(opened)) return opened;
    const LentStorage lent(std::move(storage));
    const HRESULT hr =
        isLoad ? loadFromStorage(server, lent.get()) : saveToStorage(server, lent.get());
    // The server's own refusal; what opening the file answers has gone out above.
    return hr == E_INVALIDARG ? S_OK : hr;
}

HRESULT writeObject(IPersistStream* server, IStream* stream) {
    return OleSaveToStream(server, stream);
}

// OleSaveToStream for the interface that it doesn't take.
HRESULT writeObject(IPersistStreamInit* server, IStream* stream) {
    CLSID clsid{};
    HRESULT hr = server->GetClassID(&clsid);
    if (SUCCEEDED(hr)) hr = WriteClassStm(stream, clsid);
    return SUCCEEDED(hr) ? server->Save(stream, TRUE) : hr;
}

template <class Server>
HRESULT readObject(Server* server, IStream* stream) {
    CLSID saved{};
    CLSID own{};
    if (const HRESULT hr = ReadClassStm(stream, &saved); FAILED(hr)) return hr;
    if (const HRESULT hr = server->GetClassID(&own); FAILED(hr)) return hr;
    return IsEqualCLSID(saved, own) ? server->Load(stream) : STG_E_OLDFORMAT;
}

HRESULT seekTo(IStream* stream, LONGLONG position, DWORD origin, ULARGE_INTEGER* now = nullptr) {
    LARGE_INTEGER distance;
    distance.QuadPart = position;
    return stream->Seek(distance, origin, now);
}

HRESULT streamToFile(IStream* stream, const std::filesystem::path& file) {
    ULARGE_INTEGER size{};
    HRESULT hr = seekTo(stream, 0, STREAM_SEEK_END, &size);
    if (SUCCEEDED(hr)) hr = seekTo(stream, 0, STREAM_SEEK_SET);
    if (FAILED(hr)) return hr;
    if (size.QuadPart > std::numeric_limits<ULONG>::max()) return STG_E_MEDIUMFULL;
    std::vector<std::byte> bytes(static_cast<std::size_t>(size.QuadPart));
    ULONG count = 0;
    hr = stream->Read(bytes.data(), static_cast<ULONG>(bytes.size()), &count);
    if (FAILED(hr) || count != bytes.size()) return STG_E_READFAULT;
    return platform::replaceFile(file, bytes) ? STG_E_WRITEFAULT : S_OK;
}

HRESULT fileToStream(const std::filesystem::path& file, IStream* stream) {
    std::vector<std::byte> bytes;
    if (platform::readFile(file, bytes)) return STG_E_FILENOTFOUND;
    if (bytes.size() > std::numeric_limits<ULONG>::max()) return STG_E_READFAULT;
    const HRESULT hr = stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr);
    return FAILED(hr) ? hr : seekTo(stream, 0, STREAM_SEEK_SET);
}

// A server of streams knows no files: its bytes go there by way of memory.
template <class Server>
HRESULT persist(Server* server, const OleString& path, bool isLoad) {
    ComPtr<IStream> stream;
    HRESULT hr = CreateStreamOnHGlobal(nullptr, TRUE, stream.put());
    if (FAILED(hr)) return hr;
    const std::filesystem::path file = platform::pathOf(path);
    if (isLoad) {
        hr = fileToStream(file, stream.get());
        return hr == S_OK ? askServer([&] { return readObject(server, stream.get()); }) : hr;
    }
    hr = askServer([&] { return writeObject(server, stream.get()); });
    return hr == S_OK ? streamToFile(stream.get(), file) : hr;
}

// Whether the server offers the interface and so has been asked. A server that couldn't even say
// so leaves its answer in `*status`: what a program wants saved isn't passed over in silence.
template <class Interface, const IID& iid>
bool persistThrough(IDispatch* server, const OleString& path, HRESULT* status, bool isLoad) {
    HRESULT answer = E_NOINTERFACE;
    const auto offered = queryServer<Interface>(server, iid, &answer);
    if (offered)
        *status = persist(offered.get(), path, isLoad);
    else if (FAILED(answer) && answer != E_NOINTERFACE && answer != E_NOTIMPL)
        *status = answer;
    return static_cast<bool>(offered);
}

// In the order in which they are tried.
constexpr decltype(&persistThrough<IPersistFile, IID_IPersistFile>) ways[] = {
    persistThrough<IPersistFile, IID_IPersistFile>,
    persistThrough<IPersistStorage, IID_IPersistStorage>,
    persistThrough<IPersistStreamInit, IID_IPersistStreamInit>,
    persistThrough<IPersistStream, IID_IPersistStream>,
};

void saveOrLoad(const hos::HOSValue* inputs, bool isLoad) {
    const hos::HOSInterfacePtr object = liveObject(inputs);
    if (!object) return;
    if (!recordOf(object)->dispatch) hmsgcore::raise(VELMAR::COM::invalidmethodname());
    HRESULT status = S_OK;
    persistObject(serverOf(object).get(), hsys::i18n::to_wstring(*inputs[1].text()), &status,
                  isLoad);
    if (status != S_OK) hmsgcore::raise(VELMAR::COM::serializationerror());
}

} // namespace

void persistObject(IDispatch* server, const OleString& path, HRESULT* status, bool isLoad) {
    if (!server) return;
    std::ranges::any_of(ways,
                        [&](auto* persistWay) { return persistWay(server, path, status, isLoad); });
}

void COMSaveMethodInfo::invoke(const hos::HOSClient*, std::uint32_t*, hos::HOSValue*, std::int32_t,
                               hos::HOSValue* inputs) {
    saveOrLoad(inputs, false);
}

void COMLoadMethodInfo::invoke(const hos::HOSClient*, std::uint32_t*, hos::HOSValue*, std::int32_t,
                               hos::HOSValue* inputs) {
    saveOrLoad(inputs, true);
}

} // namespace axlink2
