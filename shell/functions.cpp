// The functions of the language as functions of the host.
#include "shell/functions.h"

#include "host/embedding.h"
#include "shell/describe.h"

#include <algorithm>

namespace velsh {

namespace {

std::vector<std::span<const FunctionRow>> allFunctions() {
    return {arrayFunctions(), classFunctions(), textFunctions(), programFunctions()};
}

velmar::Function adapt(const FunctionRow& row) {
    return [&row](int outputCount, harray::unique_array* outputs, int inputCount,
                  const hxArray* const* inputs) {
        const Call call{outputCount, {inputs, static_cast<std::size_t>(inputCount)}};
        const std::string name = row.name;
        if (call.count() < row.minInputs) raise("minrhs", "\"" + name + "\" needs more inputs.");
        if (call.count() > row.maxInputs) raise("maxrhs", "\"" + name + "\" takes fewer inputs.");
        Values values = row.run(call);
        if (values.size() < static_cast<std::size_t>(outputCount))
            raise("maxlhs", "\"" + name + "\" gives fewer outputs than are asked for.");
        const auto room = static_cast<std::size_t>(std::max(outputCount, 1));
        for (std::size_t i = 0; i < std::min(values.size(), room); ++i)
            outputs[i] = values[i].take();
    };
}

} // namespace

void defineFunctions() {
    static const bool defined = [] {
        for (auto rows : allFunctions())
            for (const FunctionRow& row : rows)
                velmar::defineFunction(row.name, adapt(row));
        velmar::setClassDisplay(describeClass);
        return true;
    }();
    static_cast<void>(defined);
}

std::vector<std::string> functionNames() {
    std::vector<std::string> names = {"actxserver", "actxGetRunningServer", "disp", "methods"};
    for (auto rows : allFunctions())
        for (const FunctionRow& row : rows)
            names.emplace_back(row.name);
    return names;
}

} // namespace velsh
