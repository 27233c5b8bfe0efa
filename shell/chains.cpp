// Evaluating chains: names, members, calls and indexing.
#include "host/embedding.h"
#include "shell/evaluator.h"
#include "shell/recursion.h"

#include <algorithm>

namespace velsh {

namespace {

using Kind = Accessor::Kind;

Values toValues(velmar::Arrays arrays, int outputCount) {
    arrays.resize(std::min(arrays.size(), static_cast<std::size_t>(std::max(outputCount, 1))));
    while (!arrays.empty() && !arrays.back())
        arrays.pop_back();
    Values values;
    for (harray::unique_array& array : arrays)
        values.emplace_back(std::move(array));
    return values;
}

boost::container::small_vector<const hxArray*, 8> arraysOf(const Values& values) {
    boost::container::small_vector<const hxArray*, 8> arrays;
    for (const Value& value : values)
        arrays.push_back(value.get());
    return arrays;
}

Values callMember(const hxArray* object, hos::id name, int outputCount, const Values& inputs) {
    return toValues(velmar::callMember(object, name, outputCount, arraysOf(inputs)), outputCount);
}

Values fieldsOf(const hxArray* array, hos::id name) {
    const int field = hxGetFieldNumber(array, name.c_str());
    if (field < 0) raise("nosuchfield", "The struct has no field \"" + name.str() + "\".");
    Values values;
    for (std::size_t i = 0; i < countOf(array); ++i) {
        const hxArray* value = hxGetFieldByNumber(array, i, field);
        values.push_back(value ? copyOf(value) : Value());
    }
    return values;
}

// The one value, which `current` gives up.
Value takeSingle(Values& current) {
    if (current.size() == 1) return std::move(current.front());
    raise("manyvalues", current.empty() ? "What stands before the next step gives no value."
                                        : "The next step needs one value, and a list is given.");
}

// The name of a class in a package, which takes two steps to write: COM.Sample_Server_1.
std::string classNameIn(const std::string& package, std::span<const Accessor> steps) {
    if (steps.empty() || steps.front().kind != Kind::Field || !velmar::hasPackage(package))
        return {};
    const std::string name = package + "." + steps.front().name.str();
    if (!velmar::hasClass(name))
        raise("UndefinedFunction",
              "There is no class \"" + name + "\" yet: actxserver makes the class of a server.");
    return name;
}

} // namespace

// The array that `end` refers to while subscripts are evaluated.
class Evaluator::ScopedEnd {
  public:
    ScopedEnd(Evaluator& evaluator, const hxArray* array, std::size_t count)
        : ends_(evaluator.ends_) {
        ends_.push_back({array, 0, count});
    }
    ~ScopedEnd() { ends_.pop_back(); }
    void setPosition(std::size_t position) { ends_.back().position = position; }

