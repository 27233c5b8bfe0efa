// _com_error, and _bstr_t's counted text.
#include "platform/portable/com_support.h"

#include "platform/portable/bstr.h"
#include "platform/portable/system.h"
#include "platform/text.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <utility>

_com_error::_com_error(HRESULT hr, IErrorInfo* errorInfo, bool addRef) noexcept
    : hr_(hr), errorInfo_(errorInfo) {
    if (errorInfo_ && addRef) {
        errorInfo_->AddRef();
    }
}

_com_error::_com_error(const _com_error& other) noexcept
    : _com_error(other.hr_, other.errorInfo_, true) {}

_com_error& _com_error::operator=(const _com_error& other) noexcept {
    if (this == &other) return *this;
    hr_ = other.hr_;
    if (IErrorInfo* old = std::exchange(errorInfo_, other.ErrorInfo())) {
        old->Release();
    }
    message_.clear();
    return *this;
}

_com_error::~_com_error() noexcept {
    if (errorInfo_) {
        errorInfo_->Release();
    }
}

IErrorInfo* _com_error::ErrorInfo() const noexcept {
    if (errorInfo_) {
        errorInfo_->AddRef();
    }
    return errorInfo_;
}

const OLECHAR* _com_error::ErrorMessage() const {
    if (message_.empty()) {
        LPOLESTR buffer = nullptr;
        const DWORD size = FormatMessageW(
            FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM, nullptr,
            static_cast<DWORD>(hr_), 0, reinterpret_cast<LPOLESTR>(&buffer), 0, nullptr);
        if (size > 0) {
            const std::unique_ptr<OLECHAR, void* (*)(void*)> owner(buffer, LocalFree);
            message_.assign(buffer, size);
            message_.erase(message_.find_last_not_of(OLESTR("\r\n")) + 1);
        } else {
            constexpr char digits[] = "0123456789ABCDEF";
            message_ = OLESTR("Unknown error 0x");
            for (int shift = 28; shift >= 0; shift -= 4) {
                message_ += static_cast<OLECHAR>(digits[(static_cast<DWORD>(hr_) >> shift) & 0xF]);
            }
        }
    }
    return message_.c_str();
}

void _com_raise_error(HRESULT hr, IErrorInfo* errorInfo) { throw _com_error(hr, errorInfo); }
void _com_issue_error(HRESULT hr) { throw _com_error(hr); }

struct _bstr_t::Data {
    explicit Data(BSTR owned) noexcept : text(owned) {}
    Data(const Data&) = delete;
    Data& operator=(const Data&) = delete;
    ~Data() { SysFreeString(text); }

    // Takes text over, also when there is no memory for the count.
    static Data* adopt(BSTR text) {
        try {
            return new Data(text);
        } catch (const std::bad_alloc&) {
            SysFreeString(text);
            _com_issue_error(E_OUTOFMEMORY);
        }
    }

    static BSTR allocate(platform::OleView text) {
        BSTR result = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
        if (!result) {
            _com_issue_error(E_OUTOFMEMORY);
        }
        return result;
    }

    std::atomic<unsigned> references{1};
    BSTR text;
    std::mutex narrowMutex;
    std::string narrow;
};

_bstr_t::_bstr_t(const _bstr_t& other) noexcept : data_(other.data_) {
    if (data_) {
        ++data_->references;
    }
}

_bstr_t::_bstr_t(const char* text)
    : data_(text ? Data::adopt(Data::allocate(platform::toOle(std::string_view(text)))) : nullptr) {
}

_bstr_t::_bstr_t(const OLECHAR* text)
    : data_(text ? Data::adopt(Data::allocate(platform::OleView(text))) : nullptr) {}

_bstr_t::_bstr_t(BSTR text, bool copy)
    : data_(text ? Data::adopt(copy ? Data::allocate(platform::viewOf(text)) : text) : nullptr) {}

_bstr_t& _bstr_t::operator=(const _bstr_t& other) noexcept {
    _bstr_t copy(other);
    std::swap(data_, copy.data_);
    return *this;
}

_bstr_t& _bstr_t::operator=(const char* text) { return *this = _bstr_t(text); }
_bstr_t& _bstr_t::operator=(const OLECHAR* text) { return *this = _bstr_t(text); }

_bstr_t& _bstr_t::operator+=(const _bstr_t& other) {
    platform::OleString both(platform::viewOf(GetBSTR()));
    both += platform::viewOf(other.GetBSTR());
    return *this = _bstr_t(Data::allocate(both), false);
}

_bstr_t _bstr_t::operator+(const _bstr_t& other) const {
    _bstr_t sum(*this);
    sum += other;
    return sum;
}

_bstr_t::operator const char*() const {
    if (!GetBSTR()) {
        return nullptr;
    }
    const std::lock_guard lock(data_->narrowMutex);
    if (data_->narrow.empty()) {
        data_->narrow = platform::toNarrow(platform::viewOf(data_->text));
    }
    return data_->narrow.c_str();
}

_bstr_t::operator char*() const { return const_cast<char*>(static_cast<const char*>(*this)); }

unsigned int _bstr_t::length() const noexcept { return SysStringLen(GetBSTR()); }

BSTR _bstr_t::copy(bool copy) const {
    const BSTR text = GetBSTR();
    return copy && text ? Data::allocate(platform::viewOf(text)) : text;
}

void _bstr_t::Attach(BSTR text) { *this = _bstr_t(text, false); }
void _bstr_t::Assign(BSTR text) { *this = _bstr_t(text, true); }

BSTR _bstr_t::Detach() {
    if (!GetBSTR()) {
        _com_issue_error(E_POINTER);
    }
    const BSTR text = std::exchange(data_->text, nullptr);
    release();
    return text;
}

BSTR& _bstr_t::GetBSTR() {
    if (!data_) {
        data_ = Data::adopt(nullptr);
    }
    return data_->text;
}

BSTR _bstr_t::GetBSTR() const noexcept { return data_ ? data_->text : nullptr; }

BSTR* _bstr_t::GetAddress() {
    Attach(nullptr);
    return &GetBSTR();
}

void _bstr_t::release() noexcept {
    if (Data* data = std::exchange(data_, nullptr); data && --data->references == 0) {
        delete data;
    }
}

int _bstr_t::compare(const _bstr_t& other) const noexcept {
    return platform::viewOf(GetBSTR()).compare(platform::viewOf(other.GetBSTR()));
}
