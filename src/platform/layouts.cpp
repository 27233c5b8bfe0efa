// Pins the binary layouts that COM fixes; the compiler is the check.
#include "platform/com.h"

#include <cstddef>
#include <type_traits>

static_assert(sizeof(void*) == 8, "the layouts below are those of 64-bit systems");

static_assert(sizeof(OLECHAR) == 2 && std::is_same_v<BSTR, OLECHAR*>);
static_assert(sizeof(LONG) == 4 && sizeof(ULONG) == 4 && sizeof(DWORD) == 4 && sizeof(INT) == 4);
static_assert(sizeof(HRESULT) == 4 && std::is_signed_v<HRESULT>);
static_assert(sizeof(LONGLONG) == 8 && sizeof(VARIANT_BOOL) == 2 && sizeof(VARTYPE) == 2);
static_assert(sizeof(DISPID) == 4 && sizeof(DATE) == 8);

static_assert(sizeof(GUID) == 16 && offsetof(GUID, Data4) == 8);
static_assert(sizeof(CY) == 8);
static_assert(sizeof(FILETIME) == 8 && sizeof(SYSTEMTIME) == 16);

static_assert(sizeof(DECIMAL) == 16 && offsetof(DECIMAL, scale) == 2);
static_assert(offsetof(DECIMAL, sign) == 3 && offsetof(DECIMAL, Hi32) == 4);
static_assert(offsetof(DECIMAL, Lo32) == 8 && offsetof(DECIMAL, Mid32) == 12);

static_assert(sizeof(VARIANT) == 24 && alignof(VARIANT) == 8);
static_assert(offsetof(VARIANT, vt) == 0 && offsetof(VARIANT, lVal) == 8);
static_assert(offsetof(VARIANT, pRecInfo) == 16 && offsetof(VARIANT, decVal) == 0);

static_assert(sizeof(SAFEARRAYBOUND) == 8 && offsetof(SAFEARRAYBOUND, lLbound) == 4);
static_assert(sizeof(SAFEARRAY) == 32 && offsetof(SAFEARRAY, cbElements) == 4);
static_assert(offsetof(SAFEARRAY, pvData) == 16 && offsetof(SAFEARRAY, rgsabound) == 24);

static_assert(sizeof(DISPPARAMS) == 24 && offsetof(DISPPARAMS, cArgs) == 16);
static_assert(sizeof(EXCEPINFO) == 64 && offsetof(EXCEPINFO, scode) == 56);
