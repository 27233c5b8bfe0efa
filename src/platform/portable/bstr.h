// BSTR: counted text in one allocation, the byte count in front of it and a null unit behind it.
#pragma once

#include "platform/portable/base_types.h"

// Each gives a new BSTR for SysFreeString, or null when the text is too long or memory is short.
// A null source gives null (SysAllocString), or a string whose content is undefined (the others).
STDAPI_(BSTR) SysAllocString(const OLECHAR* text);
STDAPI_(BSTR) SysAllocStringLen(const OLECHAR* text, UINT units);
STDAPI_(BSTR) SysAllocStringByteLen(LPCSTR bytes, UINT count);

// Give *bstr other content, which may be part of its own; FALSE leaves it as it was. Without a
// source, SysReAllocStringLen keeps what was there and zeroes the rest.
STDAPI_(INT) SysReAllocString(BSTR* bstr, const OLECHAR* text);
STDAPI_(INT) SysReAllocStringLen(BSTR* bstr, const OLECHAR* text, UINT units);

// Does nothing with null.
STDAPI_(void) SysFreeString(BSTR bstr);

// Lengths in units and in bytes; 0 for null.
STDAPI_(UINT) SysStringLen(BSTR bstr);
STDAPI_(UINT) SysStringByteLen(BSTR bstr);
