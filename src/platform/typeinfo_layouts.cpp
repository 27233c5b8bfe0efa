// Pins the layouts of the type descriptions that COM fixes; the compiler is the check.
#include "platform/com.h"

#include <cstddef>

static_assert(sizeof(TYPEDESC) == 16 && offsetof(TYPEDESC, vt) == 8);
static_assert(sizeof(ARRAYDESC) == 32 && offsetof(ARRAYDESC, rgbounds) == 20);
static_assert(sizeof(IDLDESC) == 16 && offsetof(IDLDESC, wIDLFlags) == 8);
static_assert(sizeof(PARAMDESCEX) == 32 && offsetof(PARAMDESCEX, varDefaultValue) == 8);
static_assert(sizeof(PARAMDESC) == 16 && offsetof(PARAMDESC, wParamFlags) == 8);
static_assert(sizeof(ELEMDESC) == 32 && offsetof(ELEMDESC, paramdesc) == 16);

static_assert(sizeof(TYPEATTR) == 96 && offsetof(TYPEATTR, typekind) == 44);
static_assert(offsetof(TYPEATTR, wTypeFlags) == 58 && offsetof(TYPEATTR, tdescAlias) == 64);
static_assert(sizeof(FUNCDESC) == 88 && offsetof(FUNCDESC, funckind) == 24);
static_assert(offsetof(FUNCDESC, cParams) == 36 && offsetof(FUNCDESC, elemdescFunc) == 48);
static_assert(sizeof(VARDESC) == 64 && offsetof(VARDESC, lpvarValue) == 16);
static_assert(offsetof(VARDESC, elemdescVar) == 24 && offsetof(VARDESC, varkind) == 60);
static_assert(sizeof(TLIBATTR) == 32 && offsetof(TLIBATTR, syskind) == 20);
static_assert(sizeof(CONNECTDATA) == 16 && sizeof(MULTI_QI) == 24 && sizeof(COSERVERINFO) == 32);
