// Type information: the descriptions, the interfaces that read and write them, and where libraries
// come from. Names, layouts and results are those of the COM platform.
#pragma once

#include "platform/portable/base_types.h"
#include "platform/portable/guid.h"
#include "platform/portable/unknown.h"
#include "platform/portable/variant_types.h"

typedef enum tagTYPEKIND {
    TKIND_ENUM = 0,
    TKIND_RECORD,
    TKIND_MODULE,
    TKIND_INTERFACE,
    TKIND_DISPATCH,
    TKIND_COCLASS,
    TKIND_ALIAS,
    TKIND_UNION,
    TKIND_MAX
} TYPEKIND;

typedef enum tagFUNCKIND {
    FUNC_VIRTUAL = 0,
    FUNC_PUREVIRTUAL,
    FUNC_NONVIRTUAL,
    FUNC_STATIC,
    FUNC_DISPATCH
} FUNCKIND;

typedef enum tagINVOKEKIND {
    INVOKE_FUNC = 1,
    INVOKE_PROPERTYGET = 2,
    INVOKE_PROPERTYPUT = 4,
    INVOKE_PROPERTYPUTREF = 8
} INVOKEKIND;

typedef enum tagVARKIND { VAR_PERINSTANCE = 0, VAR_STATIC, VAR_CONST, VAR_DISPATCH } VARKIND;

typedef enum tagCALLCONV {
    CC_FASTCALL = 0,
    CC_CDECL = 1,
    CC_MSCPASCAL = 2,
    CC_PASCAL = CC_MSCPASCAL,
    CC_MACPASCAL = 3,
    CC_STDCALL = 4,
    CC_FPFASTCALL = 5,
    CC_SYSCALL = 6,
    CC_MPWCDECL = 7,
    CC_MPWPASCAL = 8,
    CC_MAX = 9
} CALLCONV;

typedef enum tagSYSKIND { SYS_WIN16 = 0, SYS_WIN32 = 1, SYS_MAC = 2, SYS_WIN64 = 3 } SYSKIND;

typedef enum tagLIBFLAGS {
    LIBFLAG_FRESTRICTED = 1,
    LIBFLAG_FCONTROL = 2,
    LIBFLAG_FHIDDEN = 4,
    LIBFLAG_FHASDISKIMAGE = 8
} LIBFLAGS;

typedef enum tagTYPEFLAGS {
    TYPEFLAG_FAPPOBJECT = 0x1,
    TYPEFLAG_FCANCREATE = 0x2,
    TYPEFLAG_FLICENSED = 0x4,
    TYPEFLAG_FPREDECLID = 0x8,
    TYPEFLAG_FHIDDEN = 0x10,
    TYPEFLAG_FCONTROL = 0x20,
    TYPEFLAG_FDUAL = 0x40,
    TYPEFLAG_FNONEXTENSIBLE = 0x80,
    TYPEFLAG_FOLEAUTOMATION = 0x100,
    TYPEFLAG_FRESTRICTED = 0x200,
    TYPEFLAG_FAGGREGATABLE = 0x400,
    TYPEFLAG_FREPLACEABLE = 0x800,
    TYPEFLAG_FDISPATCHABLE = 0x1000,
    TYPEFLAG_FREVERSEBIND = 0x2000,
    TYPEFLAG_FPROXY = 0x4000
} TYPEFLAGS;

typedef enum tagFUNCFLAGS {
    FUNCFLAG_FRESTRICTED = 0x1,
    FUNCFLAG_FSOURCE = 0x2,
    FUNCFLAG_FBINDABLE = 0x4,
    FUNCFLAG_FREQUESTEDIT = 0x8,
    FUNCFLAG_FDISPLAYBIND = 0x10,
    FUNCFLAG_FDEFAULTBIND = 0x20,
    FUNCFLAG_FHIDDEN = 0x40,
    FUNCFLAG_FUSESGETLASTERROR = 0x80,
    FUNCFLAG_FDEFAULTCOLLELEM = 0x100,
    FUNCFLAG_FUIDEFAULT = 0x200,
    FUNCFLAG_FNONBROWSABLE = 0x400,
    FUNCFLAG_FREPLACEABLE = 0x800,
    FUNCFLAG_FIMMEDIATEBIND = 0x1000
} FUNCFLAGS;

