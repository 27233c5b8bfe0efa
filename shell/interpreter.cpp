// Running the statements of a program.
#include "shell/interpreter.h"

#include "host/embedding.h"
#include "host/output.h"
#include "shell/describe.h"
#include "shell/errors.h"
#include "shell/live_members.h"
#include "shell/subscripts.h"

#include <boost/algorithm/string/trim.hpp>

#include <exception>

namespace velsh {

void print(const std::string& text) { hrtPuts(text.c_str()); }

void show(const std::string& name, const hxArray* value) {
    const std::string text =
        boost::trim_right_copy_if(velmar::displayText(value), [](char c) { return c == '\n'; });
    if (text.empty())
        print(name + " = ''\n"); // text without characters
    else if (text.find('\n') == std::string::npos && hxGetClassID(value) != hxSTRUCT_CLASS)
        print(name + " = " + boost::trim_left_copy(text) + "\n");
    else
        print(name + " =\n" + text + "\n");
}

namespace {

// An object that is named alone: with what it has, not only what it is.
void showObject(const std::string& name, const hxArray* object) {
    show(name, object);
    if (countOf(object) != 1) return;
    print(describeObject(object) + "\nmethods(" + name + ") shows how they are called.\n");
}

} // namespace

void Interpreter::run(const Block& program) {
    // At the outermost level there is no loop to leave.
    for (const Statement& statement : program) {
        numbers_.putBack(); // as a server may have left them otherwise
        runStatement(statement);
        velmar::flushOutput();
    }
}

Interpreter::Flow Interpreter::runBlock(const Block& block) {
    for (const Statement& statement : block) {
        const Flow flow = runStatement(statement);
        if (flow != Flow::Next) return flow;
    }
    return Flow::Next;
}

Interpreter::Flow Interpreter::runStatement(const Statement& statement) {
    position_ = statement.position;
    return std::visit([&](const auto& node) { return runNode(node); }, statement.node);
}

Interpreter::Flow Interpreter::runNode(const Evaluate& node) {
    const auto* name = std::get_if<Name>(&node.value->node);
    const bool isVariable = name && variables_.count(name->name);
    for (Value& value : evaluator_.evaluateAll(*node.value, 0)) {
        if (node.show && isVariable && isObject(value.get()) && classOf(value.get()))
            showObject(name->name, value.get());
        else if (node.show)
            show(isVariable ? name->name : "ans", value.get());
        if (!isVariable) variables_.insert_or_assign("ans", std::move(value));
    }
    return Flow::Next;
}

namespace {

const std::string& nameOf(const Expression& target) {
    const Expression* base = &target;
    if (const auto* chain = std::get_if<Chain>(&target.node)) base = chain->base.get();
    return std::get<Name>(base->node).name;
}

} // namespace

Interpreter::Flow Interpreter::runNode(const Assign& node) {
    const std::size_t wanted = node.targets.size();
    Values values;
    if (wanted == 1)
        values.push_back(evaluator_.evaluate(*node.value));
    else
        values = evaluator_.evaluateAll(*node.value, static_cast<int>(wanted));
    if (values.size() < wanted)
        raise("maxlhs", std::to_string(wanted) + " values are assigned, and the right side gives " +
                            std::to_string(values.size()) + ".");
    for (std::size_t i = 0; i < wanted; ++i) {
        if (!node.targets[i]) continue;
        const Expression& target = *node.targets[i];
        evaluator_.assign(target, std::move(values[i]));
        if (node.show) show(nameOf(target), variables_.at(nameOf(target)).get());
    }
    return Flow::Next;
}

bool Interpreter::test(const Expression& condition) {
    Value value = evaluator_.evaluate(condition);
    return isTrue(value.get());
}

Interpreter::Flow Interpreter::runNode(const If& node) {
    for (const Branch& branch : node.branches) {
        position_ = branch.position;
        if (!branch.condition || test(*branch.condition)) return runBlock(branch.body);
    }
    return Flow::Next;
}

Interpreter::Flow Interpreter::runNode(const While& node) {
    const Position start = position_;
    while (test(*node.condition)) {
        if (runBlock(node.body) == Flow::Break) break;
        position_ = start;
    }
    return Flow::Next;
}

namespace {

// Column `i`, from 0; of a row its element.
Value columnOf(const hxArray* array, std::size_t i) {
    const Subscript column{false, number(static_cast<double>(i + 1))};
    return index(array,
                 hxGetM(array) == 1 ? Subscripts{column} : Subscripts{{true, Value()}, column});
}

} // namespace

Interpreter::Flow Interpreter::runNode(const For& node) {
    const Position start = position_;
    const Value range = evaluator_.evaluate(*node.range);
    const std::size_t columns = hxGetM(range.get()) == 0 ? 0 : hxGetN(range.get());
    const double* const numbers = hxGetM(range.get()) == 1 ? doublesOf(range.get()) : nullptr;
    for (std::size_t i = 0; i < columns; ++i) {
        position_ = start;
        variables_.insert_or_assign(node.variable,
                                    numbers ? number(numbers[i]) : columnOf(range.get(), i));
        if (runBlock(node.body) == Flow::Break) break;
    }
    return Flow::Next;
}

Interpreter::Flow Interpreter::runNode(const Try& node) {
    std::exception_ptr error;
    try {
        return runBlock(node.body);
    } catch (...) {
        error = std::current_exception();
    }
    if (!node.variable.empty())
        variables_.insert_or_assign(node.variable, errorStruct(velmar::describeError(error)));
    error = nullptr;
    return runBlock(node.handler);
}

} // namespace velsh
