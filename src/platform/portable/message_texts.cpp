// The texts of the codes that COM calls answer with, and FormatMessageW over them.
#include "platform/answer.h"
#include "platform/portable/hresults.h"
#include "platform/portable/system.h"
#include "platform/text.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>

namespace {

struct MessageText {
    DWORD code;
    std::string_view text;
};

constexpr MessageText row(HRESULT code, std::string_view text) {
    return {static_cast<DWORD>(code), text};
}

// A system code (below 0x10000) is also what an HRESULT of the Win32 facility says.
constexpr std::array messageTexts{
    MessageText{0, "The operation succeeded."},
    MessageText{1, "The function is not valid here."},
    MessageText{2, "The file was not found."},
    MessageText{3, "The folder was not found."},
    MessageText{5, "Access was denied."},
    MessageText{6, "The handle is not valid."},
    MessageText{8, "There is not enough memory for this command."},
    MessageText{14, "There is not enough memory for this operation."},
    MessageText{32, "The file is in use by another process."},
    MessageText{50, "The request is not supported."},
    MessageText{80, "The file exists already."},
    MessageText{87, "A parameter is not correct."},
    MessageText{122, "The buffer handed to a system call is too small."},
    MessageText{126, "The library was not found."},
    MessageText{127, "The procedure was not found in the library."},
    MessageText{193, "The file is not a valid program or library."},
    MessageText{234, "More data is available."},
    MessageText{259, "No more data is available."},
    MessageText{1018, "The registry key has been marked for deletion."},
    MessageText{1113, "The text has a character that the target code page lacks."},
    MessageText{1722, "The remote server is not available."},
    MessageText{1726, "The remote call failed."},

    row(E_NOTIMPL, "This is not implemented."),
    row(E_NOINTERFACE, "The object does not support this interface."),
    row(E_POINTER, "A pointer is not valid."),
    row(E_ABORT, "The operation was aborted."),
    row(E_FAIL, "The operation failed for an unspecified reason."),
    row(E_PENDING, "The data needed for this operation is not available yet."),
    row(E_BOUNDS, "The operation reached beyond the valid bounds."),
    row(E_UNEXPECTED, "The operation failed in an unexpected way."),

    row(DISP_E_UNKNOWNINTERFACE, "The interface is unknown."),
    row(DISP_E_MEMBERNOTFOUND, "The member was not found."),
    row(DISP_E_PARAMNOTFOUND, "The parameter was not found."),
    row(DISP_E_TYPEMISMATCH, "The type of a value does not match."),
    row(DISP_E_UNKNOWNNAME, "The name is unknown."),
    row(DISP_E_NONAMEDARGS, "Named arguments are not supported."),
    row(DISP_E_BADVARTYPE, "The type of the variable is not valid."),
    row(DISP_E_EXCEPTION, "The server raised an exception."),
    row(DISP_E_OVERFLOW, "The value is out of the range of its type."),
    row(DISP_E_BADINDEX, "The index is not valid."),
    row(DISP_E_UNKNOWNLCID, "The language is unknown."),
    row(DISP_E_ARRAYISLOCKED, "The memory is locked."),
    row(DISP_E_BADPARAMCOUNT, "The number of arguments is not valid."),
    row(DISP_E_PARAMNOTOPTIONAL, "An argument is missing that is not optional."),
    row(DISP_E_BADCALLEE, "The callee is not valid."),
    row(DISP_E_NOTACOLLECTION, "The object is not a collection."),
    row(DISP_E_DIVBYZERO, "A number was divided by zero."),
    row(DISP_E_BUFFERTOOSMALL, "The buffer is too small."),

    row(TYPE_E_BUFFERTOOSMALL, "The buffer for type information is too small."),
    row(TYPE_E_INVDATAREAD, "The type library holds invalid data."),
    row(TYPE_E_UNSUPFORMAT, "The format of the type library is old or not valid."),
    row(TYPE_E_REGISTRYACCESS, "The registry could not be read for the type library."),
    row(TYPE_E_LIBNOTREGISTERED, "The type library is not registered."),
    row(TYPE_E_UNDEFINEDTYPE, "A type is used that is not defined."),
    row(TYPE_E_INVALIDSTATE, "The type library is not in a state for this call."),
    row(TYPE_E_WRONGTYPEKIND, "The kind of the type is wrong for this call."),
    row(TYPE_E_ELEMENTNOTFOUND, "The element was not found in the type information."),
    row(TYPE_E_AMBIGUOUSNAME, "The name is ambiguous."),
    row(TYPE_E_NAMECONFLICT, "The name is used in the type library already."),
    row(TYPE_E_BADMODULEKIND, "The kind of module is wrong for this call."),
    row(TYPE_E_DUPLICATEID, "The identifier is used in the type library already."),
    row(TYPE_E_TYPEMISMATCH, "The types do not match."),
    row(TYPE_E_CANTLOADLIBRARY, "The type library could not be loaded."),
    row(TYPE_E_INCONSISTENTPROPFUNCS, "The functions of a property do not agree."),
    row(TYPE_E_CIRCULARTYPE, "The type refers to itself."),

    row(CLASS_E_NOAGGREGATION, "The class cannot be part of another object."),
    row(CLASS_E_CLASSNOTAVAILABLE, "The server does not offer the requested class."),
    row(REGDB_E_READREGDB, "The class registration could not be read."),
    row(REGDB_E_CLASSNOTREG, "The class is not registered."),
    row(REGDB_E_IIDNOTREG, "The interface is not registered."),
    row(CO_E_NOTINITIALIZED, "COM has not been initialised in this thread."),
    row(CO_E_ALREADYINITIALIZED, "COM has been initialised in this thread already."),
    row(CO_E_CLASSSTRING, "The text does not name a class."),
    row(CO_E_IIDSTRING, "The text does not name an interface."),
    row(CO_E_APPNOTFOUND, "The server's program was not found."),
    row(CO_E_DLLNOTFOUND, "The server's library was not found."),
    row(CO_E_ERRORINDLL, "The server's library has an error."),
    row(CO_E_OBJNOTREG, "The object is not registered."),
    row(CO_E_OBJISREG, "The object is registered already."),
    row(CO_E_OBJNOTCONNECTED, "The object is not connected to its server."),
    row(CO_E_SERVER_EXEC_FAILURE, "The server's program could not be started."),
    row(MK_E_UNAVAILABLE, "No running object of this class is available."),

    row(RPC_E_CALL_REJECTED, "The server rejected the call."),
    row(RPC_E_SERVERFAULT, "The server failed while it ran the call."),
    row(RPC_E_CHANGED_MODE, "The thread's kind of apartment cannot be changed once it is set."),
    row(RPC_E_DISCONNECTED, "The object has disconnected from its clients."),
    row(RPC_E_SERVERCALL_RETRYLATER, "The server is busy; the call can be tried again later."),
    row(RPC_E_WRONG_THREAD, "The object was called from a thread that it does not belong to."),

    row(CONNECT_E_NOCONNECTION, "There is no connection for this number."),
    row(CONNECT_E_ADVISELIMIT, "The connection point has as many connections as it can hold."),
    row(CONNECT_E_CANNOTCONNECT, "The connection could not be made."),
    row(CONNECT_E_OVERRIDDEN, "The connection point is overridden in a derived object."),

    row(STG_E_INVALIDFUNCTION, "This operation is not possible on the storage."),
    row(STG_E_FILENOTFOUND, "The file or stream was not found."),
    row(STG_E_PATHNOTFOUND, "The folder of the storage was not found."),
    row(STG_E_ACCESSDENIED, "Access to the storage was denied."),
    row(STG_E_SHAREVIOLATION, "The storage is open in a way that excludes this use."),
    row(STG_E_LOCKVIOLATION, "A part of the storage is locked."),
    row(STG_E_FILEALREADYEXISTS, "The file exists already, or is not a compound file."),
    row(STG_E_INVALIDPARAMETER, "A parameter of the storage call is not valid."),
    row(STG_E_MEDIUMFULL, "There is no room left for the storage."),
    row(STG_E_INVALIDHEADER, "The file is not a valid compound file."),
    row(STG_E_INVALIDNAME, "The name is not valid in a storage."),
    row(STG_E_UNIMPLEMENTEDFUNCTION, "This storage call is not implemented."),
    row(STG_E_INVALIDFLAG, "A flag of the storage call is not valid."),
    row(STG_E_REVERTED, "The storage has been reverted."),
    row(STG_E_DOCFILECORRUPT, "The compound file is damaged."),
    row(STG_E_CANTSAVE, "The object could not be saved."),
};

const MessageText* findText(DWORD code) {
    const bool win32 = (code & 0xFFFF0000u) == 0x80070000u;
    const DWORD wanted = win32 ? code & 0xFFFFu : code;
    const auto found = std::find_if(messageTexts.begin(), messageTexts.end(),
                                    [wanted](const MessageText& m) { return m.code == wanted; });
    return found == messageTexts.end() ? nullptr : &*found;
}

} // namespace

