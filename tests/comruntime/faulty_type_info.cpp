// Faulty fronts of ITypeInfo, ITypeLib and IDispatch.
#include "comruntime/faulty_type_info.h"

#include <utility>

namespace axlink2::test {
namespace {

using platform::ComPtr;

// Reference counting, and the decision which call fails.
template <class Interface>
class Faulty : public Interface {
  public:
    Faulty(Interface* real, const IID& iid, FaultPlan& plan)
        : real_(ComPtr<Interface>::borrow(real)), plan_(plan), iid_(iid) {
        ++plan_.alive;
    }

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
        const bool known = iid == iid_ || iid == IID_IUnknown;
        *out = known ? static_cast<Interface*>(this) : nullptr;
        if (known) AddRef();
        return known ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

  protected:
    virtual ~Faulty() { --plan_.alive; }

    // Whether this call is the one that fails; then `*out`, if there is one, is as the plan says.
    bool fails() { return plan_.calls++ == plan_.failingCall; }
    template <class T>
    HRESULT failed(T** out) {
        if (out && plan_.kind == FaultPlan::Garbage) *out = reinterpret_cast<T*>(0x10);
        if (out && plan_.kind == FaultPlan::EmptySuccess) *out = nullptr;
        return result();
    }
    HRESULT result() const { return plan_.kind == FaultPlan::EmptySuccess ? S_OK : E_FAIL; }

    ComPtr<Interface> real_;
    FaultPlan& plan_;

  private:
    const IID& iid_;
    ULONG references_ = 1;
};

ComPtr<ITypeLib> faultyTypeLib(ITypeLib* real, FaultPlan& plan);

// Puts a faulty front before a type that the real object has just given.
HRESULT wrap(HRESULT hr, ITypeInfo** type, FaultPlan& plan) {
    if (SUCCEEDED(hr)) {
        const auto real = ComPtr<ITypeInfo>::adopt(*type);
        *type = faultyTypeInfo(real.get(), plan).detach();
    }
    return hr;
}

class FaultyTypeInfo final : public Faulty<ITypeInfo> {
  public:
    using Faulty::Faulty;

    HRESULT STDMETHODCALLTYPE GetTypeAttr(TYPEATTR** out) override {
        if (fails()) return failed(out);
        const HRESULT hr = counted(real_->GetTypeAttr(out));
        if (SUCCEEDED(hr) && plan_.lyingCount) {
            const auto count = static_cast<WORD>(plan_.lyingCount);
            (*out)->cFuncs = (*out)->cVars = (*out)->cImplTypes = count;
        }
        return hr;
    }
    HRESULT STDMETHODCALLTYPE GetFuncDesc(UINT index, FUNCDESC** out) override {
        if (fails()) return failed(out);
        const HRESULT hr = counted(real_->GetFuncDesc(index, out));
        if (FAILED(hr) || !plan_.lyingParameters) return hr;
        parameters_ = std::exchange((*out)->lprgelemdescParam, nullptr);
        parameterCount_ = std::exchange((*out)->cParams, SHORT{3});
        return hr;
    }
    HRESULT STDMETHODCALLTYPE GetVarDesc(UINT index, VARDESC** out) override {
        return fails() ? failed(out) : counted(real_->GetVarDesc(index, out));
    }
    HRESULT STDMETHODCALLTYPE GetNames(MEMBERID member, BSTR* names, UINT most,
                                       UINT* count) override {
        if (fails()) {
            if (plan_.kind == FaultPlan::EmptySuccess) *count = 0xFFFF;
            return result();
        }
        return real_->GetNames(member, names, most, count);
    }
    HRESULT STDMETHODCALLTYPE GetRefTypeOfImplType(UINT index, HREFTYPE* out) override {
        return fails() ? E_FAIL : real_->GetRefTypeOfImplType(index, out);
    }
    HRESULT STDMETHODCALLTYPE GetImplTypeFlags(UINT index, INT* out) override {
        return fails() ? E_FAIL : real_->GetImplTypeFlags(index, out);
    }
    HRESULT STDMETHODCALLTYPE GetDocumentation(MEMBERID member, BSTR* name, BSTR* text,
                                               DWORD* context, BSTR* file) override {
        if (fails()) return failed(name);
        return real_->GetDocumentation(member, name, text, context, file);
    }
    HRESULT STDMETHODCALLTYPE GetRefTypeInfo(HREFTYPE reference, ITypeInfo** out) override {
        return fails() ? failed(out) : wrap(real_->GetRefTypeInfo(reference, out), out, plan_);
    }
    HRESULT STDMETHODCALLTYPE GetContainingTypeLib(ITypeLib** out, UINT* index) override {
        if (fails()) return failed(out);
        const HRESULT hr = real_->GetContainingTypeLib(out, index);
        if (FAILED(hr)) return hr;
        const auto real = ComPtr<ITypeLib>::adopt(*out);
        *out = faultyTypeLib(real.get(), plan_).detach();
        return hr;
    }
    void STDMETHODCALLTYPE ReleaseTypeAttr(TYPEATTR* attributes) override {
        --plan_.outstanding;
        real_->ReleaseTypeAttr(attributes);
    }
    void STDMETHODCALLTYPE ReleaseFuncDesc(FUNCDESC* function) override {
        --plan_.outstanding;
        if (plan_.lyingParameters) {
            function->lprgelemdescParam = parameters_;
            function->cParams = parameterCount_;
        }
        real_->ReleaseFuncDesc(function);
    }
    void STDMETHODCALLTYPE ReleaseVarDesc(VARDESC* variable) override {
        --plan_.outstanding;
        real_->ReleaseVarDesc(variable);
    }

