// Results of COM calls: the codes a client meets and the questions asked of one.
#pragma once

#include "platform/portable/base_types.h"

constexpr bool SUCCEEDED(HRESULT result) noexcept { return result >= 0; }
constexpr bool FAILED(HRESULT result) noexcept { return result < 0; }
constexpr int HRESULT_CODE(HRESULT result) noexcept { return result & 0xFFFF; }
constexpr int HRESULT_FACILITY(HRESULT result) noexcept { return (result >> 16) & 0x1FFF; }
constexpr HRESULT MAKE_HRESULT(DWORD severity, DWORD facility, DWORD code) noexcept {
    return static_cast<HRESULT>((severity << 31) | (facility << 16) | code);
}

inline constexpr DWORD SEVERITY_SUCCESS = 0;
inline constexpr DWORD SEVERITY_ERROR = 1;
inline constexpr DWORD FACILITY_NULL = 0;
inline constexpr DWORD FACILITY_DISPATCH = 2;
inline constexpr DWORD FACILITY_ITF = 4;
inline constexpr DWORD FACILITY_WIN32 = 7;

// The result that carries a system error code; a value that already is a result stays as it is.
constexpr HRESULT HRESULT_FROM_WIN32(DWORD code) noexcept {
    const auto result = static_cast<HRESULT>(code);
    return result <= 0 ? result : MAKE_HRESULT(SEVERITY_ERROR, FACILITY_WIN32, code & 0xFFFF);
}

// General.
inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;
inline constexpr HRESULT E_NOTIMPL = static_cast<HRESULT>(0x80004001u);
inline constexpr HRESULT E_NOINTERFACE = static_cast<HRESULT>(0x80004002u);
inline constexpr HRESULT E_POINTER = static_cast<HRESULT>(0x80004003u);
inline constexpr HRESULT E_ABORT = static_cast<HRESULT>(0x80004004u);
inline constexpr HRESULT E_FAIL = static_cast<HRESULT>(0x80004005u);
inline constexpr HRESULT E_UNEXPECTED = static_cast<HRESULT>(0x8000FFFFu);
inline constexpr HRESULT E_ACCESSDENIED = static_cast<HRESULT>(0x80070005u);
inline constexpr HRESULT E_HANDLE = static_cast<HRESULT>(0x80070006u);
inline constexpr HRESULT E_OUTOFMEMORY = static_cast<HRESULT>(0x8007000Eu);
inline constexpr HRESULT E_INVALIDARG = static_cast<HRESULT>(0x80070057u);
inline constexpr HRESULT E_BOUNDS = static_cast<HRESULT>(0x8000000Bu);
inline constexpr HRESULT E_PENDING = static_cast<HRESULT>(0x8000000Au);

// Calls through IDispatch.
inline constexpr HRESULT DISP_E_UNKNOWNINTERFACE = static_cast<HRESULT>(0x80020001u);
inline constexpr HRESULT DISP_E_MEMBERNOTFOUND = static_cast<HRESULT>(0x80020003u);
inline constexpr HRESULT DISP_E_PARAMNOTFOUND = static_cast<HRESULT>(0x80020004u);
inline constexpr HRESULT DISP_E_TYPEMISMATCH = static_cast<HRESULT>(0x80020005u);
inline constexpr HRESULT DISP_E_UNKNOWNNAME = static_cast<HRESULT>(0x80020006u);
inline constexpr HRESULT DISP_E_NONAMEDARGS = static_cast<HRESULT>(0x80020007u);
inline constexpr HRESULT DISP_E_BADVARTYPE = static_cast<HRESULT>(0x80020008u);
inline constexpr HRESULT DISP_E_EXCEPTION = static_cast<HRESULT>(0x80020009u);
inline constexpr HRESULT DISP_E_OVERFLOW = static_cast<HRESULT>(0x8002000Au);
inline constexpr HRESULT DISP_E_BADINDEX = static_cast<HRESULT>(0x8002000Bu);
inline constexpr HRESULT DISP_E_UNKNOWNLCID = static_cast<HRESULT>(0x8002000Cu);
inline constexpr HRESULT DISP_E_ARRAYISLOCKED = static_cast<HRESULT>(0x8002000Du);
inline constexpr HRESULT DISP_E_BADPARAMCOUNT = static_cast<HRESULT>(0x8002000Eu);
inline constexpr HRESULT DISP_E_PARAMNOTOPTIONAL = static_cast<HRESULT>(0x8002000Fu);
inline constexpr HRESULT DISP_E_BADCALLEE = static_cast<HRESULT>(0x80020010u);
inline constexpr HRESULT DISP_E_NOTACOLLECTION = static_cast<HRESULT>(0x80020011u);
inline constexpr HRESULT DISP_E_DIVBYZERO = static_cast<HRESULT>(0x80020012u);
inline constexpr HRESULT DISP_E_BUFFERTOOSMALL = static_cast<HRESULT>(0x80020013u);

