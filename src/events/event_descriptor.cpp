// Descriptors of events: the names of their parameters and how they travel.
#include "classmodel/event_descriptor.h"

#include "conversion/arg_converter.h"

#include <algorithm>

namespace axlink2 {

COMEventDescriptor::COMEventDescriptor(const COMMemberEntry& entry) : name(entry.name) {
    const COMMemberSignature& signature = *entry.method;
    const std::size_t count = signature.parameterTypes.size();
    const std::vector<std::string> common = {"Type", "Source", "EventID"};
    const auto isTaken = [&](const std::string& field) {
        return field.empty() || std::ranges::find(common, field) != common.end() ||
               std::ranges::find(parameterNames, field) != parameterNames.end();
    };
    for (std::size_t i = 0; i < count; ++i) {
        converters.push_back(getArgConverter(signature.parameterTypes[i]));
        std::string field;
        if (i < signature.parameterNames.size()) field = signature.parameterNames[i];
        if (isTaken(field)) field = "Arg" + std::to_string(i + 1);
        while (isTaken(field))
            field += '_';
        parameterNames.push_back(std::move(field));
    }
    fieldNames = {"Type", "Source", "EventID"};
    for (const std::string& field : parameterNames)
        fieldNames.push_back(field.c_str());
}

} // namespace axlink2
