// Reading properties by name, all at once, several, or over a vector of objects.
#include "builtins/get.h"

#include "builtins/call_support.h"
#include "builtins/host_call.h"
#include "builtins/property_lookup.h"
#include "classmodel/instance_record.h"
#include "dispatch/call_by_name.h"
#include "host/exception.h"
#include "host/message_ids.h"

#include <boost/algorithm/string/trim.hpp>

#include <optional>
#include <utility>

namespace axlink2 {
namespace {

using harray::unique_array;
using ComError = hbase::core::except::Exception<VELMAR::COM::COMException, std::exception, void>;

unique_array readProperty(const hxArray* objects, std::size_t index, const char* name) {
    return unique_array(hxGetPropertyShared(objects, index, name));
}

unique_array valueOrMessage(const hxArray* objects, const char* name) {
    try {
        return readProperty(objects, 0, name);
    } catch (const ComError& error) {
        // Texts of the system have line ends behind them.
        const std::string text = boost::algorithm::trim_right_copy(error.GetMessageTxt());
        return unique_array(hxCreateString(text.c_str()));
    }
}

// All errors of a query share one identifier; their texts tell them apart.
[[noreturn]] void refuse(const hmsgcore::BaseMsgID& reason) {
    using namespace hsys::i18n;
    hmsgcore::raise(VELMAR::COM::AmbiguousPropertyException(
        MessageCatalog::get_message(reason, HsysLocale::global())));
}

// The names of the object's class, which are taken down when they are first asked for.
const ReadableNames& namesOfClass(std::optional<ReadableNames>& known, hos::HOSInterface& object) {
    if (!known) known.emplace(*object.getClass());
    return *known;
}

// The name of the property that `text` means; none when no property begins with it.
std::optional<std::string> matchProperty(const ReadableNames& ofClass, hos::HOSInterface& object,
                                         const std::string& text) {
    NameMatch match(text);
    ofClass.offerAll(match);
    for (const hos::HOSPropInfo* property : readableAddedProperties(object))
        match.offer(property->getName());
    if (match.exact) return match.exact;
    if (match.isAmbiguous)
        refuse(VELMAR::class_::AmbiguousPropertyException(*match.partial,
                                                          object.getClass()->getName()));
    return match.partial;
}

std::vector<std::string> namesInCell(const hxArray* cell) {
    if (hxGetClassID(cell) != hxCELL_CLASS) refuse(VELMAR::COM::InvalidGetSecondArg());
    std::vector<std::string> names;
    for (std::size_t i = 0; i < hxGetNumberOfElements(cell); ++i) {
        auto name = scalarText(hxGetCell(cell, i));
        if (!name) refuse(VELMAR::COM::InvalidGetArgInCell());
        names.push_back(*std::move(name));
    }
    return names;
}

// The property of that exact name, or what the server knows by it.
unique_array readExactly(const hxArray* objects, const hos::HOSInterfacePtr& object,
                         const std::string& name) {
    if (findProperty(*object, name)) return readProperty(objects, 0, name.c_str());
    std::uint32_t one = 1;
    hos::HOSValue value;
    callByName(object, name.c_str(), DISPATCH_PROPERTYGET, &one, &value, 0, nullptr);
    return unique_array(value.array());
}

} // namespace

void COMGet1MethodInfo::invoke(const hos::HOSClient*, std::uint32_t* outputCount,
                               hos::HOSValue* outputs, std::int32_t, hos::HOSValue* inputs) {
    const hxArray* objects = inputs[0].array();
    const hos::HOSInterfacePtr object = requireValidHandle(&objects);
    // Names, since a server that is asked for one property may cause another to be deleted.
    const std::vector<std::string> added = namesOf(readableAddedProperties(*object));
    std::vector<const char*> names;
    for (const auto* list : {&namesOfClass(ofClass, *object).inOrder(), &added})
        for (const std::string& name : *list)
            names.push_back(name.c_str());
    unique_array values(hxCreateStructMatrix(1, 1, static_cast<int>(names.size()), names.data()));
    for (std::size_t i = 0; i < names.size(); ++i)
        hxSetFieldByNumber(values.get(), 0, static_cast<int>(i),
                           valueOrMessage(objects, names[i]).release());
    giveOrShow(std::move(values), outputCount, outputs);
}

void COMGet2MethodInfo::invoke(const hos::HOSClient*, std::uint32_t* outputCount,
                               hos::HOSValue* outputs, std::int32_t, hos::HOSValue* inputs) {
    const hos::HOSInterfacePtr object = firstObject(inputs);
    const hxArray* objects = inputs[0].array();
    if (const auto text = scalarText(inputs[1].array())) {
        const auto name = matchProperty(namesOfClass(ofClass, *object), *object, *text);
        if (!name)
            return callByName(object, text->c_str(), DISPATCH_PROPERTYGET, outputCount, outputs, 0,
                              nullptr);
        return giveOutput(readProperty(objects, 0, name->c_str()), outputCount, outputs);
    }
    const auto names = namesInCell(inputs[1].array());
    unique_array values(hxCreateCellMatrix(1, names.size()));
    for (std::size_t i = 0; i < names.size(); ++i)
        hxSetCell(values.get(), i, readExactly(objects, object, names[i]).release());
    giveOutput(std::move(values), outputCount, outputs);
}

void COMGet3MethodInfo::invoke(const hos::HOSClient*, std::uint32_t* outputCount,
                               hos::HOSValue* outputs, std::int32_t, hos::HOSValue* inputs) {
    const auto* name = inputs[1].pointer<const char>();
    requireClassProperty(*ownerClass, name);
    const hxArray* objects = inputs[0].array();
    const std::size_t count = hxGetNumberOfElements(objects);
    unique_array values(hxCreateCellMatrix(count, 1));
    for (std::size_t i = 0; i < count; ++i)
        hxSetCell(values.get(), i, readProperty(objects, i, name).release());
    giveOutput(std::move(values), outputCount, outputs);
}

void COMGet4MethodInfo::invoke(const hos::HOSClient*, std::uint32_t* outputCount,
                               hos::HOSValue* outputs, std::int32_t inputCount,
                               hos::HOSValue* inputs) {
    callByName(firstObject(inputs), inputs[1].pointer<const char>(), DISPATCH_PROPERTYGET,
               outputCount, outputs, inputCount - 2, inputs + 2);
}

} // namespace axlink2
