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

Value onlyOne(Values values) {
    if (values.size() == 1) return std::move(values.front());
    if (values.empty()) raise("novalue", "The expression gives no value.");
    raise("manyvalues",
          "One value is needed here, and the list gives " + std::to_string(values.size()) + ".");
}

} // namespace

Value Evaluator::evaluate(const Expression& expression) {
    const Recursion recursion(1);
    return std::visit(
        Overloaded{
            [](const NumberLiteral& node) { return number(node.value); },
            [](const TextLiteral& node) {
                return node.isString ? stringText(node.text) : charText(node.text);
            },
            [&](const Name& node) {
                auto variable = variables_.find(node.name);
                return variable != variables_.end() ? variable->second
                                                    : onlyOne(callName(node.name, nullptr, 1));
            },
            [](const Colon&) { return charText(u":"); },
            [&](const End&) { return evaluateEnd(); },
            [&](const Unary& node) {
                Value operand = evaluate(*node.operand);
                return applyUnary(node.operation, operand.get());
            },
            [&](const Binary& node) {
                Value left = evaluate(*node.left), right = evaluate(*node.right);
                return applyBinary(node.operation, left.get(), right.get());
            },
            [&](const ShortCircuit& node) { return logical(evaluateShortCircuit(node)); },
            [&](const Range& node) {
                Value first = evaluate(*node.first), last = evaluate(*node.last);
                Value step = node.step ? evaluate(*node.step) : Value();
                return makeRange(first.get(), node.step ? step.get() : nullptr, last.get());
            },
            [&](const Matrix& node) { return evaluateMatrix(node); },
            [&](const Chain& node) { return onlyOne(evaluateChain(node, 1)); },
            [&](const AnonymousFunction& node) { return evaluateFunction(node); },
            [](const FunctionReference& node) { return makeNamedHandle(node.name); },
        },
        expression.node);
}

Values Evaluator::evaluateAll(const Expression& expression, int outputCount) {
    // Only calls and lists give another number of values than one.
    if (const auto* chain = std::get_if<Chain>(&expression.node)) {
        const Recursion recursion(1);
        return evaluateChain(*chain, outputCount);
    }
    const auto* name = std::get_if<Name>(&expression.node);
    if (name && !variables_.contains(name->name)) return callName(name->name, nullptr, outputCount);
    Values values;
    values.push_back(evaluate(expression));
    return values;
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