typedef enum tagVARFLAGS {
    VARFLAG_FREADONLY = 0x1,
    VARFLAG_FSOURCE = 0x2,
    VARFLAG_FBINDABLE = 0x4,
    VARFLAG_FREQUESTEDIT = 0x8,
    VARFLAG_FDISPLAYBIND = 0x10,
    VARFLAG_FDEFAULTBIND = 0x20,
    VARFLAG_FHIDDEN = 0x40,
    VARFLAG_FRESTRICTED = 0x80,
    VARFLAG_FDEFAULTCOLLELEM = 0x100,
    VARFLAG_FUIDEFAULT = 0x200,
    VARFLAG_FNONBROWSABLE = 0x400,
    VARFLAG_FREPLACEABLE = 0x800,
    VARFLAG_FIMMEDIATEBIND = 0x1000
} VARFLAGS;

inline constexpr MEMBERID MEMBERID_NIL = DISPID_UNKNOWN;

#define IMPLTYPEFLAG_FDEFAULT 0x1
#define IMPLTYPEFLAG_FSOURCE 0x2
#define IMPLTYPEFLAG_FRESTRICTED 0x4
#define IMPLTYPEFLAG_FDEFAULTVTABLE 0x8

#define IDLFLAG_NONE 0x0
#define IDLFLAG_FIN 0x1
#define IDLFLAG_FOUT 0x2
#define IDLFLAG_FLCID 0x4
#define IDLFLAG_FRETVAL 0x8

#define PARAMFLAG_NONE 0x0
#define PARAMFLAG_FIN 0x1
#define PARAMFLAG_FOUT 0x2
#define PARAMFLAG_FLCID 0x4
#define PARAMFLAG_FRETVAL 0x8
#define PARAMFLAG_FOPT 0x10
#define PARAMFLAG_FHASDEFAULT 0x20
#define PARAMFLAG_FHASCUSTDATA 0x40

typedef struct tagIDLDESC {
    ULONG_PTR dwReserved;
    USHORT wIDLFlags;
} IDLDESC;

typedef struct tagPARAMDESCEX {
    ULONG cBytes;
    VARIANT varDefaultValue;
} PARAMDESCEX, *LPPARAMDESCEX;

typedef struct tagPARAMDESC {
    LPPARAMDESCEX pparamdescex;
    USHORT wParamFlags;
} PARAMDESC;

typedef struct tagTYPEDESC {
    union {
        struct tagTYPEDESC* lptdesc;
        struct tagARRAYDESC* lpadesc;
        HREFTYPE hreftype;
    };
    VARTYPE vt;
} TYPEDESC;

typedef struct tagARRAYDESC {
    TYPEDESC tdescElem;
    USHORT cDims;
    SAFEARRAYBOUND rgbounds[1];
} ARRAYDESC;

typedef struct tagELEMDESC {
    TYPEDESC tdesc;
    union {
        IDLDESC idldesc;
        PARAMDESC paramdesc;
    };
} ELEMDESC;

typedef struct tagTYPEATTR {
    GUID guid;
    LCID lcid;
    DWORD dwReserved;
    MEMBERID memidConstructor;
    MEMBERID memidDestructor;
    LPOLESTR lpstrSchema;
    ULONG cbSizeInstance;
    TYPEKIND typekind;
    WORD cFuncs;
    WORD cVars;
    WORD cImplTypes;
    WORD cbSizeVft;
    WORD cbAlignment;
    WORD wTypeFlags;
    WORD wMajorVerNum;
    WORD wMinorVerNum;
    TYPEDESC tdescAlias;
    IDLDESC idldescType;
} TYPEATTR;

typedef struct tagFUNCDESC {
    MEMBERID memid;
    SCODE* lprgscode;
    ELEMDESC* lprgelemdescParam;
    FUNCKIND funckind;
    INVOKEKIND invkind;
    CALLCONV callconv;
    SHORT cParams;
    SHORT cParamsOpt;
    SHORT oVft;
    SHORT cScodes;
    ELEMDESC elemdescFunc;
    WORD wFuncFlags;
} FUNCDESC;

typedef struct tagVARDESC {
    MEMBERID memid;
    LPOLESTR lpstrSchema;
    union {
        ULONG oInst;
        VARIANT* lpvarValue;
    };
    ELEMDESC elemdescVar;
    WORD wVarFlags;
    VARKIND varkind;
} VARDESC;

typedef struct tagTLIBATTR {
    GUID guid;
    LCID lcid;
    SYSKIND syskind;
    WORD wMajorVerNum;
    WORD wMinorVerNum;
    WORD wLibFlags;
} TLIBATTR;

struct ITypeComp;
struct ITypeInfo;
struct ITypeLib;