// Type information.
inline constexpr HRESULT TYPE_E_BUFFERTOOSMALL = static_cast<HRESULT>(0x80028016u);
inline constexpr HRESULT TYPE_E_FIELDNOTFOUND = static_cast<HRESULT>(0x80028017u);
inline constexpr HRESULT TYPE_E_INVDATAREAD = static_cast<HRESULT>(0x80028018u);
inline constexpr HRESULT TYPE_E_UNSUPFORMAT = static_cast<HRESULT>(0x80028019u);
inline constexpr HRESULT TYPE_E_REGISTRYACCESS = static_cast<HRESULT>(0x8002801Cu);
inline constexpr HRESULT TYPE_E_LIBNOTREGISTERED = static_cast<HRESULT>(0x8002801Du);
inline constexpr HRESULT TYPE_E_UNDEFINEDTYPE = static_cast<HRESULT>(0x80028027u);
inline constexpr HRESULT TYPE_E_QUALIFIEDNAMEDISALLOWED = static_cast<HRESULT>(0x80028028u);
inline constexpr HRESULT TYPE_E_INVALIDSTATE = static_cast<HRESULT>(0x80028029u);
inline constexpr HRESULT TYPE_E_WRONGTYPEKIND = static_cast<HRESULT>(0x8002802Au);
inline constexpr HRESULT TYPE_E_ELEMENTNOTFOUND = static_cast<HRESULT>(0x8002802Bu);
inline constexpr HRESULT TYPE_E_AMBIGUOUSNAME = static_cast<HRESULT>(0x8002802Cu);
inline constexpr HRESULT TYPE_E_NAMECONFLICT = static_cast<HRESULT>(0x8002802Du);
inline constexpr HRESULT TYPE_E_UNKNOWNLCID = static_cast<HRESULT>(0x8002802Eu);
inline constexpr HRESULT TYPE_E_DLLFUNCTIONNOTFOUND = static_cast<HRESULT>(0x8002802Fu);
inline constexpr HRESULT TYPE_E_BADMODULEKIND = static_cast<HRESULT>(0x800288BDu);
inline constexpr HRESULT TYPE_E_SIZETOOBIG = static_cast<HRESULT>(0x800288C5u);
inline constexpr HRESULT TYPE_E_DUPLICATEID = static_cast<HRESULT>(0x800288C6u);
inline constexpr HRESULT TYPE_E_INVALIDID = static_cast<HRESULT>(0x800288CFu);
inline constexpr HRESULT TYPE_E_TYPEMISMATCH = static_cast<HRESULT>(0x80028CA0u);
inline constexpr HRESULT TYPE_E_OUTOFBOUNDS = static_cast<HRESULT>(0x80028CA1u);
inline constexpr HRESULT TYPE_E_IOERROR = static_cast<HRESULT>(0x80028CA2u);
inline constexpr HRESULT TYPE_E_CANTLOADLIBRARY = static_cast<HRESULT>(0x80029C4Au);
inline constexpr HRESULT TYPE_E_INCONSISTENTPROPFUNCS = static_cast<HRESULT>(0x80029C83u);
inline constexpr HRESULT TYPE_E_CIRCULARTYPE = static_cast<HRESULT>(0x80029C84u);

// Activation and apartments.
inline constexpr HRESULT CLASS_E_NOAGGREGATION = static_cast<HRESULT>(0x80040110u);
inline constexpr HRESULT CLASS_E_CLASSNOTAVAILABLE = static_cast<HRESULT>(0x80040111u);
inline constexpr HRESULT REGDB_E_READREGDB = static_cast<HRESULT>(0x80040150u);
inline constexpr HRESULT REGDB_E_WRITEREGDB = static_cast<HRESULT>(0x80040151u);
inline constexpr HRESULT REGDB_E_KEYMISSING = static_cast<HRESULT>(0x80040152u);
inline constexpr HRESULT REGDB_E_INVALIDVALUE = static_cast<HRESULT>(0x80040153u);
inline constexpr HRESULT REGDB_E_CLASSNOTREG = static_cast<HRESULT>(0x80040154u);
inline constexpr HRESULT REGDB_E_IIDNOTREG = static_cast<HRESULT>(0x80040155u);
inline constexpr HRESULT CO_E_NOTINITIALIZED = static_cast<HRESULT>(0x800401F0u);
inline constexpr HRESULT CO_E_ALREADYINITIALIZED = static_cast<HRESULT>(0x800401F1u);
inline constexpr HRESULT CO_E_CLASSSTRING = static_cast<HRESULT>(0x800401F3u);
inline constexpr HRESULT CO_E_IIDSTRING = static_cast<HRESULT>(0x800401F4u);
inline constexpr HRESULT CO_E_APPNOTFOUND = static_cast<HRESULT>(0x800401F5u);
inline constexpr HRESULT CO_E_DLLNOTFOUND = static_cast<HRESULT>(0x800401F8u);
inline constexpr HRESULT CO_E_ERRORINDLL = static_cast<HRESULT>(0x800401F9u);
inline constexpr HRESULT CO_E_OBJISREG = static_cast<HRESULT>(0x800401FCu);
inline constexpr HRESULT CO_E_OBJNOTREG = static_cast<HRESULT>(0x800401FBu);
inline constexpr HRESULT CO_E_OBJNOTCONNECTED = static_cast<HRESULT>(0x800401FDu);
inline constexpr HRESULT CO_E_RELEASED = static_cast<HRESULT>(0x800401FFu);
inline constexpr HRESULT CO_E_SERVER_EXEC_FAILURE = static_cast<HRESULT>(0x80080005u);
inline constexpr HRESULT MK_E_UNAVAILABLE = static_cast<HRESULT>(0x800401E3u);

