// The identifiers that guid.h declares.
#include "platform/portable/guid.h"

const GUID GUID_NULL{};
const IID IID_NULL{};
const CLSID CLSID_NULL{};
const IID IID_IUnknown{0x00000000, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
const IID IID_IDispatch{0x00020400, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
