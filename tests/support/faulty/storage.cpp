// Faulty fronts of IStorage and IStream. Their last releases may write and don't fail.
#include "support/faulty/storage.h"

namespace axlink2::test {
namespace {

using platform::ComPtr;

class FaultyStream final : public Faulty<IStream> {
  public:
    using Faulty::Faulty;

    HRESULT STDMETHODCALLTYPE Read(void* buffer, ULONG size, ULONG* count) override {
        return orFails("IStream::Read", [&] { return real_->Read(buffer, size, count); });
    }
    HRESULT STDMETHODCALLTYPE Write(const void* buffer, ULONG size, ULONG* count) override {
        return orFails("IStream::Write", [&] { return real_->Write(buffer, size, count); });
    }
    HRESULT STDMETHODCALLTYPE Seek(LARGE_INTEGER move, DWORD origin,
                                   ULARGE_INTEGER* position) override {
        return orFails("IStream::Seek", [&] { return real_->Seek(move, origin, position); });
    }
    HRESULT STDMETHODCALLTYPE SetSize(ULARGE_INTEGER size) override {
        return orFails("IStream::SetSize", [&] { return real_->SetSize(size); });
    }
    HRESULT STDMETHODCALLTYPE CopyTo(IStream* target, ULARGE_INTEGER size, ULARGE_INTEGER* read,
                                     ULARGE_INTEGER* written) override {
        return orFails("IStream::CopyTo",
                       [&] { return real_->CopyTo(target, size, read, written); });
    }
    HRESULT STDMETHODCALLTYPE Commit(DWORD flags) override {
        return orFails("IStream::Commit", [&] { return real_->Commit(flags); });
    }
    HRESULT STDMETHODCALLTYPE Revert() override {
        return orFails("IStream::Revert", [&] { return real_->Revert(); });
    }
    HRESULT STDMETHODCALLTYPE LockRegion(ULARGE_INTEGER offset, ULARGE_INTEGER size,
                                         DWORD lockType) override {
        return real_->LockRegion(offset, size, lockType);
    }
    HRESULT STDMETHODCALLTYPE UnlockRegion(ULARGE_INTEGER offset, ULARGE_INTEGER size,
                                           DWORD lockType) override {
        return real_->UnlockRegion(offset, size, lockType);
    }
    HRESULT STDMETHODCALLTYPE Stat(STATSTG* stat, DWORD flags) override {
        return orFails("IStream::Stat", [&] { return real_->Stat(stat, flags); });
    }
    HRESULT STDMETHODCALLTYPE Clone(IStream** clone) override { return real_->Clone(clone); }
};

class FaultyStorage final : public Faulty<IStorage> {
  public:
    using Faulty::Faulty;

    HRESULT STDMETHODCALLTYPE CreateStream(const OLECHAR* name, DWORD mode, DWORD reserved1,
                                           DWORD reserved2, IStream** stream) override {
        return orFails("CreateStream", stream, [&] {
            return wrap(real_->CreateStream(name, mode, reserved1, reserved2, stream), stream);
        });
    }
    HRESULT STDMETHODCALLTYPE OpenStream(const OLECHAR* name, void* reserved1, DWORD mode,
                                         DWORD reserved2, IStream** stream) override {
        return orFails("OpenStream", stream, [&] {
            return wrap(real_->OpenStream(name, reserved1, mode, reserved2, stream), stream);
        });
    }
    HRESULT STDMETHODCALLTYPE CreateStorage(const OLECHAR* name, DWORD mode, DWORD reserved1,
                                            DWORD reserved2, IStorage** storage) override {
        return orFails("CreateStorage", storage, [&] {
            return real_->CreateStorage(name, mode, reserved1, reserved2, storage);
        });
    }
    HRESULT STDMETHODCALLTYPE OpenStorage(const OLECHAR* name, IStorage* priority, DWORD mode,
                                          SNB exclude, DWORD reserved,
                                          IStorage** storage) override {
        return orFails("OpenStorage", storage, [&] {
            return real_->OpenStorage(name, priority, mode, exclude, reserved, storage);
        });
    }
    HRESULT STDMETHODCALLTYPE CopyTo(DWORD excludedCount, const IID* excludedIids,
                                     SNB excludedNames, IStorage* target) override {
        return orFails("IStorage::CopyTo", [&] {
            return real_->CopyTo(excludedCount, excludedIids, excludedNames, target);
        });
    }
    HRESULT STDMETHODCALLTYPE MoveElementTo(const OLECHAR* name, IStorage* target,
                                            const OLECHAR* newName, DWORD flags) override {
        return real_->MoveElementTo(name, target, newName, flags);
    }
    HRESULT STDMETHODCALLTYPE Commit(DWORD flags) override {
        return orFails("IStorage::Commit", [&] { return real_->Commit(flags); });
    }
    HRESULT STDMETHODCALLTYPE Revert() override {
        return orFails("IStorage::Revert", [&] { return real_->Revert(); });
    }
    HRESULT STDMETHODCALLTYPE EnumElements(DWORD reserved1, void* reserved2, DWORD reserved3,
                                           IEnumSTATSTG** enumerator) override {
        return real_->EnumElements(reserved1, reserved2, reserved3, enumerator);
    }
    HRESULT STDMETHODCALLTYPE DestroyElement(const OLECHAR* name) override {
        return real_->DestroyElement(name);
    }
    HRESULT STDMETHODCALLTYPE RenameElement(const OLECHAR* name, const OLECHAR* newName) override {
        return real_->RenameElement(name, newName);
    }
    HRESULT STDMETHODCALLTYPE SetElementTimes(const OLECHAR* name, const FILETIME* created,
                                              const FILETIME* accessed,
                                              const FILETIME* modified) override {
        return real_->SetElementTimes(name, created, accessed, modified);
    }
    HRESULT STDMETHODCALLTYPE SetClass(REFCLSID clsid) override {
        return orFails("SetClass", [&] { return real_->SetClass(clsid); });
    }
    HRESULT STDMETHODCALLTYPE SetStateBits(DWORD bits, DWORD mask) override {
        return real_->SetStateBits(bits, mask);
    }
    HRESULT STDMETHODCALLTYPE Stat(STATSTG* stat, DWORD flags) override {
        return orFails("IStorage::Stat", [&] { return real_->Stat(stat, flags); });
    }

  private:
    HRESULT wrap(HRESULT hr, IStream** stream) {
        if (FAILED(hr)) return hr;
        const auto real = ComPtr<IStream>::adopt(*stream);
        *stream = faultyStream(real.get(), plan_).detach();
        return hr;
    }
};

} // namespace

ComPtr<IStorage> faultyStorage(IStorage* real, FaultPlan& plan) {
    const OwnWork own(plan);
    return ComPtr<IStorage>::adopt(new FaultyStorage(real, IID_IStorage, plan));
}

ComPtr<IStream> faultyStream(IStream* real, FaultPlan& plan) {
    const OwnWork own(plan);
    return ComPtr<IStream>::adopt(new FaultyStream(real, IID_IStream, plan));
}

} // namespace axlink2::test