  private:
    std::vector<EndContext>& ends_;
};

Values callFunction(const std::string& name, int outputCount, const Values& inputs) {
    const auto arrays = arraysOf(inputs);
    const bool hasObject = std::any_of(arrays.begin(), arrays.end(), isObject);
    if (!hasObject && !velmar::hasFunction(name) && !velmar::hasClass(name))
        raise("UndefinedFunction", "\"" + name + "\" is neither a variable nor a function.");
    return toValues(velmar::call(name, outputCount, arrays), outputCount);
}

Values Evaluator::callName(const std::string& name, const Accessor* arguments, int outputCount) {
    return callFunction(name, outputCount, arguments ? evaluateArguments(*arguments) : Values());
}

Values Evaluator::evaluateArguments(const Accessor& step) {
    Values inputs;
    for (const ExpressionPtr& argument : step.arguments)
        for (Value& value : evaluateAll(*argument, 1))
            inputs.push_back(std::move(value));
    return inputs;
}

Subscripts Evaluator::evaluateSubscripts(const Accessor& step, const hxArray* array) {
    ScopedEnd end(*this, array, step.arguments.size());
    Subscripts subscripts;
    for (std::size_t i = 0; i < step.arguments.size(); ++i) {
        end.setPosition(i);
        const Expression& argument = *step.arguments[i];
        if (std::holds_alternative<Colon>(argument.node)) {
            subscripts.push_back({true, Value()});
            continue;
        }
        for (Value& value : evaluateAll(argument, 1))
            subscripts.push_back({false, std::move(value)});
    }
    return subscripts;
}

hos::id Evaluator::fieldName(const Accessor& step) {
    if (step.kind == Kind::Field) return step.name;
    Value name = evaluate(*step.arguments.front());
    return hos::internal::makeInterned(narrowTextOf(name.get(), "The name of a field"));
}

Values Evaluator::evaluateChain(const Chain& chain, int outputCount) {
    std::span<const Accessor> steps = chain.steps;
    Values current;
    const auto* name = std::get_if<Name>(&chain.base->node);
    const auto variable = name ? variables_.find(name->name) : variables_.end();
    if (variable != variables_.end())
        current.push_back(variable->second);
    else if (name) {
        const std::string className = classNameIn(name->name, steps);
        if (!className.empty()) steps = steps.subspan(1);
        const bool hasArguments = !steps.empty() && steps.front().kind == Kind::Paren;
        const std::size_t taken = hasArguments ? 1 : 0;
        current = callName(className.empty() ? name->name : className,
                           hasArguments ? &steps.front() : nullptr,
                           taken == steps.size() ? outputCount : 1);
        steps = steps.subspan(taken);
    } else
        current.push_back(evaluate(*chain.base));
    while (!steps.empty())
        steps = steps.subspan(takeStep(current, steps, outputCount));
    return current;
}

std::size_t Evaluator::takeStep(Values& current, std::span<const Accessor> steps, int outputCount) {
    const Value value = takeSingle(current);
    const hxArray* array = value.get();
    const Accessor& step = steps.front();
    if (step.kind == Kind::Brace)
        current = indexContents(array, evaluateSubscripts(step, array));
    else if (step.kind == Kind::Paren && isFunction(array))
        current = callHandle(array, steps.size() == 1 ? outputCount : 1, evaluateArguments(step));
    else if (step.kind == Kind::Paren) {
        Value part = index(array, evaluateSubscripts(step, array));
        current.clear();
        current.push_back(std::move(part));
    } else
        return takeMember(array, steps, outputCount, current);
    return 1;
}

std::size_t Evaluator::takeMember(const hxArray* array, std::span<const Accessor> steps,
                                  int outputCount, Values& given) {
    const hos::id name = fieldName(steps.front());
    if (hxGetClassID(array) == hxSTRUCT_CLASS) {
        given = fieldsOf(array, name);
        return 1;
    }
    if (!isObject(array))
        raiseWrongType("\"." + name.str() + "\" needs a struct or an object before it", array);
    if (countOf(array) != 1)
        raiseWrongType("\"." + name.str() + "\" is asked of one object at a time", array);
    const bool hasArguments = steps.size() > 1 && steps[1].kind == Kind::Paren;
    // Behind a property parentheses index what it gives.
    const std::size_t taken =
        hasArguments && (velmar::hasMethod(array, name) || !velmar::hasProperty(array, name)) ? 2
                                                                                              : 1;
    const Values inputs = taken == 2 ? evaluateArguments(steps[1]) : Values();
    given = callMember(array, name, taken == steps.size() ? outputCount : 1, inputs);
    return taken;
}

void Evaluator::assign(const Expression& target, Value value) {
    if (const auto* name = std::get_if<Name>(&target.node)) {
        variables_.insert_or_assign(name->name, std::move(value));
        return;
    }
    const Chain& chain = std::get<Chain>(target.node);
    const std::string& name = std::get<Name>(chain.base->node).name;
    auto variable = variables_.find(name);
    if (variable != variables_.end()) {
        assignInto(variable->second, chain.steps, std::move(value));
        return;
    }
    // A variable that fails to be made isn't there.
    Value fresh;
    assignInto(fresh, chain.steps, std::move(value));
    variables_.insert_or_assign(name, std::move(fresh));
}

void Evaluator::assignInto(Value& target, std::span<const Accessor> steps, Value value) {
    const Recursion recursion(1);
    if (steps.empty()) {
        target = std::move(value);
        return;
    }
    const bool isMember =
        steps.front().kind == Kind::Field || steps.front().kind == Kind::DynamicField;
    if (!isMember)
        assignElement(target, steps, std::move(value));
    else if (isObject(target.get()))
        assignMember(target, steps, std::move(value));
    else
        assignField(target, steps, std::move(value));
}

void Evaluator::assignMember(Value& object, std::span<const Accessor> steps, Value value) {
    const hos::id name = fieldName(steps.front());
    if (countOf(object.get()) != 1)
        raiseWrongType("\"." + name.str() + "\" is assigned to on one object at a time",
                       object.get());
    if (steps.size() == 1) {
        velmar::setMember(object.writable(), name, value.get());
        return;
    }
    const bool isMethod = velmar::hasMethod(object.get(), name);
    const std::size_t taken = isMethod && steps[1].kind == Kind::Paren ? 2 : 1;
    if (taken == steps.size())
        raise("notassignable", "\"" + name.str() + "\" is a method of " +
                                   hxGetClassName(object.get()) +
                                   "; what it gives can't be assigned to. set(object, '" +
                                   name.str() + "', ...) writes a property with arguments.");
    const Values inputs = taken == 2 ? evaluateArguments(steps[1]) : Values();
    Values got = callMember(object.get(), name, 1, inputs);
    Value member = takeSingle(got);
    const bool isHandle = isObject(member.get());
    if (isMethod && !isHandle)
        raise("notassignable",
              "A part of what the method \"" + name.str() + "\" gives can't be assigned to.");
    assignInto(member, steps.subspan(taken), std::move(value));
    // An object is changed where it is; any other value goes back as a whole.
    if (!isHandle) velmar::setMember(object.writable(), name, member.get());
}

void Evaluator::assignField(Value& target, std::span<const Accessor> steps, Value value) {
    const hos::id name = fieldName(steps.front());
    const hxArray* array = target.get();
    const bool isStruct = hxGetClassID(array) == hxSTRUCT_CLASS;
    if (!isStruct && countOf(array) != 0)
        raiseWrongType("\"." + name.str() + "\" can be assigned to in a struct or an object",
                       array);
    if (isStruct && countOf(array) > 1)
        raiseWrongType("A field is assigned to in one struct at a time", array);
    Value child;
    if (isStruct && countOf(array) == 1)
        if (const hxArray* old = hxGetField(array, 0, name.c_str())) child = copyOf(old);
    assignInto(child, steps.subspan(1), std::move(value));
    if (!isStruct || countOf(array) == 0) target = Value(hxCreateStructMatrix(1, 1, 0, nullptr));
    hxSetField(target.writable(), 0, name.c_str(), child.take().release());
}

void Evaluator::assignElement(Value& target, std::span<const Accessor> steps, Value value) {
    const Accessor& step = steps.front();
    const Subscripts subscripts = evaluateSubscripts(step, target.get());
    const bool isBrace = step.kind == Kind::Brace;
    if (steps.size() > 1) {
        Value part; // nothing yet where the place is new
        if (contains(target.get(), subscripts)) {
            Values parts = isBrace ? indexContents(target.get(), subscripts)
                                   : Values{index(target.get(), subscripts)};
            if (parts.size() != 1) raise("manyvalues", "One place is assigned to at a time.");
            part = std::move(parts.front());
        }
        assignInto(part, steps.subspan(1), std::move(value));
        value = std::move(part);
    }
    if (isBrace)
        assignContent(target, subscripts, std::move(value));
    else
        assignIndexed(target, subscripts, value);
}

} // namespace velsh
