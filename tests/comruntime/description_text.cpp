// Rendering type descriptions.
#include "comruntime/description_text.h"

#include <boost/format.hpp>

namespace axlink2::test {
namespace {

struct TypeText {
    std::string operator()(VARTYPE vt) const { return "vt" + std::to_string(vt); }
    std::string operator()(const COMArrayType& array) const {
        return "array(" + std::to_string(array.elementType) + (array.output ? ",out)" : ",in)");
    }
    std::string operator()(const COMEnumerationType& type) const { return type.name; }
    std::string operator()(COMUnsupportedType) const { return "unsupported"; }
};

std::string textOf(const char* kind, const COMMemberSignature& signature) {
    std::string text = std::string(" ") + kind + "(";
    for (std::size_t i = 0; i < signature.parameterTypes.size(); ++i) {
        if (i > 0) text += ", ";
        text += (boost::format("%x:") % signature.parameterFlags[i]).str();
        text += std::visit(TypeText(), signature.parameterTypes[i]);
        if (signature.byReference[i]) text += "&";
        if (i < signature.parameterNames.size()) text += " " + signature.parameterNames[i];
    }
    text += ")->" + std::visit(TypeText(), signature.returnType);
    if (signature.optionalCount) text += " optional=" + std::to_string(signature.optionalCount);
    if (signature.requiresInput) text += " required";
    return text;
}

} // namespace

std::string textOf(const COMMemberType& type) { return std::visit(TypeText(), type); }

std::string textOf(const COMMemberEntry& entry) {
    std::string text = entry.name;
    if (entry.method) text += textOf("method", *entry.method);
    if (entry.propertyGet) text += textOf("get", *entry.propertyGet);
    if (entry.propertyPut) text += textOf("put", *entry.propertyPut);
    if (entry.propertyPutRef) text += textOf("putref", *entry.propertyPutRef);
    return text;
}

std::string textOf(const COMMemberMap& members) {
    std::string text;
    for (const auto& [dispid, entry] : members)
        text += std::to_string(dispid) + " " + textOf(*entry) + "\n";
    return text;
}

} // namespace axlink2::test