extern "C" const IID IID_ITypeInfo;
extern "C" const IID IID_ITypeLib;
extern "C" const IID IID_ITypeComp;
extern "C" const IID IID_ICreateTypeInfo;
extern "C" const IID IID_ICreateTypeLib;
extern "C" const IID IID_ICreateTypeLib2;
extern "C" const IID IID_IProvideClassInfo;
extern "C" const IID IID_IProvideClassInfo2;

// Every description that a Get call gives goes back through its Release call of the same object;
// a reference to another type is a number, resolved by GetRefTypeInfo of the type that holds it.
// A type keeps its library alive. GetTypeComp, Invoke, GetDllEntry, AddressOfMember, CreateInstance
// and GetMops answer E_NOTIMPL: calls go through an object's IDispatch.
struct ITypeInfo : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetTypeAttr(TYPEATTR** typeAttr) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetTypeComp(ITypeComp** comp) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetFuncDesc(UINT index, FUNCDESC** funcDesc) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetVarDesc(UINT index, VARDESC** varDesc) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetNames(MEMBERID memid, BSTR* names, UINT maxNames,
                                               UINT* count) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetRefTypeOfImplType(UINT index, HREFTYPE* refType) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetImplTypeFlags(UINT index, INT* flags) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetIDsOfNames(LPOLESTR* names, UINT count,
                                                    MEMBERID* memids) = 0;
    virtual HRESULT STDMETHODCALLTYPE Invoke(PVOID instance, MEMBERID memid, WORD flags,
                                             DISPPARAMS* params, VARIANT* result,
                                             EXCEPINFO* excepInfo, UINT* argErr) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetDocumentation(MEMBERID memid, BSTR* name, BSTR* docString,
                                                       DWORD* helpContext, BSTR* helpFile) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetDllEntry(MEMBERID memid, INVOKEKIND invkind, BSTR* dllName,
                                                  BSTR* name, WORD* ordinal) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetRefTypeInfo(HREFTYPE refType, ITypeInfo** typeInfo) = 0;
    virtual HRESULT STDMETHODCALLTYPE AddressOfMember(MEMBERID memid, INVOKEKIND invkind,
                                                      PVOID* address) = 0;
    virtual HRESULT STDMETHODCALLTYPE CreateInstance(IUnknown* outer, REFIID iid,
                                                     PVOID* object) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetMops(MEMBERID memid, BSTR* mops) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetContainingTypeLib(ITypeLib** library, UINT* index) = 0;
    virtual void STDMETHODCALLTYPE ReleaseTypeAttr(TYPEATTR* typeAttr) = 0;
    virtual void STDMETHODCALLTYPE ReleaseFuncDesc(FUNCDESC* funcDesc) = 0;
    virtual void STDMETHODCALLTYPE ReleaseVarDesc(VARDESC* varDesc) = 0;
};

struct ITypeLib : IUnknown {
    virtual UINT STDMETHODCALLTYPE GetTypeInfoCount() = 0;
    virtual HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT index, ITypeInfo** typeInfo) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetTypeInfoType(UINT index, TYPEKIND* kind) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetTypeInfoOfGuid(REFGUID guid, ITypeInfo** typeInfo) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetLibAttr(TLIBATTR** libAttr) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetTypeComp(ITypeComp** comp) = 0;
    virtual HRESULT STDMETHODCALLTYPE GetDocumentation(INT index, BSTR* name, BSTR* docString,
                                                       DWORD* helpContext, BSTR* helpFile) = 0;
    virtual HRESULT STDMETHODCALLTYPE IsName(LPOLESTR name, ULONG hash, BOOL* isName) = 0;
    virtual HRESULT STDMETHODCALLTYPE FindName(LPOLESTR name, ULONG hash, ITypeInfo** typeInfos,
                                               MEMBERID* memids, USHORT* found) = 0;
    virtual void STDMETHODCALLTYPE ReleaseTLibAttr(TLIBATTR* libAttr) = 0;
};

typedef enum tagDESCKIND {
    DESCKIND_NONE = 0,
    DESCKIND_FUNCDESC,
    DESCKIND_VARDESC,
    DESCKIND_TYPECOMP,
    DESCKIND_IMPLICITAPPOBJ,
    DESCKIND_MAX
} DESCKIND;

typedef union tagBINDPTR {
    FUNCDESC* lpfuncdesc;
    VARDESC* lpvardesc;
    ITypeComp* lptcomp;
} BINDPTR;

// Declared for its place in the other interfaces; nothing here implements it.
struct ITypeComp : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE Bind(LPOLESTR name, ULONG hash, WORD flags,
                                           ITypeInfo** typeInfo, DESCKIND* kind,
                                           BINDPTR* bound) = 0;
    virtual HRESULT STDMETHODCALLTYPE BindType(LPOLESTR name, ULONG hash, ITypeInfo** typeInfo,
                                               ITypeComp** comp) = 0;
};

