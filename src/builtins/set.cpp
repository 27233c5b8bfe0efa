// Writing properties by name, and listing what may be written.
#include "builtins/set.h"

#include "builtins/call_support.h"
#include "builtins/host_call.h"
#include "builtins/property_lookup.h"
#include "comruntime/interned.h"
#include "dispatch/call_by_name.h"
#include "host/exception.h"
#include "host/message_ids.h"

#include <span>
#include <utility>

namespace axlink2 {
namespace {

using harray::unique_array;
using Arguments = std::span<const hos::HOSValue>;

hos::HOSTypeConversion* conversionTo(const hos::HOSDataTypePtr& type) {
    return type ? hos::HOSTypeRepository::getConversion(internedId("any"), type.getID()) : nullptr;
}

// An n-by-1 cell of the values of a type that has a finite list of them, else a 0-by-0 cell; null
// for a property that can't be written or converted.
unique_array possibleValues(const hos::HOSPropInfo& property) {
    if (property.getSetAccess() != 0) return nullptr;
    hos::HOSDataTypePtr type;
    hos::HOSTypeConversion* conversion = conversionTo(*property.getDataType(&type));
    if (!conversion) return nullptr;
    std::vector<unique_array> values;
    for (auto listed = type->getPossibleValues(); listed.hasMoreElements();) {
        hxArray* array = nullptr;
        conversion->convertToHost(&array, listed.nextElement());
        unique_array value(array);
        values.push_back(std::move(value));
    }
    unique_array cell(hxCreateCellMatrix(values.size(), values.empty() ? 0 : 1));
    for (std::size_t i = 0; i < values.size(); ++i)
        hxSetCell(cell.get(), i, values[i].release());
    return cell;
}

// A value in the form of a property's type, ended with this.
class ConvertedValue {
  public:
    ConvertedValue(const hos::HOSPropInfo& property, const hxArray* array) {
        hos::HOSTypeConversion* conversion = conversionTo(*property.getDataType(&type_));
        if (!conversion) hmsgcore::raise(VELMAR::COM::invalidargumenttype());
        conversion->convertFromHost(&value_, array);
    }
    ConvertedValue(const ConvertedValue&) = delete;
    ConvertedValue& operator=(const ConvertedValue&) = delete;
    ~ConvertedValue() { type_->releaseValue(value_); }

    hos::HOSValue get() const { return value_; }

  private:
    hos::HOSDataTypePtr type_;
    hos::HOSValue value_;
};

// Whether the property may be written is for the server to say.
void setOneProperty(const hos::HOSInterfacePtr& object, const std::string& name,
                    const hxArray* value) {
    if (hos::HOSPropInfo* property = findProperty(*object, name)) {
        property->setValue(object, ConvertedValue(*property, value).get());
        return;
    }
    std::uint32_t count = 0;
    hos::HOSValue result;
    const hos::HOSValue input = hos::HOSValue::ofPointer(value);
    callByName(object, name.c_str(), DISPATCH_PROPERTYPUT, &count, &result, 1, &input);
    harray::destroyArray(result.array());
}

bool isA(hos::HOSValue argument, hxClassID classId) {
    return hxGetClassID(argument.array()) == classId;
}

bool isPair(hos::HOSValue name, hos::HOSValue value) {
    if (!isA(name, hxCELL_CLASS)) return scalarText(name.array()).has_value();
    if (!isA(value, hxCELL_CLASS)) return false;
    const std::size_t names = hxGetNumberOfElements(name.array());
    return names == hxGetNumberOfElements(value.array()) || names == hxGetN(value.array());
}

// A struct stands alone; anything else needs a partner.
bool arePairs(Arguments arguments) {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (isA(arguments[i], hxSTRUCT_CLASS)) continue;
        if (i + 1 == arguments.size() || !isPair(arguments[i], arguments[i + 1])) return false;
        ++i;
    }
    return true;
}

void setFromStruct(const hos::HOSInterfacePtr& object, const hxArray* values) {
    const auto names = get_struct_field_names(values);
    for (std::size_t i = 0; i < hxGetNumberOfElements(values); ++i)
        for (std::size_t field = 0; field < names.size(); ++field)
            setOneProperty(object, names[field],
                           hxGetFieldByNumber(values, i, static_cast<int>(field)));
}

void setFromCells(const hos::HOSInterfacePtr& object, const hxArray* names, const hxArray* values) {
    const std::size_t count = hxGetNumberOfElements(names);
    // Columns without rows hold nothing.
    if (hxGetNumberOfElements(values) < count)
        hmsgcore::raise(VELMAR::class_::BadParamValuePairs());
    for (std::size_t i = 0; i < count; ++i) {
        const auto name = scalarText(hxGetCell(names, i));
        if (!name) hmsgcore::raise(VELMAR::class_::EmptyParamCell());
        setOneProperty(object, *name, hxGetCell(values, i));
    }
}

void setPairs(const hos::HOSInterfacePtr& object, Arguments arguments) {
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        const hxArray* first = arguments[i].array();
        if (isA(arguments[i], hxSTRUCT_CLASS)) {
            setFromStruct(object, first);
            continue;
        }
        const hxArray* partner = arguments[++i].array();
        if (const auto name = scalarText(first))
            setOneProperty(object, *name, partner);
        else
            setFromCells(object, first, partner);
    }
}

