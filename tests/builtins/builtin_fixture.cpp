// Arrays as text, and what else the tests of the built-in methods share.
#include "builtins/builtin_fixture.h"

#include "host/text.h"

#include <sstream>

namespace axlink2::test {
namespace {

std::string shape(const hxArray* array) {
    return "(" + std::to_string(hxGetM(array)) + "x" + std::to_string(hxGetN(array)) + ")";
}

std::string plainStruct(const hxArray* array) {
    std::string line = "(";
    for (const std::string& field : get_struct_field_names(array))
        line +=
            (line.size() > 1 ? " " : "") + field + "=" + plain(hxGetField(array, 0, field.c_str()));
    return line + ")";
}

std::string plainCell(const hxArray* array) {
    std::string line = "{";
    for (std::size_t i = 0; i < hxGetNumberOfElements(array); ++i)
        line += (i ? " " : "") + plain(hxGetCell(array, i));
    return line + "}" + shape(array);
}

} // namespace

std::string plain(const hxArray* array) {
    if (!array) return "null";
    std::u16string characters;
    if (hoststring::getScalarText(array, characters, true))
        return "'" + hsys::i18n::to_string(characters) + "'";
    if (hxGetClassID(array) == hxCELL_CLASS) return plainCell(array);
    if (hxGetClassID(array) == hxSTRUCT_CLASS) return plainStruct(array);
    if (hoIsHOS(array)) return std::string("<") + hxGetClassName(array) + ">";
    if (!hxIsScalar(array)) return "[]" + shape(array);
    std::ostringstream number;
    number << hxGetScalar(array);
    return number.str();
}

Array BuiltinTest::row(const std::vector<const Array*>& objects) {
    Array result(hoCreateHOSMatrix(1, objects.size(), hoGetClassID(objects.at(0)->get())));
    for (std::size_t i = 0; i < objects.size(); ++i)
        hoSetArrayElement(result.get(), i, handle(*objects[i]));
    return result;
}

Array BuiltinTest::emptyArrayOf(const Array& h) {
    return Array(hoCreateHOSMatrix(0, 0, hoGetClassID(h.get())));
}

std::string BuiltinTest::printed(const std::function<void()>& action) {
    std::string output;
    velmar::setOutput([&](std::string_view part) { output += part; });
    action();
    velmar::setOutput({});
    return output;
}

std::vector<std::string> BuiltinTest::warnings(const std::function<void()>& action) {
    std::vector<std::string> identifiers;
    velmar::setWarningWriter([&](const std::string& identifier, const std::u16string&) {
        identifiers.push_back(identifier);
    });
    action();
    velmar::setWarningWriter({});
    return identifiers;
}

std::pair<std::uint32_t, Array> BuiltinTest::invokeDirectly(hos::HOSMethodInfo& method,
                                                            std::uint32_t outputs,
                                                            std::vector<hos::HOSValue> inputs) {
    std::vector<hos::HOSValue> results(std::max(outputs, 1u));
    method.invoke(hos::HOSGetPublicClient(), &outputs, results.data(),
                  static_cast<std::int32_t>(inputs.size()), inputs.data());
    return {outputs, Array(results[0].array())};
}

} // namespace axlink2::test
