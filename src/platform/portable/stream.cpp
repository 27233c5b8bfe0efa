// IStream over the bytes of an entry.
#include "platform/portable/stream.h"

#include "platform/counted.h"
#include "platform/portable/activation.h"
#include "platform/portable/storage_calls.h"

#include <algorithm>
#include <array>
#include <limits>

namespace platform {

namespace {

class Stream final : public CountedInterface<IStream> {
  public:
    Stream(std::shared_ptr<StreamEntry> entry, OleView name, DWORD mode,
           std::shared_ptr<Lifetime> lifetime)
        : entry_(std::move(entry)), name_(name), mode_(mode), lifetime_(std::move(lifetime)) {}

    HRESULT STDMETHODCALLTYPE Read(void* buffer, ULONG size, ULONG* read) override {
        if (read) *read = 0;
        if (!buffer) return STG_E_INVALIDPOINTER;
        if (const HRESULT hr = check(canRead(mode_)); FAILED(hr)) return hr;
        const std::size_t start = std::min<ULONGLONG>(position_, bytes().size());
        const std::size_t count = std::min<std::size_t>(size, bytes().size() - start);
        std::copy_n(bytes().data() + start, count, static_cast<std::byte*>(buffer));
        position_ += count;
        if (read) *read = static_cast<ULONG>(count);
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE Write(const void* buffer, ULONG size, ULONG* written) override {
        if (written) *written = 0;
        if (!buffer) return STG_E_INVALIDPOINTER;
        if (const HRESULT hr = check(canWrite(mode_)); FAILED(hr)) return hr;
        if (size == 0) return S_OK;
        if (position_ > maximumSize || size > maximumSize - position_) return STG_E_MEDIUMFULL;
        const auto end = static_cast<std::size_t>(position_ + size);
        if (end > bytes().size())
            if (const HRESULT hr = resize(end); FAILED(hr)) return hr;
        std::copy_n(static_cast<const std::byte*>(buffer), size, bytes().data() + position_);
        position_ += size;
        if (written) *written = size;
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER move, DWORD origin,
                                   ULARGE_INTEGER* position) override {
        if (const HRESULT hr = check(true); FAILED(hr)) return hr;
        if (origin > STREAM_SEEK_END) return STG_E_INVALIDFUNCTION;
        const std::array<ULONGLONG, 3> origins = {0, position_, bytes().size()};
        const ULONGLONG from = origins[origin];
        const bool isBack = move.QuadPart < 0;
        const auto distance = static_cast<ULONGLONG>(move.QuadPart);
        const ULONGLONG target = from + distance; // wraps for a way back
        if (isBack ? target > from : target < from) return STG_E_INVALIDFUNCTION;
        position_ = target;
        if (position) position->QuadPart = position_;
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE SetSize(ULARGE_INTEGER size) override {
        if (const HRESULT hr = check(canWrite(mode_)); FAILED(hr)) return hr;
        if (size.QuadPart > maximumSize) return STG_E_MEDIUMFULL;
        return resize(static_cast<std::size_t>(size.QuadPart));
    }

    HRESULT STDMETHODCALLTYPE CopyTo(IStream* target, ULARGE_INTEGER size, ULARGE_INTEGER* read,
                                     ULARGE_INTEGER* written) override {
        if (read) read->QuadPart = 0;
        if (written) written->QuadPart = 0;
        if (!target) return STG_E_INVALIDPOINTER;
        // Through a buffer: the target may be a clone, whose bytes move when it grows.
        std::array<std::byte, 16384> buffer;
        for (ULONGLONG left = size.QuadPart; left > 0;) {
            ULONG count = static_cast<ULONG>(std::min<ULONGLONG>(left, buffer.size()));
            if (const HRESULT hr = Read(buffer.data(), count, &count); FAILED(hr)) return hr;
            if (count == 0) break;
            ULONG done = 0;
            const HRESULT hr = target->Write(buffer.data(), count, &done);
            if (read) read->QuadPart += count;
            if (written) written->QuadPart += done;
            if (FAILED(hr)) return hr;
            left -= count;
        }
        return S_OK;
    }

    // What is written stands in the storage at once; streams aren't transacted.
    HRESULT STDMETHODCALLTYPE Commit(DWORD) override { return check(true); }
    HRESULT STDMETHODCALLTYPE Revert() override { return check(true); }

    HRESULT STDMETHODCALLTYPE LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override {
        return STG_E_INVALIDFUNCTION;
    }
    HRESULT STDMETHODCALLTYPE UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override {
        return STG_E_INVALIDFUNCTION;
    }

    HRESULT STDMETHODCALLTYPE Stat(STATSTG* stat, DWORD flags) override {
        if (const HRESULT hr = check(true); FAILED(hr)) return hr;
        return describe(stat, flags, STGTY_STREAM, name_, mode_, bytes().size(), CLSID_NULL);
    }

    HRESULT STDMETHODCALLTYPE Clone(IStream** clone) override {
        if (!clone) return STG_E_INVALIDPOINTER;
        *clone = nullptr;
        if (const HRESULT hr = check(true); FAILED(hr)) return hr;
        return withoutRaising([&] {
            auto made = ComPtr<Stream>::adopt(new Stream(entry_, name_, mode_, lifetime_));
            made->position_ = position_;
            *clone = made.detach();
            return S_OK;
        });
    }

  private:
    bool isOffered(REFIID iid) const override {
        return iid == IID_IStream || iid == IID_ISequentialStream;
    }

    HRESULT check(bool isAllowed) const {
        if (lifetime_->isOver()) return STG_E_REVERTED;
        return isAllowed ? S_OK : STG_E_ACCESSDENIED;
    }

    Bytes& bytes() const { return entry_->bytes; }

    HRESULT resize(std::size_t size) {
        try {
            bytes().resize(size);
            return S_OK;
        } catch (const std::bad_alloc&) {
            return STG_E_MEDIUMFULL;
        }
    }

    std::shared_ptr<StreamEntry> entry_;
    OleString name_;
    DWORD mode_;
    std::shared_ptr<Lifetime> lifetime_;
    ULONGLONG position_ = 0;
};

} // namespace

ComPtr<IStream> makeStream(std::shared_ptr<StreamEntry> entry, OleView name, DWORD mode,
                           std::shared_ptr<Lifetime> lifetime) {
    return ComPtr<IStream>::adopt(new Stream(std::move(entry), name, mode, std::move(lifetime)));
}

HRESULT describe(STATSTG* stat, DWORD flags, STGTY type, OleView name, DWORD mode, std::size_t size,
                 const CLSID& clsid) {
    if (!stat) return STG_E_INVALIDPOINTER;
    *stat = {};
    if (flags != STATFLAG_DEFAULT && flags != STATFLAG_NONAME) return STG_E_INVALIDFLAG;
    if (flags == STATFLAG_DEFAULT && !name.empty()) {
        auto* const text =
            static_cast<LPOLESTR>(CoTaskMemAlloc((name.size() + 1) * sizeof(OLECHAR)));
        if (!text) return STG_E_INSUFFICIENTMEMORY;
        name.copy(text, name.size());
        text[name.size()] = 0;
        stat->pwcsName = text;
    }
    stat->type = type;
    stat->grfMode = mode;
    stat->cbSize.QuadPart = size;
    stat->clsid = clsid;
    return S_OK;
}

} // namespace platform

extern "C" HRESULT CreateStreamOnHGlobal(HGLOBAL memory, BOOL, IStream** stream) {
    if (!stream) return E_INVALIDARG;
    *stream = nullptr;
    if (memory) return E_INVALIDARG;
    return platform::answer([&] {
        *stream = platform::makeStream(std::make_shared<platform::StreamEntry>(), {},
                                       STGM_READWRITE, std::make_shared<platform::Lifetime>())
                      .detach();
        return S_OK;
    });
}