unique_array possibleValuesOf(hos::HOSInterface& object, const hxArray* argument) {
    const auto name = scalarText(argument);
    if (!name) hmsgcore::raise(VELMAR::class_::BadParamValuePairs());
    const hos::HOSPropInfo* property = findProperty(object, *name);
    if (!property) {
        hos::id qualifiedName;
        object.getClass()->getID(&qualifiedName);
        hmsgcore::raise(VELMAR::legacy_two_part::noSuchMethodOrField(*name, qualifiedName.str()));
    }
    return possibleValues(*property);
}

} // namespace

void COMSet1MethodInfo::invoke(const hos::HOSClient*, std::uint32_t* outputCount,
                               hos::HOSValue* outputs, std::int32_t, hos::HOSValue* inputs) {
    const auto properties = writableProperties(*firstObject(inputs));
    unique_array choices = createStruct(namesOf(properties));
    for (std::size_t i = 0; i < properties.size(); ++i)
        hxSetFieldByNumber(choices.get(), 0, static_cast<int>(i),
                           possibleValues(*properties[i]).release());
    giveOrShow(std::move(choices), outputCount, outputs);
}

void COMSet2MethodInfo::invoke(const hos::HOSClient*, std::uint32_t* outputCount,
                               hos::HOSValue* outputs, std::int32_t inputCount,
                               hos::HOSValue* inputs) {
    const hos::HOSInterfacePtr object = firstObject(inputs);
    const Arguments arguments(inputs + 1, static_cast<std::size_t>(inputCount - 1));
    if (arguments.size() == 1 && !isA(arguments[0], hxSTRUCT_CLASS))
        return giveOutput(possibleValuesOf(*object, arguments[0].array()), outputCount, outputs);
    if (arePairs(arguments)) return setPairs(object, arguments);
    const std::string name = scalarText(arguments[0].array()).value_or("");
    callByName(object, name.c_str(), DISPATCH_PROPERTYPUT, outputCount, outputs, inputCount - 2,
               inputs + 2);
}

void COMSet3MethodInfo::invoke(const hos::HOSClient*, std::uint32_t*, hos::HOSValue*, std::int32_t,
                               hos::HOSValue* inputs) {
    const auto* name = inputs[1].pointer<const char>();
    requireClassProperty(*ownerClass, name);
    hxArray* objects = inputs[0].array();
    for (std::size_t i = 0; i < hxGetNumberOfElements(objects); ++i)
        hxSetProperty(objects, i, name, inputs[2].array());
}

} // namespace axlink2
