// Beginnings of COM objects: the count of references, and QueryInterface for one interface.
#pragma once

#include "platform/com.h"

#include <atomic>

namespace platform {

// An object that its references keep alive; the first one is its creator's.
template <class... Interfaces>
class Counted : public Interfaces... {
  public:
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }
    ULONG references() const { return references_.load(); }

  protected:
    virtual ~Counted() = default;

  private:
    std::atomic<ULONG> references_ = 1;
};

// One with a single interface, which goes by every identifier that `isOffered` tells.
template <class Interface>
class CountedInterface : public Counted<Interface> {
  public:
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (!object) return E_POINTER;
        *object = nullptr;
        if (iid != IID_IUnknown && !isOffered(iid)) return E_NOINTERFACE;
        this->AddRef();
        *object = static_cast<Interface*>(this);
        return S_OK;
    }

  private:
    virtual bool isOffered(REFIID iid) const = 0;
};

} // namespace platform
