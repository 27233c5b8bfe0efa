// The functions that the host itself has: disp, builtin and methods.
#include "host/display.h"
#include "host/functions.h"
#include "host/host_messages.h"
#include "host/live_class.h"
#include "host/object_array.h"
#include "host/output.h"
#include "host/text.h"

#include <algorithm>
#include <unordered_set>

namespace velmar {
namespace {

// The text of an input as a name; empty when it is no text.
std::string nameOf(const hxArray* array) {
    std::u16string text;
    return hoststring::getScalarText(array, text, true) ? hsys::i18n::to_string(text)
                                                        : std::string();
}

void requireInputs(int count, int least, int most) {
    if (count < least) harray::detail::error_minrhs();
    if (most >= 0 && count > most) harray::detail::error_maxrhs();
}

void disp(int outputCount, harray::unique_array* outputs, int inputCount,
          const hxArray* const* inputs) {
    requireInputs(inputCount, 1, 1);
    if (outputCount > 1) harray::detail::error_maxlhs();
    const std::string text = displayText(inputs[0]);
    if (outputCount == 1)
        outputs[0] = harray::create(hsys::i18n::to_ustring(text));
    else
        hrtPuts(text.c_str());
}

void builtin(int outputCount, harray::unique_array* outputs, int inputCount,
             const hxArray* const* inputs) {
    requireInputs(inputCount, 1, -1);
    const std::string name = nameOf(inputs[0]);
    Hfunction_handle* function = findFunction(hos::internal::findInterned(name.c_str()));
    if (!function) fail(keys::UndefinedFunction, name);
    std::vector<hxArray*> results(static_cast<std::size_t>(std::max(outputCount, 1)));
    function->call(outputCount, results.data(), inputCount - 1, inputs + 1);
    for (std::size_t i = 0; i < results.size(); ++i)
        outputs[i].reset(results[i]);
}

// The visible methods that a program may call: their names, or their signatures.
std::vector<std::string> methodList(LiveClass& owner, bool full) {
    std::vector<std::string> lines;
    std::unordered_set<std::string> known;
    for (hos::HOSMethodInfo* method : owner.allMethods()) {
        if (!method->isVisible() || method->getMemberAccess() != 0) continue;
        std::string line = full ? signatureText(*method) : method->getName();
        if (known.insert(line).second) lines.push_back(std::move(line));
    }
    return lines;
}

auto& classDisplay() {
    static std::function<std::string(const hxArray*)> display;
    return display;
}

bool isLiveObject(const hxArray* array) {
    const hos::HOSInterfacePtr object = hoGetArrayElement(array, 0);
    return object && !object->isDeleted();
}

void methods(int outputCount, harray::unique_array* outputs, int inputCount,
             const hxArray* const* inputs) {
    requireInputs(inputCount, 1, 2);
    if (outputCount > 1) harray::detail::error_maxlhs();
    LiveClass* owner = classOfArray(inputs[0]);
    if (!owner) owner = findLiveClass(hos::internal::findInterned(nameOf(inputs[0]).c_str()));
    if (!owner)
        fail(keys::NotAnObject, std::string("methods"), std::string(hxGetClassName(inputs[0])));
    const bool full = inputCount == 2;
    if (full && nameOf(inputs[1]) != "-full")
        fail(keys::UnknownOption, std::string("methods"), summaryText(inputs[1]),
             std::string("'-full'"));
    if (outputCount == 0 && !full && classDisplay() && isLiveObject(inputs[0])) {
        hrtPuts(classDisplay()(inputs[0]).c_str());
        return;
    }
    const std::vector<std::string> lines = methodList(*owner, full);
    if (outputCount == 0) {
        hrtPrintf("\nMethods for class %s:\n\n", owner->classId().c_str());
        for (const std::string& line : lines)
            hrtPrintf("%s\n", line.c_str());
        hrtPuts("\n");
        return;
    }
    outputs[0].reset(hxCreateCellMatrix(lines.size(), 1));
    for (std::size_t i = 0; i < lines.size(); ++i)
        hxSetCell(outputs[0].get(), i, hxCreateString(lines[i].c_str()));
}

} // namespace

void setClassDisplay(std::function<std::string(const hxArray* object)> display) {
    classDisplay() = std::move(display);
}

void defineBuiltinFunctions() {
    defineFunction("disp", disp);
    defineFunction("builtin", builtin);
    defineFunction("methods", methods);
}

} // namespace velmar
