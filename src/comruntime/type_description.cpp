// The rules of a member's entry, and the way from a server to its description.
#include "comruntime/type_description.h"

#include "comruntime/type_reader.h"
#include "platform/holders.h"

#include <utility>

namespace axlink2 {
namespace {

bool takesNoInput(const std::unique_ptr<COMMemberSignature>& signature) {
    return signature && !signature->requiresInput;
}

} // namespace

bool COMMemberEntry::isMethod() const {
    return method || (propertyGet && propertyGet->requiresInput);
}

bool COMMemberEntry::isProperty() const {
    return takesNoInput(propertyGet) || takesNoInput(propertyPut) || takesNoInput(propertyPutRef);
}

COMMemberType COMMemberEntry::resultType() const {
    if (method) return method->returnType;
    if (propertyGet) return propertyGet->returnType;
    return VARTYPE{VT_VOID};
}

void COMMemberEntry::set(int invokeKind, std::unique_ptr<COMMemberSignature> signature) {
    switch (invokeKind) {
    case INVOKE_FUNC:
        method = std::move(signature);
        break;
    case INVOKE_PROPERTYGET:
        propertyGet = std::move(signature);
        break;
    case INVOKE_PROPERTYPUT:
        propertyPut = std::move(signature);
        break;
    default:
        propertyPutRef = std::move(signature);
    }
}

COMTypeDescription::COMTypeDescription(ITypeInfo* typeInfo, IDispatch* server) {
    readTypeDescription(typeInfo, server, *this);
}

std::unique_ptr<COMTypeDescription> COMTypeDescription::ofServer(IDispatch* server) {
    const auto info = typeInfoOf(server);
    if (!info) return nullptr;
    return std::make_unique<COMTypeDescription>(info.get(), server);
}

} // namespace axlink2
