// Evaluating expressions but chains.
#include "host/embedding.h"
#include "shell/concatenate.h"
#include "shell/evaluator.h"
#include "shell/function_handles.h"
#include "shell/recursion.h"

namespace velsh {

namespace {

template <class... Cases>
struct Overloaded : Cases... {
    using Cases::operator()...;
};
template <class... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

Values one(Value value) {
    Values values;
    values.push_back(std::move(value));
    return values;
}

} // namespace

Value Evaluator::evaluate(const Expression& expression) {
    Values values = evaluateAll(expression, 1);
    if (values.empty()) raise("novalue", "The expression gives no value.");
    if (values.size() > 1)
        raise("manyvalues", "One value is needed here, and the list gives " +
                                std::to_string(values.size()) + ".");
    return std::move(values.front());
}

Values Evaluator::evaluateAll(const Expression& expression, int outputCount) {
    const Recursion recursion(1);
    return std::visit(
        Overloaded{
            [&](const NumberLiteral& node) { return one(number(node.value)); },
            [&](const TextLiteral& node) {
                return one(node.isString ? stringText(node.text) : charText(node.text));
            },
            [&](const Name& node) {
                auto variable = variables_.find(node.name);
                return variable != variables_.end() ? one(variable->second)
                                                    : callName(node.name, nullptr, outputCount);
            },
            [&](const Colon&) { return one(charText(u":")); },
            [&](const End&) { return one(evaluateEnd()); },
            [&](const Unary& node) {
                Value operand = evaluate(*node.operand);
                return one(applyUnary(node.operation, operand.get()));
            },
            [&](const Binary& node) {
                Value left = evaluate(*node.left), right = evaluate(*node.right);
                return one(applyBinary(node.operation, left.get(), right.get()));
            },
            [&](const ShortCircuit& node) { return one(logical(evaluateShortCircuit(node))); },
            [&](const Range& node) {
                Value first = evaluate(*node.first), last = evaluate(*node.last);
                Value step = node.step ? evaluate(*node.step) : Value();
                return one(makeRange(first.get(), node.step ? step.get() : nullptr, last.get()));
            },
            [&](const Matrix& node) { return one(evaluateMatrix(node)); },
            [&](const Chain& node) { return evaluateChain(node, outputCount); },
            [&](const AnonymousFunction& node) { return one(evaluateFunction(node)); },
            [&](const FunctionReference& node) { return one(makeNamedHandle(node.name)); },
        },
        expression.node);
}

bool Evaluator::evaluateShortCircuit(const ShortCircuit& node) {
    auto test = [&](const Expression& side) {
        Value value = evaluate(side);
        if (countOf(value.get()) != 1)
            raiseWrongType("'&&' and '||' need a scalar on both sides", value.get());
        return isTrue(value.get());
    };
    const bool left = test(*node.left);
    return left == node.isAnd ? test(*node.right) : left;
}

Value Evaluator::evaluateMatrix(const Matrix& matrix) {
    std::vector<Values> rows;
    for (const auto& row : matrix.rows) {
        Values values;
        for (const ExpressionPtr& element : row)
            for (Value& value : evaluateAll(*element, 1))
                values.push_back(std::move(value));
        rows.push_back(std::move(values));
    }
    return matrix.isCell ? makeCell(std::move(rows)) : concatenate(rows);
}

Value Evaluator::evaluateEnd() const {
    if (ends_.empty()) raise("badsubscript", "'end' has a value only where an array is indexed.");
    const EndContext& context = ends_.back();
    return number(endOf(context.array, context.position, context.count));
}

Value Evaluator::evaluateFunction(const AnonymousFunction& function) {
    Variables captured;
    for (const std::string& name : function.names) {
        auto variable = variables_.find(name);
        if (variable != variables_.end()) captured.insert(*variable);
    }
    return makeAnonymousHandle(function, std::move(captured));
}

} // namespace velsh