// Calls between apartments.
inline constexpr HRESULT RPC_E_CALL_REJECTED = static_cast<HRESULT>(0x80010001u);
inline constexpr HRESULT RPC_E_SERVERFAULT = static_cast<HRESULT>(0x80010105u);
inline constexpr HRESULT RPC_E_CHANGED_MODE = static_cast<HRESULT>(0x80010106u);
inline constexpr HRESULT RPC_E_DISCONNECTED = static_cast<HRESULT>(0x80010108u);
inline constexpr HRESULT RPC_E_SERVERCALL_RETRYLATER = static_cast<HRESULT>(0x8001010Au);
inline constexpr HRESULT RPC_E_WRONG_THREAD = static_cast<HRESULT>(0x8001010Eu);

// Connection points.
inline constexpr HRESULT CONNECT_E_NOCONNECTION = static_cast<HRESULT>(0x80040200u);
inline constexpr HRESULT CONNECT_E_ADVISELIMIT = static_cast<HRESULT>(0x80040201u);
inline constexpr HRESULT CONNECT_E_CANNOTCONNECT = static_cast<HRESULT>(0x80040202u);
inline constexpr HRESULT CONNECT_E_OVERRIDDEN = static_cast<HRESULT>(0x80040203u);

// Storage.
inline constexpr HRESULT STG_E_INVALIDFUNCTION = static_cast<HRESULT>(0x80030001u);
inline constexpr HRESULT STG_E_FILENOTFOUND = static_cast<HRESULT>(0x80030002u);
inline constexpr HRESULT STG_E_PATHNOTFOUND = static_cast<HRESULT>(0x80030003u);
inline constexpr HRESULT STG_E_ACCESSDENIED = static_cast<HRESULT>(0x80030005u);
inline constexpr HRESULT STG_E_INVALIDHANDLE = static_cast<HRESULT>(0x80030006u);
inline constexpr HRESULT STG_E_INSUFFICIENTMEMORY = static_cast<HRESULT>(0x80030008u);
inline constexpr HRESULT STG_E_INVALIDPOINTER = static_cast<HRESULT>(0x80030009u);
inline constexpr HRESULT STG_E_NOMOREFILES = static_cast<HRESULT>(0x80030012u);
inline constexpr HRESULT STG_E_SEEKERROR = static_cast<HRESULT>(0x80030019u);
inline constexpr HRESULT STG_E_WRITEFAULT = static_cast<HRESULT>(0x8003001Du);
inline constexpr HRESULT STG_E_READFAULT = static_cast<HRESULT>(0x8003001Eu);
inline constexpr HRESULT STG_E_SHAREVIOLATION = static_cast<HRESULT>(0x80030020u);
inline constexpr HRESULT STG_E_LOCKVIOLATION = static_cast<HRESULT>(0x80030021u);
inline constexpr HRESULT STG_E_FILEALREADYEXISTS = static_cast<HRESULT>(0x80030050u);
inline constexpr HRESULT STG_E_INVALIDPARAMETER = static_cast<HRESULT>(0x80030057u);
inline constexpr HRESULT STG_E_MEDIUMFULL = static_cast<HRESULT>(0x80030070u);
inline constexpr HRESULT STG_E_INVALIDHEADER = static_cast<HRESULT>(0x800300FBu);
inline constexpr HRESULT STG_E_INVALIDNAME = static_cast<HRESULT>(0x800300FCu);
inline constexpr HRESULT STG_E_UNIMPLEMENTEDFUNCTION = static_cast<HRESULT>(0x800300FEu);
inline constexpr HRESULT STG_E_INVALIDFLAG = static_cast<HRESULT>(0x800300FFu);
inline constexpr HRESULT STG_E_OLDFORMAT = static_cast<HRESULT>(0x80030104u);
inline constexpr HRESULT STG_E_REVERTED = static_cast<HRESULT>(0x80030102u);
inline constexpr HRESULT STG_E_DOCFILECORRUPT = static_cast<HRESULT>(0x80030109u);
inline constexpr HRESULT STG_E_CANTSAVE = static_cast<HRESULT>(0x80030103u);
