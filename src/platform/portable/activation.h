// Apartments, class lookup and activation, the running object table, and COM's task memory. Names
// and results are those of the COM platform; what is said here is what this layer adds to them.
#pragma once

#include "platform/portable/base_types.h"
#include "platform/portable/guid.h"
#include "platform/portable/unknown.h"

inline constexpr HRESULT CO_S_NOTALLINTERFACES = 0x00080012;
inline constexpr HRESULT MK_S_MONIKERALREADYREGISTERED = 0x000401E7;

typedef enum tagCOINIT {
    COINIT_MULTITHREADED = 0x0,
    COINIT_APARTMENTTHREADED = 0x2,
    COINIT_DISABLE_OLE1DDE = 0x4,
    COINIT_SPEED_OVER_MEMORY = 0x8
} COINIT;

typedef enum tagCLSCTX {
    CLSCTX_INPROC_SERVER = 0x1,
    CLSCTX_INPROC_HANDLER = 0x2,
    CLSCTX_LOCAL_SERVER = 0x4,
    CLSCTX_REMOTE_SERVER = 0x10
} CLSCTX;

#define CLSCTX_INPROC (CLSCTX_INPROC_SERVER | CLSCTX_INPROC_HANDLER)
#define CLSCTX_SERVER (CLSCTX_INPROC_SERVER | CLSCTX_LOCAL_SERVER | CLSCTX_REMOTE_SERVER)
#define CLSCTX_ALL (CLSCTX_INPROC_HANDLER | CLSCTX_SERVER)

typedef enum tagREGCLS {
    REGCLS_SINGLEUSE = 0,
    REGCLS_MULTIPLEUSE = 1,
    REGCLS_MULTI_SEPARATE = 2,
    REGCLS_SUSPENDED = 4,
    REGCLS_SURROGATE = 8
} REGCLS;

#define ACTIVEOBJECT_STRONG 0x0
#define ACTIVEOBJECT_WEAK 0x1

typedef struct _COAUTHINFO COAUTHINFO;

typedef struct _COSERVERINFO {
    DWORD dwReserved1;
    LPOLESTR pwszName;
    COAUTHINFO* pAuthInfo;
    DWORD dwReserved2;
} COSERVERINFO;

typedef struct tagMULTI_QI {
    const IID* pIID;
    IUnknown* pItf;
    HRESULT hr;
} MULTI_QI;

extern "C" const IID IID_IClassFactory;
extern "C" const IID IID_IErrorInfo;
extern "C" const IID IID_ISupportErrorInfo;

struct IClassFactory : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid,
                                                     void** object) = 0;
    virtual HRESULT STDMETHODCALLTYPE LockServer(BOOL lock) = 0;
};

struct IErrorInfo : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetGUID(GUID* guid) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetSource(BSTR* source) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetDescription(BSTR* description) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetHelpFile(BSTR* helpFile) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetHelpContext(DWORD* helpContext) = 0;
};

struct ISupportErrorInfo : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) = 0;
};

extern "C" {
// Apartments are a thread's own. They decide what these calls answer; no call is marshalled
// between threads.
HRESULT CoInitialize(void* reserved);
HRESULT CoInitializeEx(void* reserved, DWORD flags);
void CoUninitialize();
HRESULT OleInitialize(void* reserved);
void OleUninitialize();

// A thread without an apartment of its own is in the multithreaded one while any other thread is.
// CLSIDFromProgID reads ProgID\CLSID, then follows ProgID\CurVer.
HRESULT CLSIDFromProgID(LPCOLESTR progId, CLSID* clsid);
HRESULT CLSIDFromString(LPCOLESTR text, CLSID* clsid);
HRESULT IIDFromString(LPCOLESTR text, IID* iid);
// The text is the caller's, to be freed with CoTaskMemFree.
HRESULT ProgIDFromCLSID(REFCLSID clsid, LPOLESTR* progId);
HRESULT StringFromCLSID(REFCLSID clsid, LPOLESTR* text);
int StringFromGUID2(REFGUID guid, LPOLESTR text, int size);
HRESULT CoCreateGuid(GUID* guid);

// Class objects registered in the process come first, then the shared library that the class's
// InprocServer32 names; a library stays loaded to the end of the process.
HRESULT CoGetClassObject(REFCLSID clsid, DWORD context, COSERVERINFO* server, REFIID iid,
                         void** object);
HRESULT CoCreateInstance(REFCLSID clsid, IUnknown* outer, DWORD context, REFIID iid, void** object);
// A machine name answers 0x800706BA (RPC_S_SERVER_UNAVAILABLE).
HRESULT CoCreateInstanceEx(REFCLSID clsid, IUnknown* outer, DWORD context, COSERVERINFO* server,
                           DWORD count, MULTI_QI* results);
HRESULT CoRegisterClassObject(REFCLSID clsid, IUnknown* object, DWORD context, DWORD flags,
                              DWORD* cookie);
HRESULT CoRevokeClassObject(DWORD cookie);

// Running objects are known to this process only.
HRESULT RegisterActiveObject(IUnknown* object, REFCLSID clsid, DWORD flags, DWORD* cookie);
HRESULT RevokeActiveObject(DWORD cookie, void* reserved);
HRESULT GetActiveObject(REFCLSID clsid, void* reserved, IUnknown** object);

void* CoTaskMemAlloc(SIZE_T size);
void CoTaskMemFree(void* block);

// The error object of the thread: set keeps a reference of its own, get gives that away.
HRESULT SetErrorInfo(ULONG reserved, IErrorInfo* errorInfo);
HRESULT GetErrorInfo(ULONG reserved, IErrorInfo** errorInfo);
}
