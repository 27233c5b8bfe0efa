// Documents and their state.
#include "servers/sample/documents.h"

#include "platform/file_replacement.h"
#include "servers/kit/guid.h"
#include "servers/sample/identities.h"

#include <array>

namespace sample {

using platform::ComPtr;
using platform::OleString;

namespace {

template <class Class>
std::unique_ptr<const kit::ClassDefinition> define(const std::string& name, const CLSID& clsid,
                                                   const IID& iid) {
    return kit::ClassBuilder<Class>(name, clsid, iid, "ISample" + name)
        .property("Text", &Class::text, &Class::setText)
        .property("Number", &Class::number, &Class::setNumber)
        .build(&documentLibrary());
}

// All of `size` bytes, or a failure.
HRESULT readBytes(IStream* stream, void* target, ULONG size) {
    ULONG count = 0;
    const HRESULT hr = stream->Read(target, size, &count);
    if (FAILED(hr)) return hr;
    return count == size ? S_OK : STG_E_READFAULT;
}

HRESULT memoryStream(ComPtr<IStream>& stream) {
    return CreateStreamOnHGlobal(nullptr, TRUE, stream.put());
}

HRESULT rewind(IStream* stream, ULARGE_INTEGER* end = nullptr) {
    LARGE_INTEGER start{};
    if (end) stream->Seek(start, STREAM_SEEK_END, end);
    return stream->Seek(start, STREAM_SEEK_SET, nullptr);
}

const OLECHAR* const contents = OLESTR("Contents");

} // namespace

const kit::Library& documentLibrary() {
    static const kit::Library made("SampleDocumentsLib", documentLibraryId,
                                   {&FileDocument::definition, &StorageDocument::definition,
                                    &StreamInitDocument::definition, &StreamDocument::definition});
    return made;
}

// The number, the length of the text in units, and the text.
HRESULT DocumentState::writeTo(IStream* stream) const {
    const auto length = static_cast<ULONG>(text.size());
    HRESULT hr = stream->Write(&number, sizeof(number), nullptr);
    if (SUCCEEDED(hr)) hr = stream->Write(&length, sizeof(length), nullptr);
    if (SUCCEEDED(hr) && length)
        hr = stream->Write(text.data(), length * ULONG{sizeof(OLECHAR)}, nullptr);
    return SUCCEEDED(hr) ? S_OK : hr;
}

HRESULT DocumentState::readFrom(IStream* stream) {
    DocumentState state;
    ULONG left = 0;
    HRESULT hr = readBytes(stream, &state.number, sizeof(state.number));
    if (SUCCEEDED(hr)) hr = readBytes(stream, &left, sizeof(left));
    // In pieces, as a length alone is no reason to set memory aside.
    std::array<OLECHAR, 1024> piece;
    while (SUCCEEDED(hr) && left > 0) {
        const ULONG count = std::min<ULONG>(left, piece.size());
        hr = readBytes(stream, piece.data(), count * ULONG{sizeof(OLECHAR)});
        state.text.append(piece.data(), count);
        left -= count;
    }
    if (SUCCEEDED(hr)) *this = std::move(state);
    return hr;
}

HRESULT DocumentBase::read(IStream* stream) {
    if (!stream) return E_POINTER;
    const HRESULT hr = state_.readFrom(stream);
    if (SUCCEEDED(hr)) isDirty_ = false;
    return hr;
}

HRESULT DocumentBase::write(IStream* stream, bool clearDirty) {
    if (!stream) return E_POINTER;
    const HRESULT hr = state_.writeTo(stream);
    if (SUCCEEDED(hr) && clearDirty) isDirty_ = false;
    return hr;
}

HRESULT DocumentBase::giveClass(CLSID* clsid) const {
    if (!clsid) return E_POINTER;
    *clsid = definition().parts().coclass.clsid;
    return S_OK;
}

HRESULT FileDocument::Load(LPCOLESTR fileName, DWORD) {
    if (!fileName) return E_POINTER;
    std::vector<std::byte> bytes;
    if (platform::readFile(platform::pathOf(fileName), bytes)) return STG_E_FILENOTFOUND;
    if (bytes.size() > UINT32_MAX) return STG_E_READFAULT;
    ComPtr<IStream> stream;
    HRESULT hr = memoryStream(stream);
    if (SUCCEEDED(hr)) hr = stream->Write(bytes.data(), static_cast<ULONG>(bytes.size()), nullptr);
    if (SUCCEEDED(hr)) hr = rewind(stream.get());
    if (SUCCEEDED(hr)) hr = read(stream.get());
    if (SUCCEEDED(hr)) fileName_ = fileName;
    return hr;
}

HRESULT FileDocument::Save(LPCOLESTR fileName, BOOL remember) {
    const OleString name = fileName ? fileName : fileName_;
    if (name.empty()) return E_INVALIDARG;
    ComPtr<IStream> stream;
    HRESULT hr = memoryStream(stream);
    if (SUCCEEDED(hr)) hr = write(stream.get(), false);
    ULARGE_INTEGER size{};
    if (SUCCEEDED(hr)) hr = rewind(stream.get(), &size);
    if (FAILED(hr)) return hr;
    std::vector<std::byte> bytes(static_cast<std::size_t>(size.QuadPart));
    hr = readBytes(stream.get(), bytes.data(), static_cast<ULONG>(bytes.size()));
    if (FAILED(hr)) return hr;
    if (platform::replaceFile(platform::pathOf(name), bytes)) return STG_E_WRITEFAULT;
    if (fileName && !remember) return S_OK; // a copy, saved elsewhere
    fileName_ = name;
    markClean();
    return S_OK;
}

HRESULT FileDocument::GetCurFile(LPOLESTR* fileName) {
    if (!fileName) return E_POINTER;
    *fileName = nullptr;
    return E_NOTIMPL;
}

HRESULT StorageDocument::Load(IStorage* storage) {
    if (!storage) return E_POINTER;
    ComPtr<IStream> stream;
    const HRESULT hr =
        storage->OpenStream(contents, nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0, stream.put());
    return SUCCEEDED(hr) ? read(stream.get()) : hr;
}

HRESULT StorageDocument::Save(IStorage* storage, BOOL sameAsLoad) {
    if (!storage) return E_POINTER;
    ComPtr<IStream> stream;
    const HRESULT hr = storage->CreateStream(
        contents, STGM_CREATE | STGM_WRITE | STGM_SHARE_EXCLUSIVE, 0, 0, stream.put());
    return SUCCEEDED(hr) ? write(stream.get(), sameAsLoad) : hr;
}

const kit::ClassDefinition& FileDocument::definition() {
    static const auto made =
        define<FileDocument>("FileDocument", fileDocumentClass, fileDocumentInterface);
    return *made;
}

const kit::ClassDefinition& StorageDocument::definition() {
    static const auto made =
        define<StorageDocument>("StorageDocument", storageDocumentClass, storageDocumentInterface);
    return *made;
}

const kit::ClassDefinition& StreamInitDocument::definition() {
    static const auto made = define<StreamInitDocument>(
        "StreamInitDocument", streamInitDocumentClass, streamInitDocumentInterface);
    return *made;
}

const kit::ClassDefinition& StreamDocument::definition() {
    static const auto made =
        define<StreamDocument>("StreamDocument", streamDocumentClass, streamDocumentInterface);
    return *made;
}

} // namespace sample
