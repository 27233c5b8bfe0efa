// Faulty fronts of IPersistFile, IPersistStorage, IPersistStreamInit and IPersistStream.
#include "support/faulty/persistence.h"

namespace axlink2::test {
namespace {

template <class Interface>
class FaultyPersistence : public Faulty<Interface, Silent<Interface>> {
  public:
    using Faulty<Interface, Silent<Interface>>::Faulty;

    HRESULT STDMETHODCALLTYPE GetClassID(CLSID* clsid) override {
        return this->orFails("GetClassID", [&] { return this->real_->GetClassID(clsid); });
    }
};

class FaultyFile final : public FaultyPersistence<IPersistFile> {
  public:
    using FaultyPersistence::FaultyPersistence;

    HRESULT STDMETHODCALLTYPE Load(LPCOLESTR fileName, DWORD mode) override {
        return orFails("Load", [&] { return real_->Load(fileName, mode); });
    }
    HRESULT STDMETHODCALLTYPE Save(LPCOLESTR fileName, BOOL remember) override {
        return orFails("Save", [&] { return real_->Save(fileName, remember); });
    }
};

class FaultyStored final : public FaultyPersistence<IPersistStorage> {
  public:
    using FaultyPersistence::FaultyPersistence;

    HRESULT STDMETHODCALLTYPE Load(IStorage* storage) override {
        return orFails("Load", [&] { return real_->Load(storage); });
    }
    HRESULT STDMETHODCALLTYPE Save(IStorage* storage, BOOL sameAsLoad) override {
        return orFails("Save", [&] { return real_->Save(storage, sameAsLoad); });
    }
    HRESULT STDMETHODCALLTYPE SaveCompleted(IStorage* storage) override {
        return orFails("SaveCompleted", [&] { return real_->SaveCompleted(storage); });
    }
    HRESULT STDMETHODCALLTYPE HandsOffStorage() override {
        return orFails("HandsOffStorage", [&] { return real_->HandsOffStorage(); });
    }
};

template <class Interface>
class FaultyStreamed final : public FaultyPersistence<Interface> {
  public:
    using FaultyPersistence<Interface>::FaultyPersistence;

    HRESULT STDMETHODCALLTYPE Load(IStream* stream) override {
        return this->orFails("Load", [&] { return this->real_->Load(stream); });
    }
    HRESULT STDMETHODCALLTYPE Save(IStream* stream, BOOL clearDirty) override {
        return this->orFails("Save", [&] { return this->real_->Save(stream, clearDirty); });
    }
};

template <class Front, class Interface>
IUnknown* makeFront(IUnknown* real, REFIID iid, FaultPlan& plan, IUnknown* identity) {
    const auto offered = platform::queryInterface<Interface>(real, iid);
    return offered ? static_cast<Interface*>(new Front(offered.get(), iid, plan, identity))
                   : nullptr;
}

struct Row {
    const IID& iid;
    IUnknown* (*make)(IUnknown* real, REFIID iid, FaultPlan& plan, IUnknown* identity);
};

const Row rows[] = {
    {IID_IPersistFile, makeFront<FaultyFile, IPersistFile>},
    {IID_IPersistStorage, makeFront<FaultyStored, IPersistStorage>},
    {IID_IPersistStreamInit, makeFront<FaultyStreamed<IPersistStreamInit>, IPersistStreamInit>},
    {IID_IPersistStream, makeFront<FaultyStreamed<IPersistStream>, IPersistStream>},
};

} // namespace

HRESULT givePersistence(IUnknown* real, REFIID iid, FaultPlan& plan, IUnknown* identity,
                        void** out) {
    *out = nullptr;
    const OwnWork own(plan);
    for (const Row& row : rows)
        if (row.iid == iid) *out = row.make(real, row.iid, plan, identity);
    return *out ? S_OK : E_NOINTERFACE;
}

} // namespace axlink2::test