// Descriptions and texts that are handed in are copied, whatever they point to included. The object
// also answers QueryInterface for ITypeInfo. LayOut fills in what the server left open: member ids
// given as MEMBERID_NIL, places in the method table, offsets in records. Schemas, DLL entries and
// marshalling texts answer E_NOTIMPL.
struct ICreateTypeInfo : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE SetGuid(REFGUID guid) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetTypeFlags(UINT flags) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetDocString(LPOLESTR text) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetHelpContext(DWORD helpContext) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetVersion(WORD major, WORD minor) = 0;
    virtual HRESULT STDMETHODCALLTYPE AddRefTypeInfo(ITypeInfo* typeInfo, HREFTYPE* refType) = 0;
    virtual HRESULT STDMETHODCALLTYPE AddFuncDesc(UINT index, FUNCDESC* funcDesc) = 0;
    virtual HRESULT STDMETHODCALLTYPE AddImplType(UINT index, HREFTYPE refType) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetImplTypeFlags(UINT index, INT flags) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetAlignment(WORD alignment) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetSchema(LPOLESTR schema) = 0;
    virtual HRESULT STDMETHODCALLTYPE AddVarDesc(UINT index, VARDESC* varDesc) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetFuncAndParamNames(UINT index, LPOLESTR* names,
                                                           UINT count) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetVarName(UINT index, LPOLESTR name) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetTypeDescAlias(TYPEDESC* alias) = 0;
    virtual HRESULT STDMETHODCALLTYPE DefineFuncAsDllEntry(UINT index, LPOLESTR dllName,
                                                           LPOLESTR procName) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetFuncDocString(UINT index, LPOLESTR text) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetVarDocString(UINT index, LPOLESTR text) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetFuncHelpContext(UINT index, DWORD helpContext) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetVarHelpContext(UINT index, DWORD helpContext) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetMops(UINT index, BSTR mops) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetTypeIdldesc(IDLDESC* idlDesc) = 0;
    virtual HRESULT STDMETHODCALLTYPE LayOut() = 0;
};

struct ICreateTypeLib : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE CreateTypeInfo(LPOLESTR name, TYPEKIND kind,
                                                     ICreateTypeInfo** typeInfo) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetName(LPOLESTR name) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetVersion(WORD major, WORD minor) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetGuid(REFGUID guid) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetDocString(LPOLESTR text) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetHelpFileName(LPOLESTR fileName) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetHelpContext(DWORD helpContext) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetLcid(LCID lcid) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetLibFlags(UINT flags) = 0;
    virtual HRESULT STDMETHODCALLTYPE SaveAllChanges() = 0;
};

// What this interface adds answers E_NOTIMPL.
struct ICreateTypeLib2 : ICreateTypeLib {
    virtual HRESULT STDMETHODCALLTYPE DeleteTypeInfo(LPOLESTR name) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetCustData(REFGUID guid, VARIANT* value) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetHelpStringContext(ULONG context) = 0;
    virtual HRESULT STDMETHODCALLTYPE SetHelpStringDll(LPOLESTR fileName) = 0;
};

struct IProvideClassInfo : IUnknown {
    virtual HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** typeInfo) = 0;
};

typedef enum tagGUIDKIND { GUIDKIND_DEFAULT_SOURCE_DISP_IID = 1 } GUIDKIND;

struct IProvideClassInfo2 : IProvideClassInfo {
    virtual HRESULT STDMETHODCALLTYPE GetGUID(DWORD guidKind, GUID* guid) = 0;
};

extern "C" {
// A new, empty library. It lives in memory only: fileName must not be null but isn't written, and
// SaveAllChanges answers S_OK. The library also answers QueryInterface for ITypeLib.
HRESULT CreateTypeLib2(SYSKIND sysKind, LPCOLESTR fileName, ICreateTypeLib2** library);

// The library "stdole" 2.0 (IUnknown and IDispatch, the bases of other interfaces), built in;
// TYPE_E_LIBNOTREGISTERED for every other one.
HRESULT LoadRegTypeLib(REFGUID libraryId, WORD major, WORD minor, LCID lcid, ITypeLib** library);
}

namespace platform {

// How many descriptions are out at the moment, over all types: attributes of types and libraries,
// functions and variables that a Get call gave and no Release call took back.
int outstandingTypeDescriptions();

} // namespace platform
