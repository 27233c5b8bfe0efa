// COM's functions with a failure on demand: this program's own stand before the library's, for
// every library of the process, and pass calls on.
#include "support/faulty/server.h"
#include "support/faulty/storage.h"
#include "torture/points.h"

#include <dlfcn.h>
#include <utility>

#define NEXT(name)                                                                                 \
    static auto* const next = reinterpret_cast<decltype(&(name))>(dlsym(RTLD_NEXT, #name))

// POINT(plan, what a failing call gives, result type, name, parameters, arguments)
#define POINT(plan, failure, Result, name, parameters, arguments)                                  \
    Result name parameters {                                                                       \
        NEXT(name);                                                                                \
        if (torture::plan.fails(#name)) return failure;                                            \
        return next arguments;                                                                     \
    }

// What goes on between a class object and its new object is not the client's.
class OutsideServers {
  public:
    OutsideServers() : counted_(std::exchange(torture::serverCalls.counting, false)) {}
    OutsideServers(const OutsideServers&) = delete;
    ~OutsideServers() { torture::serverCalls.counting = counted_; }

  private:
    bool counted_;
};

// Puts a front before an object that was just given.
template <class Interface, class Front>
HRESULT wrapped(HRESULT hr, Interface** object, Front front) {
    if (FAILED(hr)) return hr;
    const auto real = platform::ComPtr<Interface>::adopt(*object);
    *object = front(real.get(), torture::functionCalls).detach();
    return hr;
}

// What is running has registered itself, without a front.
extern "C" HRESULT GetActiveObject(REFCLSID clsid, void* reserved, IUnknown** object) {
    NEXT(GetActiveObject);
    if (torture::functionCalls.fails("GetActiveObject")) return MK_E_UNAVAILABLE;
    const HRESULT hr = next(clsid, reserved, object);
    if (FAILED(hr)) return hr;
    const auto real = platform::ComPtr<IUnknown>::adopt(*object);
    const auto dispatch = platform::queryInterface<IDispatch>(real.get(), IID_IDispatch);
    *object = axlink2::test::faultyServer(dispatch.get(), torture::serverCalls).detach();
    return hr;
}

extern "C" HRESULT CoCreateInstanceEx(REFCLSID clsid, IUnknown* outer, DWORD context,
                                      COSERVERINFO* server, DWORD count, MULTI_QI* results) {
    NEXT(CoCreateInstanceEx);
    if (torture::functionCalls.fails("CoCreateInstanceEx")) return CO_E_SERVER_EXEC_FAILURE;
    const OutsideServers outside;
    return next(clsid, outer, context, server, count, results);
}

// What storages and streams do is the system's, as these functions are.
extern "C" HRESULT StgCreateDocfile(const OLECHAR* path, DWORD mode, DWORD reserved,
                                    IStorage** storage) {
    NEXT(StgCreateDocfile);
    if (torture::functionCalls.fails("StgCreateDocfile")) return STG_E_ACCESSDENIED;
    return wrapped(next(path, mode, reserved, storage), storage, axlink2::test::faultyStorage);
}

extern "C" HRESULT StgOpenStorage(const OLECHAR* path, IStorage* priority, DWORD mode, SNB exclude,
                                  DWORD reserved, IStorage** storage) {
    NEXT(StgOpenStorage);
    if (torture::functionCalls.fails("StgOpenStorage")) return STG_E_ACCESSDENIED;
    return wrapped(next(path, priority, mode, exclude, reserved, storage), storage,
                   axlink2::test::faultyStorage);
}

extern "C" HRESULT CreateStreamOnHGlobal(HGLOBAL memory, BOOL deleteOnRelease, IStream** stream) {
    NEXT(CreateStreamOnHGlobal);
    if (torture::functionCalls.fails("CreateStreamOnHGlobal")) return E_OUTOFMEMORY;
    return wrapped(next(memory, deleteOnRelease, stream), stream, axlink2::test::faultyStream);
}

extern "C" {
POINT(functionCalls, CO_E_CLASSSTRING, HRESULT, CLSIDFromProgID, (LPCOLESTR progId, CLSID* clsid),
      (progId, clsid))
POINT(functionCalls, REGDB_E_CLASSNOTREG, HRESULT, ProgIDFromCLSID,
      (REFCLSID clsid, LPOLESTR* progId), (clsid, progId))
POINT(functionCalls, E_OUTOFMEMORY, HRESULT, CoInitializeEx, (void* reserved, DWORD flags),
      (reserved, flags))
POINT(functionCalls, REGDB_E_CLASSNOTREG, HRESULT, CoGetClassObject,
      (REFCLSID clsid, DWORD context, COSERVERINFO* server, REFIID iid, void** object),
      (clsid, context, server, iid, object))
POINT(functionCalls, ERROR_FILE_NOT_FOUND, LSTATUS, RegOpenKeyExW,
      (HKEY key, LPCOLESTR path, DWORD options, REGSAM access, HKEY* opened),
      (key, path, options, access, opened))
POINT(functionCalls, ERROR_KEY_DELETED, LSTATUS, RegQueryValueExW,
      (HKEY key, LPCOLESTR name, DWORD* reserved, DWORD* type, BYTE* data, DWORD* size),
      (key, name, reserved, type, data, size))
POINT(functionCalls, ERROR_KEY_DELETED, LSTATUS, RegEnumKeyExW,
      (HKEY key, DWORD index, LPOLESTR name, DWORD* size, DWORD* reserved, LPOLESTR className,
       DWORD* classSize, FILETIME* written),
      (key, index, name, size, reserved, className, classSize, written))
POINT(functionCalls, 0, DWORD, FormatMessageW,
      (DWORD flags, const void* source, DWORD code, DWORD language, LPOLESTR buffer, DWORD size,
       void* arguments),
      (flags, source, code, language, buffer, size, arguments))
POINT(functionCalls, 0, int, StringFromGUID2, (REFGUID guid, LPOLESTR text, int size),
      (guid, text, size))
POINT(functionCalls, 0, int, WideCharToMultiByte,
      (UINT page, DWORD flags, LPCOLESTR wide, int wideSize, char* narrow, int narrowSize,
       const char* other, BOOL* used),
      (page, flags, wide, wideSize, narrow, narrowSize, other, used))

POINT(functionCalls, STG_E_WRITEFAULT, HRESULT, OleSave,
      (IPersistStorage * object, IStorage* storage, BOOL sameAsLoad), (object, storage, sameAsLoad))
POINT(functionCalls, STG_E_WRITEFAULT, HRESULT, OleSaveToStream,
      (IPersistStream * object, IStream* stream), (object, stream))
POINT(functionCalls, STG_E_WRITEFAULT, HRESULT, WriteClassStg, (IStorage * storage, REFCLSID clsid),
      (storage, clsid))
POINT(functionCalls, STG_E_WRITEFAULT, HRESULT, WriteClassStm, (IStream * stream, REFCLSID clsid),
      (stream, clsid))
POINT(functionCalls, STG_E_READFAULT, HRESULT, ReadClassStm, (IStream * stream, CLSID* clsid),
      (stream, clsid))
POINT(functionCalls, E_OUTOFMEMORY, HRESULT, VariantCopy, (VARIANTARG * to, const VARIANTARG* from),
      (to, from))
POINT(functionCalls, E_OUTOFMEMORY, HRESULT, VariantCopyInd, (VARIANT * to, const VARIANTARG* from),
      (to, from))
POINT(functionCalls, DISP_E_TYPEMISMATCH, HRESULT, VariantChangeType,
      (VARIANTARG * to, const VARIANTARG* from, USHORT flags, VARTYPE vt), (to, from, flags, vt))
POINT(functionCalls, E_UNEXPECTED, HRESULT, SafeArrayAccessData, (SAFEARRAY * array, void** data),
      (array, data))
POINT(functionCalls, DISP_E_BADINDEX, HRESULT, SafeArrayGetLBound,
      (SAFEARRAY * array, UINT dimension, LONG* bound), (array, dimension, bound))
POINT(functionCalls, DISP_E_BADINDEX, HRESULT, SafeArrayGetUBound,
      (SAFEARRAY * array, UINT dimension, LONG* bound), (array, dimension, bound))
POINT(functionCalls, E_INVALIDARG, HRESULT, SafeArrayGetVartype, (SAFEARRAY * array, VARTYPE* vt),
      (array, vt))
POINT(functionCalls, E_OUTOFMEMORY, HRESULT, SafeArrayCopy, (SAFEARRAY * array, SAFEARRAY** copy),
      (array, copy))

POINT(comMemory, nullptr, BSTR, SysAllocString, (const OLECHAR* text), (text))
POINT(comMemory, nullptr, BSTR, SysAllocStringLen, (const OLECHAR* text, UINT units), (text, units))
POINT(comMemory, nullptr, BSTR, SysAllocStringByteLen, (LPCSTR bytes, UINT count), (bytes, count))
POINT(comMemory, nullptr, SAFEARRAY*, SafeArrayCreate,
      (VARTYPE vt, UINT dimensions, SAFEARRAYBOUND* bounds), (vt, dimensions, bounds))
POINT(comMemory, nullptr, SAFEARRAY*, SafeArrayCreateVector, (VARTYPE vt, LONG lower, ULONG count),
      (vt, lower, count))
POINT(comMemory, E_OUTOFMEMORY, HRESULT, SafeArrayAllocDescriptor,
      (UINT dimensions, SAFEARRAY** array), (dimensions, array))
POINT(comMemory, E_OUTOFMEMORY, HRESULT, SafeArrayAllocDescriptorEx,
      (VARTYPE vt, UINT dimensions, SAFEARRAY** array), (vt, dimensions, array))
POINT(comMemory, E_OUTOFMEMORY, HRESULT, SafeArrayAllocData, (SAFEARRAY * array), (array))
POINT(comMemory, nullptr, void*, CoTaskMemAlloc, (SIZE_T size), (size))
}
