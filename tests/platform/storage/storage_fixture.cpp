// Temporary folders, and reading and writing through IStorage.
#include "storage_fixture.h"

#include <array>

namespace storage_test {

ComPtr<IStorage> StorageTest::create(const std::string& name, DWORD mode) const {
    ComPtr<IStorage> storage;
    EXPECT_EQ(StgCreateDocfile(folder.path(name).c_str(), mode, 0, storage.put()), S_OK) << name;
    return storage;
}

ComPtr<IStorage> StorageTest::open(const std::string& name, DWORD mode) const {
    ComPtr<IStorage> storage;
    EXPECT_EQ(StgOpenStorage(folder.path(name).c_str(), nullptr, mode, nullptr, 0, storage.put()),
              S_OK)
        << name;
    return storage;
}

HRESULT StorageTest::openResult(const std::string& name, DWORD mode) const {
    ComPtr<IStorage> storage;
    return StgOpenStorage(folder.path(name).c_str(), nullptr, mode, nullptr, 0, storage.put());
}

void StorageTest::makeFile(const std::string& name, const std::string& content) const {
    const auto root = create(name);
    writeStream(root.get(), OLESTR("s"), content);
    EXPECT_EQ(root->Commit(STGC_DEFAULT), S_OK);
}

ComPtr<IStream> createStream(IStorage* storage, const OLECHAR* name, DWORD mode) {
    ComPtr<IStream> stream;
    EXPECT_EQ(storage->CreateStream(name, mode, 0, 0, stream.put()), S_OK);
    return stream;
}

void write(IStream* stream, const std::string& content) {
    ULONG written = 0;
    EXPECT_EQ(stream->Write(content.data(), static_cast<ULONG>(content.size()), &written), S_OK);
    EXPECT_EQ(written, content.size());
}

void writeStream(IStorage* storage, const OLECHAR* name, const std::string& content) {
    write(createStream(storage, name).get(), content);
}

ComPtr<IStorage> createStorage(IStorage* storage, const OLECHAR* name, DWORD mode) {
    ComPtr<IStorage> inner;
    EXPECT_EQ(storage->CreateStorage(name, mode, 0, 0, inner.put()), S_OK);
    return inner;
}

ComPtr<IStorage> openStorage(IStorage* storage, const OLECHAR* name, DWORD mode) {
    ComPtr<IStorage> inner;
    EXPECT_EQ(storage->OpenStorage(name, nullptr, mode, nullptr, 0, inner.put()), S_OK);
    return inner;
}

std::string readAll(IStream* stream) {
    std::string content;
    std::array<char, 1000> buffer;
    ULONG count = 0;
    do {
        const HRESULT hr = stream->Read(buffer.data(), static_cast<ULONG>(buffer.size()), &count);
        if (FAILED(hr)) return "?" + std::to_string(hr);
        content.append(buffer.data(), count);
    } while (count > 0);
    return content;
}

std::string readStream(IStorage* storage, const OLECHAR* name) {
    if (!storage) return "?";
    ComPtr<IStream> stream;
    const HRESULT hr = storage->OpenStream(name, nullptr, reading, 0, stream.put());
    return FAILED(hr) ? "?" + std::to_string(hr) : readAll(stream.get());
}

std::string listing(IStorage* storage) {
    ComPtr<IEnumSTATSTG> elements;
    if (FAILED(storage->EnumElements(0, nullptr, 0, elements.put()))) return "?";
    std::string text;
    for (STATSTG stat{}; elements->Next(1, &stat, nullptr) == S_OK;) {
        text += (text.empty() ? "" : " ") + platform::toNarrow(stat.pwcsName);
        if (stat.type == STGTY_STREAM) text += std::to_string(stat.cbSize.QuadPart);
        CoTaskMemFree(stat.pwcsName);
    }
    return text;
}

LARGE_INTEGER offset(LONGLONG distance) {
    LARGE_INTEGER result;
    result.QuadPart = distance;
    return result;
}

ULARGE_INTEGER size(ULONGLONG bytes) {
    ULARGE_INTEGER result;
    result.QuadPart = bytes;
    return result;
}

} // namespace storage_test
