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

    // What neither the module nor a document calls.
    HRESULT STDMETHODCALLTYPE SetSize(ULARGE_INTEGER) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CopyTo(IStream*, ULARGE_INTEGER, ULARGE_INTEGER*,
                                     ULARGE_INTEGER*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Commit(DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Revert() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE LockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE UnlockRegion(ULARGE_INTEGER, ULARGE_INTEGER, DWORD) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Stat(STATSTG*, DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Clone(IStream**) override { return E_NOTIMPL; }
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
    HRESULT STDMETHODCALLTYPE Commit(DWORD flags) override {
        return orFails("IStorage::Commit", [&] { return real_->Commit(flags); });
    }
    HRESULT STDMETHODCALLTYPE SetClass(REFCLSID clsid) override {
        return orFails("SetClass", [&] { return real_->SetClass(clsid); });
    }

    // As above.
    HRESULT STDMETHODCALLTYPE CreateStorage(const OLECHAR*, DWORD, DWORD, DWORD,
                                            IStorage**) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE OpenStorage(const OLECHAR*, IStorage*, DWORD, SNB, DWORD,
                                          IStorage**) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE CopyTo(DWORD, const IID*, SNB, IStorage*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE MoveElementTo(const OLECHAR*, IStorage*, const OLECHAR*,
                                            DWORD) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Revert() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE EnumElements(DWORD, void*, DWORD, IEnumSTATSTG**) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE DestroyElement(const OLECHAR*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE RenameElement(const OLECHAR*, const OLECHAR*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetElementTimes(const OLECHAR*, const FILETIME*, const FILETIME*,
                                              const FILETIME*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE SetStateBits(DWORD, DWORD) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Stat(STATSTG*, DWORD) override { return E_NOTIMPL; }

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
