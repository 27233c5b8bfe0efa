// Enumerations: names to the host, names and numbers from it.
#include "classmodel/enum_conversion.h"

#include "comruntime/interned.h"
#include "comruntime/text_argument.h"
#include "host/exception.h"
#include "host/message_ids.h"
#include "host/text.h"

#include <cstdint>
#include <string>

namespace axlink2 {

void TypedEnumConversion::convertToHost(hxArray** out, hos::HOSValue value) {
    const char* name = enumType->valueName(value);
    *out = name ? hxCreateString(name)
                : hxCreateDoubleScalar(static_cast<std::int32_t>(value.integer()));
}

void TypedEnumConversion::convertFromHost(hos::HOSValue* out, const hxArray* array) {
    if (!hoststring::isScalarText(array, false, true)) {
        hos::HOSTypeRepository::getConversion(internedId("any"), internedId("int32 scalar"))
            ->convertFromHost(out, array);
        return;
    }
    const std::string name = readNarrowText(array);
    if (!enumType->hasName(name.c_str())) hmsgcore::raise(VELMAR::class_::InvalidEnumValue(name));
    enumType->valueOfName(out, name.c_str());
}

} // namespace axlink2
