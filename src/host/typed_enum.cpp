// Enumerations: integers with names.
#include "host/data_type.h"
#include "host/host_messages.h"

#include <algorithm>

namespace hos {

TypedEnumStringType::TypedEnumStringType(const HOSDataTypePtr& base, const char* name,
                                         const char* description)
    : HOSDataType(OverloadsKeyOperations::No), base_(base), name_(name ? name : ""),
      description_(description ? description : "") {}

TypedEnumStringType* TypedEnumStringType::createCaseInsensitiveInstance(const HOSDataTypePtr& base,
                                                                        const char* name,
                                                                        const char* description) {
    HOSTypeRepository::addGlobalType(new TypedEnumStringType(base, name, description));
    // The name's first type: the new one, unless the name was known.
    const HOSDataTypePtr kept(internal::makeInterned(name ? name : ""));
    auto* type = dynamic_cast<TypedEnumStringType*>(HOSDataTypePtrHelper::getObject(kept));
    if (!type) velmar::fail(velmar::keys::UnknownType, std::string(name ? name : ""));
    return type;
}

std::size_t TypedEnumStringType::getValueSize() const {
    return base_ ? base_->getValueSize() : HOSDataType::getValueSize();
}

void TypedEnumStringType::addValue(std::int64_t value, const char* name, const char*) {
    constants_.emplace_back(value, name ? name : "");
    valuesByName_.try_emplace(platform::toOle(constants_.back().second), value);
}

const char* TypedEnumStringType::valueName(HOSValue value) const {
    for (const auto& [number, name] : constants_)
        if (number == value.integer()) return name.c_str();
    return nullptr;
}

void TypedEnumStringType::valueOfName(HOSValue* out, const char* name) const {
    const auto at = valuesByName_.find(platform::toOle(name ? name : ""));
    if (at != valuesByName_.end()) *out = HOSValue::ofInteger(at->second);
}

bool TypedEnumStringType::hasName(const char* name) const {
    return name && valuesByName_.contains(platform::toOle(name));
}

const char* TypedEnumStringType::getTypeKind() const { return "enum"; }
const char* TypedEnumStringType::getName() const { return name_.c_str(); }
const char* TypedEnumStringType::getDescription() const { return description_.c_str(); }
bool TypedEnumStringType::isPossibleValuesFinite() const { return true; }

Enumeration<HOSValue> TypedEnumStringType::getPossibleValues() const {
    std::vector<HOSValue> values;
    for (const auto& constant : constants_) {
        const std::int64_t number = constant.first;
        if (std::ranges::none_of(values, [&](HOSValue known) { return known.integer() == number; }))
            values.push_back(HOSValue::ofInteger(number));
    }
    return Enumeration<HOSValue>(std::move(values));
}

bool TypedEnumStringType::checkValue(HOSValue value, bool) const {
    return valueName(value) != nullptr;
}

} // namespace hos
