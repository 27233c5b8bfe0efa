// The branches of hostToVariant, by host class.
#include "conversion/host_to_variant.h"

#include "classmodel/class_description.h"
#include "comruntime/server_call.h"
#include "conversion/com_text.h"
#include "conversion/host_classes.h"
#include "host/axlink.h"
#include "host/exception.h"
#include "host/message_ids.h"
#include "host/text.h"

#include <cmath>
#include <cstdint>
#include <cstring>

namespace axlink2 {
namespace {

using platform::ScopedSafeArray;

// What one conversion is asked for.
struct Request {
    VARIANT& target;
    const hxArray* value;
    bool byRef;
    bool forceArray;
    ReferenceHolders* holders;

    bool isEmpty() const { return hxIsEmpty(value); }
    bool isSmall() const {
        return hxGetM(value) < 2 && hxGetN(value) < 2 && (!forceArray || isEmpty());
    }
};

void refer(VARIANT& target, VARTYPE vt, void* to) {
    target.vt = static_cast<VARTYPE>(vt | VT_BYREF);
    target.byref = to;
}

void setMissing(VARIANT& target) {
    target.vt = VT_ERROR;
    target.scode = DISP_E_PARAMNOTFOUND;
}

void setArray(const Request& request, VARTYPE vt, ScopedSafeArray array) {
    VARIANT& owner = request.byRef ? request.holders->add() : request.target;
    owner.parray = array.detach();
    owner.vt = static_cast<VARTYPE>(vt | VT_ARRAY);
    if (request.byRef) refer(request.target, owner.vt, &owner.parray);
}

// The host's data as the server will write to it.
void* sharedData(const hxArray* value) { return const_cast<void*>(hxGetData(value)); }

void convertSmallNumber(const Request& request, const NumericClass& row) {
    if (request.byRef) {
        refer(request.target, row.vartype, sharedData(request.value));
    } else if (const void* data = hxGetData(request.value)) {
        request.target.vt = row.vartype;
        std::memcpy(&request.target.llVal, data, row.elementSize);
    }
}

bool isNaN(const hxArray* value) {
    const auto* data = static_cast<const double*>(hxGetData(value));
    return data && std::isnan(*data);
}

void convertSmallDouble(const Request& request, const NumericClass& row) {
    if (request.byRef && request.isEmpty())
        refer(request.target, VT_VARIANT, &request.holders->add());
    else if (!request.byRef && (request.isEmpty() || isNaN(request.value)))
        setMissing(request.target);
    else
        convertSmallNumber(request, row);
}

void convertSmallLogical(const Request& request) {
    const auto* data = static_cast<const unsigned char*>(hxGetData(request.value));
    if (!data) return;
    // The host's byte has no room for what a server writes.
    VARIANT& owner = request.byRef ? request.holders->add() : request.target;
    owner.vt = VT_BOOL;
    owner.boolVal = *data ? VARIANT_TRUE : VARIANT_FALSE;
    if (request.byRef) refer(request.target, VT_BOOL, &owner.boolVal);
}

void convertNumeric(const Request& request, const NumericClass& row) {
    if (hxIsComplex(request.value)) hmsgcore::raise(VELMAR::COM::invalidargumenttype());
    const bool isDouble = row.id == hxDOUBLE_CLASS;
    if (hxIsSparse(request.value)) arrayToSafeArray(request.value); // which refuses it
    const auto isMissing = [&] {
        return isDouble && !request.byRef && hxIsScalar(request.value) && isNaN(request.value);
    };
    if (!request.isSmall() && !isMissing())
        setArray(request, row.vartype,
                 ScopedSafeArray::adopt(numericToSafeArray(request.value, row)));
    else if (isDouble)
        convertSmallDouble(request, row);
    else if (row.id == hxLOGICAL_CLASS)
        convertSmallLogical(request);
    else
        convertSmallNumber(request, row);
}

void convertChar(const Request& request) {
    VARIANT& owner = request.byRef ? request.holders->add() : request.target;
    owner.bstrVal = charToBstr(request.value);
    owner.vt = VT_BSTR;
    if (request.byRef) refer(request.target, VT_BSTR, &owner.bstrVal);
}

void convertCell(const Request& request) {
    auto array = ScopedSafeArray::adopt(cellToSafeArray(request.value, VT_VARIANT));
    if (request.byRef || !request.holders || !axlink::PassSafeArrayByRef())
        return setArray(request, VT_VARIANT, std::move(array));
    VARIANT& owner = request.holders->add();
    owner.parray = array.detach();
    owner.vt = VT_VARIANT | VT_ARRAY;
    refer(request.target, VT_VARIANT, &owner);
}

// An object of a class that isn't the module's has no interface to pass.
void convertHandle(const Request& request) {
    IDispatch* const server = passedServerOf(request.value);
    if (!server) return;
    request.target.pdispVal = ServerPtr<IDispatch>::borrow(server).detach();
    request.target.vt = VT_DISPATCH;
}

// Neither objects nor strings have a by-reference form.
void convertOpaque(const Request& request) {
    if (hxIsA(request.value, "handle")) {
        convertHandle(request);
    } else if (hoststring::isString(request.value)) {
        std::u16string text;
        if (!hoststring::getScalarText(request.value, text, true))
            return hxWarningMsgId(VELMAR::COM::invalidargumenttype());
        request.target.bstrVal = newBstr(text);
        request.target.vt = VT_BSTR;
    }
}

bool hasEmptyReference(hxClassID id) {
    return id == hxDOUBLE_CLASS || id == hxCELL_CLASS || id == hxCHAR_CLASS;
}

} // namespace

void hostToVariant(VARIANT* base, const hxArray* value, bool byRef, int row, int col, int rows,
                   bool forceArray, ReferenceHolders* holders) {
    if (row == 0 && col == 0) base->vt = VT_EMPTY;
    VARIANT& target = base[row + static_cast<std::ptrdiff_t>(col) * rows];
    if (!value) { // reads as an empty double
        if (byRef) return refer(target, VT_VARIANT, &holders->add());
        return setMissing(target);
    }
    const hxClassID id = hxGetClassID(value);
    if (byRef && hxIsEmpty(value) && !hasEmptyReference(id))
        hmsgcore::raise(VELMAR::COM::invalidargumenttype());

    const Request request{target, value, byRef, forceArray, holders};
    if (const NumericClass* numeric = numericClassOf(id))
        convertNumeric(request, *numeric);
    else if (id == hxCHAR_CLASS)
        convertChar(request);
    else if (id == hxCELL_CLASS)
        convertCell(request);
    else if (id == hxOPAQUE_CLASS)
        convertOpaque(request);
    else
        hxWarningMsgId(VELMAR::COM::invalidargumenttype());
}

std::optional<platform::OleString> charToWideText(const hxArray* value) {
    if (!value || hxGetClassID(value) != hxCHAR_CLASS) return std::nullopt;
    const std::size_t rows = hxGetM(value);
    const std::size_t columns = hxGetN(value);
    const auto* units = static_cast<const char16_t*>(hxGetData(value));
    if (rows < 2)
        return units ? platform::toOle(std::u16string_view(units, columns)) : platform::OleString();

    const std::size_t stride = columns + 1;
    platform::OleString text(stride * rows, OLECHAR{'\n'});
    for (std::size_t column = 0; column < columns; ++column)
        for (std::size_t row = 0; row < rows; ++row)
            text[row * stride + column] = static_cast<OLECHAR>(units[column * rows + row]);
    return text;
}

BSTR charToBstr(const hxArray* value) {
    const auto* units = static_cast<const char16_t*>(hxGetData(value));
    if (!units) return nullptr;
    if (hxGetM(value) > 1) return newBstr(platform::toUtf16(*charToWideText(value)));
    return newBstr({units, hxGetN(value)});
}

} // namespace axlink2
