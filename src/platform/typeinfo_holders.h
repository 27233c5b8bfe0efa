// Holders of what type information hands out: each gets a description and gives it back.
#pragma once

#include "platform/com.h"
#include "platform/guarded_call.h"

#include <utility>

namespace platform {

// Source is the interface that gives the description, Release its call that takes it back. The
// source must outlive the holder. A call that fails, a fault in it included, or succeeds with a
// null description, leaves the holder empty.
template <class Source, class Desc, void (STDMETHODCALLTYPE Source::*Release)(Desc*)>
class DescHolder {
  public:
    // Calls get with args and the place for the description, as in
    // FuncDescHolder(info, &ITypeInfo::GetFuncDesc, index).
    template <class Get, class... Args>
    DescHolder(Source* source, Get get, Args... args) {
        if (!source) {
            hr_ = E_POINTER;
            return;
        }
        source_ = source;
        if (guarded([&] { hr_ = (source->*get)(args..., &desc_); })) {
            hr_ = E_FAIL;
        }
        if (FAILED(hr_)) {
            desc_ = nullptr;
        }
    }
    DescHolder(DescHolder&& other) noexcept
        : source_(other.source_), desc_(std::exchange(other.desc_, nullptr)), hr_(other.hr_) {}
    DescHolder& operator=(DescHolder&&) = delete;
    ~DescHolder() {
        if (desc_) {
            guarded([this] { (source_->*Release)(desc_); });
        }
    }

    explicit operator bool() const { return desc_ != nullptr; }
    Desc* get() const { return desc_; }
    Desc* operator->() const { return desc_; }
    Desc& operator*() const { return *desc_; }
    // What the get call answered.
    HRESULT result() const { return hr_; }

  private:
    Source* source_ = nullptr;
    Desc* desc_ = nullptr;
    HRESULT hr_ = S_OK;
};

using TypeAttrHolder = DescHolder<ITypeInfo, TYPEATTR, &ITypeInfo::ReleaseTypeAttr>;
using FuncDescHolder = DescHolder<ITypeInfo, FUNCDESC, &ITypeInfo::ReleaseFuncDesc>;
using VarDescHolder = DescHolder<ITypeInfo, VARDESC, &ITypeInfo::ReleaseVarDesc>;
using LibAttrHolder = DescHolder<ITypeLib, TLIBATTR, &ITypeLib::ReleaseTLibAttr>;

} // namespace platform
