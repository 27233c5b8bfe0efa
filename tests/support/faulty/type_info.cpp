// Faulty fronts of ITypeInfo and ITypeLib.
#include "support/faulty/type_info.h"

#include <utility>

namespace axlink2::test {
namespace {

using platform::ComPtr;

class FaultyTypeLib final : public Faulty<ITypeLib, Silent<ITypeLib>> {
  public:
    using Faulty::Faulty;

    UINT STDMETHODCALLTYPE GetTypeInfoCount() override {
        return plan_.lyingCount ? 0xFFFFFFFF : real_->GetTypeInfoCount();
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, ITypeInfo** out) override {
        return orFails("ITypeLib::GetTypeInfo", out,
                       [&] { return wrapType(real_->GetTypeInfo(index, out), out, plan_); });
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoOfGuid(REFGUID guid, ITypeInfo** out) override {
        return orFails("ITypeLib::GetTypeInfoOfGuid", out,
                       [&] { return wrapType(real_->GetTypeInfoOfGuid(guid, out), out, plan_); });
    }
};

class FaultyTypeInfo final : public Faulty<ITypeInfo, Silent<ITypeInfo>> {
  public:
    using Faulty::Faulty;

    HRESULT STDMETHODCALLTYPE GetTypeAttr(TYPEATTR** out) override {
        return orFails("GetTypeAttr", out, [&] {
            const HRESULT hr = counted(real_->GetTypeAttr(out));
            if (SUCCEEDED(hr) && plan_.lyingCount) {
                const auto count = static_cast<WORD>(plan_.lyingCount);
                (*out)->cFuncs = (*out)->cVars = (*out)->cImplTypes = count;
            }
            return hr;
        });
    }
    HRESULT STDMETHODCALLTYPE GetFuncDesc(UINT index, FUNCDESC** out) override {
        return orFails("GetFuncDesc", out, [&] {
            const HRESULT hr = counted(real_->GetFuncDesc(index, out));
            if (FAILED(hr) || !plan_.lyingParameters) return hr;
            parameters_ = std::exchange((*out)->lprgelemdescParam, nullptr);
            parameterCount_ = std::exchange((*out)->cParams, SHORT{3});
            return hr;
        });
    }
    HRESULT STDMETHODCALLTYPE GetVarDesc(UINT index, VARDESC** out) override {
        return orFails("GetVarDesc", out, [&] { return counted(real_->GetVarDesc(index, out)); });
    }
    HRESULT STDMETHODCALLTYPE GetNames(MEMBERID member, BSTR* names, UINT most,
                                       UINT* count) override {
        if (!plan_.fails("GetNames")) return real_->GetNames(member, names, most, count);
        if (plan_.kind == FaultPlan::EmptySuccess) *count = 0xFFFF;
        return plan_.answer();
    }
    HRESULT STDMETHODCALLTYPE GetRefTypeOfImplType(UINT index, HREFTYPE* out) override {
        return plan_.fails("GetRefTypeOfImplType") ? E_FAIL
                                                   : real_->GetRefTypeOfImplType(index, out);
    }
    HRESULT STDMETHODCALLTYPE GetImplTypeFlags(UINT index, INT* out) override {
        return plan_.fails("GetImplTypeFlags") ? E_FAIL : real_->GetImplTypeFlags(index, out);
    }
    HRESULT STDMETHODCALLTYPE GetDocumentation(MEMBERID member, BSTR* name, BSTR* text,
                                               DWORD* context, BSTR* file) override {
        return orFails("GetDocumentation", name,
                       [&] { return real_->GetDocumentation(member, name, text, context, file); });
    }
    HRESULT STDMETHODCALLTYPE GetRefTypeInfo(HREFTYPE reference, ITypeInfo** out) override {
        return orFails("GetRefTypeInfo", out,
                       [&] { return wrapType(real_->GetRefTypeInfo(reference, out), out, plan_); });
    }
    HRESULT STDMETHODCALLTYPE GetContainingTypeLib(ITypeLib** out, UINT* index) override {
        return orFails("GetContainingTypeLib", out, [&] {
            const HRESULT hr = real_->GetContainingTypeLib(out, index);
            if (FAILED(hr)) return hr;
            const OwnWork own(plan_);
            const auto real = ComPtr<ITypeLib>::adopt(*out);
            *out = new FaultyTypeLib(real.get(), IID_ITypeLib, plan_);
            return hr;
        });
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

  private:
    HRESULT counted(HRESULT hr) {
        if (SUCCEEDED(hr)) ++plan_.outstanding;
        return hr;
    }

    ELEMDESC* parameters_ = nullptr;
    SHORT parameterCount_ = 0;
};

} // namespace

ComPtr<ITypeInfo> faultyTypeInfo(ITypeInfo* real, FaultPlan& plan) {
    const OwnWork own(plan);
    return ComPtr<ITypeInfo>::adopt(new FaultyTypeInfo(real, IID_ITypeInfo, plan));
}

HRESULT wrapType(HRESULT hr, ITypeInfo** type, FaultPlan& plan) {
    if (FAILED(hr) || !*type) return hr;
    const auto real = ComPtr<ITypeInfo>::adopt(*type);
    *type = faultyTypeInfo(real.get(), plan).detach();
    return hr;
}

} // namespace axlink2::test
