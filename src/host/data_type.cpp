// What a data type answers unless it says otherwise, and pointers to types by name.
#include "host/data_type.h"

#include "host/face.h"

namespace hos {

HOSDataType::HOSDataType(OverloadsKeyOperations) : handle_(new Face(FaceKind::DataType, this)) {}

HOSDataType::~HOSDataType() { static_cast<Face*>(static_cast<HOSInterface*>(handle_))->detach(); }

const char* HOSDataType::getTypeKind() const { return "builtin"; }
const char* HOSDataType::getDescription() const { return ""; }
const char* HOSDataType::getDetailedDescription() const { return ""; }
const char* HOSDataType::getPossibleValuesDescription() const { return ""; }
bool HOSDataType::isPossibleValuesFinite() const { return false; }
Enumeration<HOSValue> HOSDataType::getPossibleValues() const { return {}; }
HOSValue HOSDataType::getDefaultValue() const { return {}; }
int HOSDataType::dataTypeCode1() const { return 0; }
const char* HOSDataType::getOwnerName() const { return ""; }
int HOSDataType::dataTypeCode2() const { return 0; }
bool HOSDataType::checkValue(HOSValue, bool) const { return true; }
bool HOSDataType::dataTypeFlag() const { return false; }
bool HOSDataType::isEqualWithEqualNans(HOSValue a, HOSValue b) const { return isIdentical(a, b); }
bool HOSDataType::isIdentical(HOSValue a, HOSValue b) const { return a.word() == b.word(); }
int HOSDataType::dataTypeCode3() const { return 0; }
std::size_t HOSDataType::getValueSize() const { return sizeof(HOSValue); }
HOSValue HOSDataType::cloneValue(HOSValue value) const { return value; }
HOSValue HOSDataType::copyInternal(HOSValue value) const { return cloneValue(value); }
void HOSDataType::releaseValue(HOSValue) const {}
void HOSDataType::destroyInternal(HOSValue value) const { releaseValue(value); }
std::size_t HOSDataType::getHashCode(const HOSValue& value) const {
    return std::hash<std::uint64_t>()(value.word());
}
bool HOSDataType::canContainInterfaces() const { return false; }
void HOSDataType::getReference() {}
void HOSDataType::releaseReference() {}
std::vector<HOSInterfacePtr> HOSDataType::getInterfaces(HOSValue) const { return {}; }
const char* HOSDataType::getVelFormat() const { return ""; }
bool HOSDataType::isVELMARArrayType() const { return false; }
std::size_t HOSDataType::keyHash(HOSValue value) const { return getHashCode(value); }
bool HOSDataType::keyMatch(HOSValue a, HOSValue b) const { return isIdentical(a, b); }

HOSDataTypePtr::HOSDataTypePtr(id name)
    : name_(name), type_(HOSDataTypePtrHelper::getObject(HOSTypeRepository::getType(name))) {}

HOSDataTypePtr::HOSDataTypePtr(const HOSInterfacePtr& handle)
    : type_(HOSDataTypePtrHelper::getObject(handle)) {
    if (type_) name_ = internal::makeInterned(type_->getName());
}

} // namespace hos
