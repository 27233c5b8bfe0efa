// Writing compound files, through libgsf.
#include "platform/portable/compound_file.h"
#include "platform/portable/hresults.h"

#include <gsf/gsf-outfile-msole.h>
#include <gsf/gsf-outfile.h>
#include <gsf/gsf-output-memory.h>
#include <gsf/gsf-utils.h>

namespace platform {

namespace {

template <class Object>
struct GObjectTraits : PointerTraits<Object*> {
    static void close(Object* object) noexcept {
        if (object) g_object_unref(object);
    }
};
template <class Object>
using GObjectPtr = Holder<GObjectTraits<Object>>;

bool writeStorage(GsfOutfile* out, const StorageEntry& storage);

bool write(GsfOutput* out, const StreamEntry& stream) {
    return gsf_output_write(out, stream.bytes.size(),
                            reinterpret_cast<const guint8*>(stream.bytes.data()));
}
bool write(GsfOutput* out, const StorageEntry& storage) {
    return writeStorage(GSF_OUTFILE(out), storage);
}

bool writeStorage(GsfOutfile* out, const StorageEntry& storage) {
    bool isWritten = gsf_outfile_msole_set_class_id(
        GSF_OUTFILE_MSOLE(out), reinterpret_cast<const guint8*>(&storage.clsid));
    for (const auto& [name, element] : storage.elements) {
        const bool isStorage = std::holds_alternative<std::shared_ptr<StorageEntry>>(element);
        const auto child = GObjectPtr<GsfOutput>::adopt(
            gsf_outfile_new_child(out, toNarrow(name).c_str(), isStorage));
        isWritten = isWritten && child &&
                    std::visit([&](auto& entry) { return write(child.get(), *entry); }, element);
        // An open child at its parent's end would be a fault of ours in the library's eyes.
        isWritten = child && gsf_output_close(child.get()) && isWritten;
    }
    return isWritten;
}

std::size_t sizeOf(const StorageEntry& storage);
std::size_t sizeOf(const StreamEntry& stream) { return stream.bytes.size(); }
std::size_t sizeOf(const StorageEntry& storage) {
    std::size_t total = 0;
    for (const auto& entry : storage.elements)
        total += std::visit([](auto& element) { return sizeOf(*element); }, entry.second);
    return total;
}

} // namespace

HRESULT makeCompoundFile(const StorageEntry& root, Bytes& file) {
    if (sizeOf(root) > maximumSize) return STG_E_MEDIUMFULL;
    static const bool isReady = (gsf_init(), true);
    static_cast<void>(isReady);
    const auto sink = GObjectPtr<GsfOutput>::adopt(gsf_output_memory_new());
    const auto out = GObjectPtr<GsfOutfile>::adopt(gsf_outfile_msole_new(sink.get()));
    const bool isWritten = writeStorage(out.get(), root);
    if (!gsf_output_close(GSF_OUTPUT(out.get())) || !isWritten) return STG_E_MEDIUMFULL;
    const auto* const bytes = reinterpret_cast<const std::byte*>(
        gsf_output_memory_get_bytes(GSF_OUTPUT_MEMORY(sink.get())));
    file.assign(bytes, bytes + gsf_output_size(sink.get()));
    return S_OK;
}

} // namespace platform
