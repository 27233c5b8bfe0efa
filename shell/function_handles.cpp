// Function handles.
#include "shell/function_handles.h"

#include "host/embedding.h"
#include "shell/recursion.h"

#include <algorithm>
#include <memory>

namespace velsh {

namespace {

// Several listener calls or handles may nest; each takes more of the stack than an expression.
constexpr int callWeight = 8;

Values copiesOf(int count, const hxArray* const* inputs) {
    Values values;
    for (int i = 0; i < count; ++i)
        values.push_back(copyOf(inputs[i]));
    return values;
}

void giveOutputs(Values values, int outputCount, harray::unique_array* outputs) {
    if (values.size() < static_cast<std::size_t>(outputCount))
        raise("maxlhs", "The function gives " + std::to_string(values.size()) + " of the " +
                            std::to_string(outputCount) + " outputs that are asked for.");
    const std::size_t room = static_cast<std::size_t>(std::max(outputCount, 1));
    for (std::size_t i = 0; i < std::min(values.size(), room); ++i)
        outputs[i] = values[i].take();
}

struct Closure {
    std::vector<std::string> parameters;
    ExpressionPtr body;
    Variables captured;

    Values call(int outputCount, Values inputs) const {
        const Recursion recursion(callWeight);
        if (inputs.size() > parameters.size())
            raise("maxrhs", "The function takes " + std::to_string(parameters.size()) +
                                " inputs, not " + std::to_string(inputs.size()) + ".");
        Variables variables = captured;
        for (const std::string& name : parameters)
            variables.erase(name);
        for (std::size_t i = 0; i < inputs.size(); ++i)
            if (parameters[i] != "~")
                variables.insert_or_assign(parameters[i], std::move(inputs[i]));
        return Evaluator(variables).evaluateAll(*body, outputCount);
    }
};

} // namespace

Value makeNamedHandle(const std::string& name) {
    return Value(
        velmar::createFunctionHandle(name, [name](int outputCount, harray::unique_array* outputs,
                                                  int inputCount, const hxArray* const* inputs) {
            const Recursion recursion(callWeight);
            giveOutputs(callFunction(name, outputCount, copiesOf(inputCount, inputs)), outputCount,
                        outputs);
        }));
}

Value makeAnonymousHandle(const AnonymousFunction& function, Variables captured) {
    auto closure = std::make_shared<const Closure>(
        Closure{function.parameters, function.body, std::move(captured)});
    return Value(velmar::createFunctionHandle(
        function.text, [closure](int outputCount, harray::unique_array* outputs, int inputCount,
                                 const hxArray* const* inputs) {
            giveOutputs(closure->call(outputCount, copiesOf(inputCount, inputs)), outputCount,
                        outputs);
        }));
}

Values callHandle(const hxArray* handle, int outputCount, const Values& inputs) {
    const velmar::Function* function = velmar::functionOfHandle(handle);
    if (!function) raiseWrongType("Only a function handle can be called", handle);
    std::vector<const hxArray*> arrays;
    for (const Value& input : inputs)
        arrays.push_back(input.get());
    velmar::Arrays outputs(static_cast<std::size_t>(std::max(outputCount, 1)));
    (*function)(outputCount, outputs.data(), static_cast<int>(arrays.size()), arrays.data());
    Values values;
    for (harray::unique_array& output : outputs) {
        if (!output) break;
        values.emplace_back(std::move(output));
    }
    return values;
}

} // namespace velsh