extern "C" DWORD FormatMessageW(DWORD flags, const void*, DWORD code, DWORD, LPOLESTR buffer,
                                DWORD size, void*) {
    if ((flags & FORMAT_MESSAGE_FROM_SYSTEM) == 0 || !buffer) {
        SetLastError(ERROR_INVALID_PARAMETER);
        return 0;
    }
    const MessageText* found = findText(code);
    if (!found) {
        SetLastError(ERROR_MR_MID_NOT_FOUND);
        return 0;
    }
    platform::OleString text;
    const HRESULT made = platform::answer([&] {
        text = platform::toOle(found->text) + OLESTR("\r\n");
        return S_OK;
    });
    if (FAILED(made)) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return 0;
    }
    std::size_t capacity = size;
    LPOLESTR target = buffer;
    if ((flags & FORMAT_MESSAGE_ALLOCATE_BUFFER) != 0) {
        capacity = std::max<std::size_t>(size, text.size() + 1);
        target = static_cast<LPOLESTR>(std::malloc(capacity * sizeof(OLECHAR)));
        *reinterpret_cast<LPOLESTR*>(buffer) = target;
    }
    if (!target || capacity <= text.size()) {
        SetLastError(target ? ERROR_INSUFFICIENT_BUFFER : ERROR_NOT_ENOUGH_MEMORY);
        return 0;
    }
    text.copy(target, text.size());
    target[text.size()] = 0;
    return static_cast<DWORD>(text.size());
}
