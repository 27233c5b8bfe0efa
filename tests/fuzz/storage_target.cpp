// Compound files, well made and then damaged, or any bytes: refused, or read to the end, and
// written again with the same content.
#include "fuzz/fuzz_target.h"
#include "platform/portable/compound_file.h"
#include "platform/portable/storage.h"

using namespace fuzz;
using platform::ComPtr;

namespace {

using Bytes = platform::Bytes;

void drawElements(ByteSource& source, platform::StorageEntry& storage, unsigned depth) {
    constexpr std::array<std::size_t, 9> sizes = {0, 1, 63, 64, 65, 512, 4095, 4096, 5000};
    for (unsigned left = source.upTo(4); left > 0; --left) {
        const platform::OleString name = platform::toOle(source.wideText(4));
        if (!platform::isElementName(name)) continue;
        if (depth < 3 && source.oneIn(3)) {
            auto inner = std::make_shared<platform::StorageEntry>();
            drawElements(source, *inner, depth + 1);
            storage.elements.emplace(name, std::move(inner));
        } else {
            auto stream = std::make_shared<platform::StreamEntry>();
            stream->bytes.resize(source.pick(sizes), std::byte{source.byte()});
            storage.elements.emplace(name, std::move(stream));
        }
    }
}

// Mostly where the structure stands: the header, and the numbers that link entries and sectors.
void damage(ByteSource& source, Bytes& file) {
    for (unsigned left = source.upTo(8); left > 0; --left) {
        const std::size_t place =
            source.oneIn(2) ? source.byte() * 2 : source.number<std::uint16_t>();
        const std::array<std::uint32_t, 7> values = {0,
                                                     source.byte(),
                                                     0xFFFFFFFF,
                                                     0xFFFFFFFE,
                                                     0xFFFFFFFD,
                                                     source.number<std::uint16_t>(),
                                                     source.number<std::uint32_t>()};
        const std::uint32_t value = source.pick(values);
        std::memcpy(file.data() + place * 4 % (file.size() - 3), &value, sizeof value);
    }
    if (source.oneIn(8)) file.resize(file.size() * source.byte() / 256);
}

Bytes fileFrom(std::span<const std::uint8_t> input) {
    Bytes file;
    if (!input.empty() && input[0] == 0xD0) {
        const auto* const bytes = reinterpret_cast<const std::byte*>(input.data());
        file.assign(bytes, bytes + input.size());
        return file;
    }
    ByteSource source(input);
    platform::StorageEntry root;
    drawElements(source, root, 0);
    if (FAILED(platform::makeCompoundFile(root, file))) fail("a tree that can't be written");
    damage(source, file);
    return file;
}

std::string contentOf(IStorage* storage);

std::string bytesOf(IStorage* storage, const STATSTG& stat) {
    ComPtr<IStream> stream;
    if (FAILED(storage->OpenStream(stat.pwcsName, nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE, 0,
                                   stream.put())))
        fail("a stream that can't be opened");
    std::string bytes(static_cast<std::size_t>(stat.cbSize.QuadPart), '\0');
    ULONG read = 0;
    if (FAILED(stream->Read(bytes.data(), static_cast<ULONG>(bytes.size()), &read)) ||
        read != bytes.size())
        fail("a stream that is shorter than it says");
    return bytes;
}

std::string innerOf(IStorage* storage, const STATSTG& stat) {
    ComPtr<IStorage> inner;
    if (FAILED(storage->OpenStorage(stat.pwcsName, nullptr, STGM_READ | STGM_SHARE_EXCLUSIVE,
                                    nullptr, 0, inner.put())))
        fail("a storage that can't be opened");
    return "{" + contentOf(inner.get()) + "}";
}

// All that stands in a storage, in its order.
std::string contentOf(IStorage* storage) {
    std::string content;
    ComPtr<IEnumSTATSTG> elements;
    if (FAILED(storage->EnumElements(0, nullptr, 0, elements.put()))) fail("no elements");
    for (STATSTG stat{}; elements->Next(1, &stat, nullptr) == S_OK;) {
        content += platform::toNarrow(stat.pwcsName) + "=" +
                   (stat.type == STGTY_STREAM ? bytesOf(storage, stat) : innerOf(storage, stat));
        CoTaskMemFree(stat.pwcsName);
    }
    return content;
}

std::string contentOf(std::shared_ptr<platform::StorageEntry> entry) {
    const auto storage = platform::makeStorage({.name = OLESTR("input"),
                                                .mode = STGM_READ | STGM_SHARE_EXCLUSIVE,
                                                .entry = std::move(entry),
                                                .write = {}});
    return contentOf(storage.get());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    prepare();
    const NothingLeft check;
    const Bytes file = fileFrom({data, size});
    const auto entry = std::make_shared<platform::StorageEntry>();
    if (FAILED(platform::parseCompoundFile(file, *entry))) return 0;
    const std::string content = contentOf(entry);
    if (content.size() > 40 * (file.size() + 100)) fail("more than the file can hold");
    Bytes written;
    const auto again = std::make_shared<platform::StorageEntry>();
    if (FAILED(platform::makeCompoundFile(*entry, written)) ||
        FAILED(platform::parseCompoundFile(written, *again)))
        fail("what was read can't be written and read");
    if (contentOf(again) != content) fail("another content when written again");
    return 0;
}