    // What no reader of descriptions calls.
    HRESULT STDMETHODCALLTYPE GetTypeComp(ITypeComp**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(LPOLESTR*, UINT, MEMBERID*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(PVOID, MEMBERID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetDllEntry(MEMBERID, INVOKEKIND, BSTR*, BSTR*, WORD*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE AddressOfMember(MEMBERID, INVOKEKIND, PVOID*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown*, REFIID, PVOID*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE GetMops(MEMBERID, BSTR*) override { return E_NOTIMPL; }

  private:
    HRESULT counted(HRESULT hr) {
        if (SUCCEEDED(hr)) ++plan_.outstanding;
        return hr;
    }

    ELEMDESC* parameters_ = nullptr;
    SHORT parameterCount_ = 0;
};

class FaultyTypeLib final : public Faulty<ITypeLib> {
  public:
    using Faulty::Faulty;

    UINT STDMETHODCALLTYPE GetTypeInfoCount() override {
        return plan_.lyingCount ? 0xFFFFFFFF : real_->GetTypeInfoCount();
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, ITypeInfo** out) override {
        return fails() ? failed(out) : wrap(real_->GetTypeInfo(index, out), out, plan_);
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoOfGuid(REFGUID guid, ITypeInfo** out) override {
        return fails() ? failed(out) : wrap(real_->GetTypeInfoOfGuid(guid, out), out, plan_);
    }

    HRESULT STDMETHODCALLTYPE GetTypeInfoType(UINT, TYPEKIND*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetLibAttr(TLIBATTR**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeComp(ITypeComp**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetDocumentation(INT, BSTR*, BSTR*, DWORD*, BSTR*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE IsName(LPOLESTR, ULONG, BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE FindName(LPOLESTR, ULONG, ITypeInfo**, MEMBERID*, USHORT*) override {
        return E_NOTIMPL;
    }
    void STDMETHODCALLTYPE ReleaseTLibAttr(TLIBATTR*) override {}
};

ComPtr<ITypeLib> faultyTypeLib(ITypeLib* real, FaultPlan& plan) {
    return ComPtr<ITypeLib>::adopt(new FaultyTypeLib(real, IID_ITypeLib, plan));
}

class FaultyServer final : public Faulty<IDispatch> {
  public:
    using Faulty::Faulty;

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        if (fails()) {
            if (plan_.kind == FaultPlan::EmptySuccess) *count = 2;
            return result();
        }
        return real_->GetTypeInfoCount(count);
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, LCID lcid, ITypeInfo** out) override {
        return fails() ? failed(out) : wrap(real_->GetTypeInfo(index, lcid, out), out, plan_);
    }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID iid, LPOLESTR* names, UINT count, LCID lcid,
                                            DISPID* dispids) override {
        return fails() ? E_FAIL : real_->GetIDsOfNames(iid, names, count, lcid, dispids);
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID dispid, REFIID iid, LCID lcid, WORD flags,
                                     DISPPARAMS* params, VARIANT* result, EXCEPINFO* excepInfo,
                                     UINT* argumentError) override {
        return real_->Invoke(dispid, iid, lcid, flags, params, result, excepInfo, argumentError);
    }
};

} // namespace

ComPtr<ITypeInfo> faultyTypeInfo(ITypeInfo* real, FaultPlan& plan) {
    return ComPtr<ITypeInfo>::adopt(new FaultyTypeInfo(real, IID_ITypeInfo, plan));
}

ComPtr<IDispatch> faultyServer(IDispatch* real, FaultPlan& plan) {
    return ComPtr<IDispatch>::adopt(new FaultyServer(real, IID_IDispatch, plan));
}

} // namespace axlink2::test
