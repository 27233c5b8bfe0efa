// The COM support classes: _bstr_t, a counted BSTR, and _com_error, an HRESULT as an exception.
// Their meaning is the SDK's.
#pragma once

#include "platform/portable/activation.h"
#include "platform/portable/base_types.h"

#include <string>

// A failed call as an exception. It keeps the code and, when the server left one, the error object.
class _com_error {
  public:
    // Takes over the reference to errorInfo unless addRef is true.
    explicit _com_error(HRESULT hr, IErrorInfo* errorInfo = nullptr, bool addRef = false) noexcept;
    _com_error(const _com_error& other) noexcept;
    _com_error& operator=(const _com_error& other) noexcept;
    virtual ~_com_error() noexcept;

    HRESULT Error() const noexcept { return hr_; }
    // The error object with a reference for the caller, or null.
    IErrorInfo* ErrorInfo() const noexcept;
    // The system's text of the code without its line end; it lives as long as the exception.
    const OLECHAR* ErrorMessage() const;

  private:
    HRESULT hr_;
    IErrorInfo* errorInfo_;
    mutable std::basic_string<OLECHAR> message_;
};

// Raises _com_error for hr; the second form keeps errorInfo, whose reference it takes over.
[[noreturn]] void _com_issue_error(HRESULT hr);
[[noreturn]] void _com_raise_error(HRESULT hr, IErrorInfo* errorInfo = nullptr);

// A BSTR shared between copies; counted safely across threads. Raises _com_error with
// E_OUTOFMEMORY when a text can't be allocated. Null is a text of length 0.
class _bstr_t {
  public:
    _bstr_t() noexcept = default;
    _bstr_t(const _bstr_t& other) noexcept;
    // Narrow text is in the thread's code page.
    _bstr_t(const char* text);
    _bstr_t(const OLECHAR* text);
    // Without copy the text itself is taken over.
    _bstr_t(BSTR text, bool copy);
    ~_bstr_t() noexcept { release(); }

    _bstr_t& operator=(const _bstr_t& other) noexcept;
    _bstr_t& operator=(const char* text);
    _bstr_t& operator=(const OLECHAR* text);

    _bstr_t& operator+=(const _bstr_t& other);
    _bstr_t operator+(const _bstr_t& other) const;

    operator const OLECHAR*() const noexcept { return GetBSTR(); }
    operator OLECHAR*() const noexcept { return GetBSTR(); }
    // The text in the thread's code page, kept with it; null for a null text.
    operator const char*() const;
    operator char*() const;

    bool operator!() const noexcept { return GetBSTR() == nullptr; }
    bool operator==(const _bstr_t& other) const noexcept { return compare(other) == 0; }
    bool operator!=(const _bstr_t& other) const noexcept { return compare(other) != 0; }
    bool operator<(const _bstr_t& other) const noexcept { return compare(other) < 0; }
    bool operator>(const _bstr_t& other) const noexcept { return compare(other) > 0; }
    bool operator<=(const _bstr_t& other) const noexcept { return compare(other) <= 0; }
    bool operator>=(const _bstr_t& other) const noexcept { return compare(other) >= 0; }

    // In 16-bit units.
    unsigned int length() const noexcept;
    // A BSTR of the caller's own, or the shared one itself.
    BSTR copy(bool copy = true) const;
    void Attach(BSTR text);
    // Gives the text away; _com_error with E_POINTER when there is none.
    BSTR Detach();
    // A reference to the held BSTR: what is put there is shared by the copies.
    BSTR& GetBSTR();
    BSTR GetBSTR() const noexcept;
    // Lets go of the text and gives the place for a new one, as an out-parameter.
    BSTR* GetAddress();
    void Assign(BSTR text);

  private:
    struct Data;
    void release() noexcept;
    int compare(const _bstr_t& other) const noexcept;
    Data* data_ = nullptr;
};
