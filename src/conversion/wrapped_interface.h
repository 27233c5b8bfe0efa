// Interfaces that a server hands out, as objects of generated classes.
#pragma once

#include "host/array.h"
#include "host/interface.h"
#include "platform/com.h"

#include <string>

namespace axlink2 {

// A 1-by-1 object array for the interface in `v`, a VT_DISPATCH, VT_UNKNOWN or VT_PTR, whose one
// reference is taken over. The object is linked to `owner`, when there is one, whose member
// `memberName` gave the value. Null when the interface is null or has no IDispatch.
hxArray* wrapInterface(VARIANT* v, const hos::HOSInterfacePtr& owner, const char* memberName);

// The name of the class for a key, an IID's text or a made-up name; the class is added when it is
// new.
std::string interfaceClassForIID(const _bstr_t& key);

// A name after the key itself, without braces and hyphens.
std::string nameAfterKey(const _bstr_t& key);

// What a class of that key will be called: by its registered name, else after the key.
std::string interfaceClassName(const _bstr_t& key);

// The library's and the interface's registered names, joined and made a valid name; empty when
// anything is missing.
_bstr_t interfaceDisplayName(const _bstr_t& iidText);

// Blanks, brackets and the like replaced by underscores. With `validate` the result is empty when
// the host doesn't take it as a name.
_bstr_t sanitizeClassName(const _bstr_t& text, bool validate);

} // namespace axlink2
