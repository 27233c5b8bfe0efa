// Evaluating expressions and assigning to what they name.
#pragma once

#include "shell/ast.h"
#include "shell/subscripts.h"
#include "shell/value.h"

#include <map>
#include <span>
#include <string>
#include <vector>

namespace velsh {

using Variables = std::map<std::string, Value>;

class Evaluator {
  public:
    // `variables` stays the caller's and outlives the evaluator.
    explicit Evaluator(Variables& variables) : variables_(variables) {}

    // Exactly one value; raises when there is none or there are several.
    Value evaluate(const Expression& expression);
    // As many values as the expression gives when that many are asked for: none of a call without
    // outputs, several of a list like c{:}.
    Values evaluateAll(const Expression& expression, int outputCount);
    // `target` is a Name or a Chain on one.
    void assign(const Expression& target, Value value);

  private:
    struct EndContext {
        const hxArray* array;
        std::size_t position;
        std::size_t count;
    };
    class ScopedEnd;

    Value evaluateMatrix(const Matrix& matrix);
    Value evaluateEnd() const;
    Value evaluateFunction(const AnonymousFunction& function);
    bool evaluateShortCircuit(const ShortCircuit& node);
    Values evaluateChain(const Chain& chain, int outputCount);
    // Takes a step, or two when a member is called with arguments; gives the number of steps taken.
    std::size_t takeStep(Values& current, std::span<const Accessor> steps, int outputCount);
    std::size_t takeMember(const hxArray* array, std::span<const Accessor> steps, int outputCount,
                           Values& given);
    Values callName(const std::string& name, const Accessor* arguments, int outputCount);
    // For a call: values in order, lists spread.
    Values evaluateArguments(const Accessor& step);
    Subscripts evaluateSubscripts(const Accessor& step, const hxArray* array);
    hos::id fieldName(const Accessor& step);

    void assignInto(Value& target, std::span<const Accessor> steps, Value value);
    void assignMember(Value& object, std::span<const Accessor> steps, Value value);
    void assignField(Value& target, std::span<const Accessor> steps, Value value);
    void assignElement(Value& target, std::span<const Accessor> steps, Value value);

    Variables& variables_;
    std::vector<EndContext> ends_;
};

// Calls a function of the host, or a member of an object among the inputs.
Values callFunction(const std::string& name, int outputCount, const Values& inputs);
// Calls what a function handle stands for.
Values callHandle(const hxArray* handle, int outputCount, const Values& inputs);

} // namespace velsh
