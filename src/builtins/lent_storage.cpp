// IStorage, handed on call by call.
#include "builtins/lent_storage.h"

#include "platform/counted.h"

namespace axlink2 {

class LentStorage::StandIn final : public platform::CountedInterface<IStorage> {
  public:
    explicit StandIn(platform::ComPtr<IStorage> storage) : storage_(std::move(storage)) {}
    void takeBack() { storage_.reset(); }

    // Interfaces beyond IStorage are the storage's own.
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        const HRESULT own = CountedInterface::QueryInterface(iid, object);
        return own == E_NOINTERFACE && storage_ ? storage_->QueryInterface(iid, object) : own;
    }

    HRESULT STDMETHODCALLTYPE CreateStream(const OLECHAR* name, DWORD mode, DWORD reserved1,
                                           DWORD reserved2, IStream** stream) override {
        return handOn(&IStorage::CreateStream, name, mode, reserved1, reserved2, stream);
    }
    HRESULT STDMETHODCALLTYPE OpenStream(const OLECHAR* name, void* reserved1, DWORD mode,
                                         DWORD reserved2, IStream** stream) override {
        return handOn(&IStorage::OpenStream, name, reserved1, mode, reserved2, stream);
    }
    HRESULT STDMETHODCALLTYPE CreateStorage(const OLECHAR* name, DWORD mode, DWORD reserved1,
                                            DWORD reserved2, IStorage** storage) override {
        return handOn(&IStorage::CreateStorage, name, mode, reserved1, reserved2, storage);
    }
    HRESULT STDMETHODCALLTYPE OpenStorage(const OLECHAR* name, IStorage* priority, DWORD mode,
                                          SNB exclude, DWORD reserved,
                                          IStorage** storage) override {
        return handOn(&IStorage::OpenStorage, name, priority, mode, exclude, reserved, storage);
    }
    HRESULT STDMETHODCALLTYPE CopyTo(DWORD excludedCount, const IID* excludedIids,
                                     SNB excludedNames, IStorage* target) override {
        return handOn(&IStorage::CopyTo, excludedCount, excludedIids, excludedNames, target);
    }
    HRESULT STDMETHODCALLTYPE MoveElementTo(const OLECHAR* name, IStorage* target,
                                            const OLECHAR* newName, DWORD flags) override {
        return handOn(&IStorage::MoveElementTo, name, target, newName, flags);
    }
    HRESULT STDMETHODCALLTYPE Commit(DWORD flags) override {
        return handOn(&IStorage::Commit, flags);
    }
    HRESULT STDMETHODCALLTYPE Revert() override { return handOn(&IStorage::Revert); }
    HRESULT STDMETHODCALLTYPE EnumElements(DWORD reserved1, void* reserved2, DWORD reserved3,
                                           IEnumSTATSTG** enumerator) override {
        return handOn(&IStorage::EnumElements, reserved1, reserved2, reserved3, enumerator);
    }
    HRESULT STDMETHODCALLTYPE DestroyElement(const OLECHAR* name) override {
        return handOn(&IStorage::DestroyElement, name);
    }
    HRESULT STDMETHODCALLTYPE RenameElement(const OLECHAR* name, const OLECHAR* newName) override {
        return handOn(&IStorage::RenameElement, name, newName);
    }
    HRESULT STDMETHODCALLTYPE SetElementTimes(const OLECHAR* name, const FILETIME* created,
                                              const FILETIME* accessed,
                                              const FILETIME* modified) override {
        return handOn(&IStorage::SetElementTimes, name, created, accessed, modified);
    }
    HRESULT STDMETHODCALLTYPE SetClass(REFCLSID clsid) override {
        return storage_ ? storage_->SetClass(clsid) : STG_E_REVERTED;
    }
    HRESULT STDMETHODCALLTYPE SetStateBits(DWORD bits, DWORD mask) override {
        return handOn(&IStorage::SetStateBits, bits, mask);
    }
    HRESULT STDMETHODCALLTYPE Stat(STATSTG* stat, DWORD flags) override {
        return handOn(&IStorage::Stat, stat, flags);
    }

  private:
    bool isOffered(REFIID iid) const override { return iid == IID_IStorage; }

    template <class... Parameters>
    HRESULT handOn(HRESULT (STDMETHODCALLTYPE IStorage::*method)(Parameters...),
                   std::type_identity_t<Parameters>... arguments) {
        return storage_ ? (storage_.get()->*method)(arguments...) : STG_E_REVERTED;
    }

    platform::ComPtr<IStorage> storage_;
};

LentStorage::LentStorage(platform::ComPtr<IStorage> storage)
    : standIn_(platform::ComPtr<StandIn>::adopt(new StandIn(std::move(storage)))) {}

LentStorage::~LentStorage() { standIn_->takeBack(); }

IStorage* LentStorage::get() const { return standIn_.get(); }

} // namespace axlink2
