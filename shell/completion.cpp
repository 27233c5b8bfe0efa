// What a word at the prompt can become.
#include "shell/completion.h"

#include "host/embedding.h"
#include "host/object_array.h"
#include "shell/class_tables.h"
#include "shell/functions.h"
#include "shell/live_members.h"
#include "shell/parser.h"

#include <algorithm>
#include <regex>
#include <set>
#include <sstream>

namespace velsh {

namespace {

Value memberOf(const Value& value, const std::string& name) {
    if (hxGetClassID(value.get()) == hxSTRUCT_CLASS && countOf(value.get()) == 1) {
        const hxArray* field = hxGetField(value.get(), 0, name.c_str());
        return field ? copyOf(field) : Value();
    }
    if (!isObject(value.get()) || countOf(value.get()) != 1 ||
        !velmar::hasProperty(value.get(), name))
        return Value();
    return Value(hxGetPropertyShared(value.get(), 0, name.c_str()));
}

using Names = std::set<std::string>;

hos::HOSClass* liveClassOf(const hxArray* array) {
    return isObject(array) ? classOf(array) : nullptr;
}

Names propertyNames(const hxArray* array) {
    Names names;
    hos::HOSClass* const objectClass = liveClassOf(array);
    if (!objectClass) return names;
    for (const auto* property : properties(*objectClass))
        names.insert(property->getName());
    hos::HOSIterator added;
    for (hoGetArrayElement(array, 0)->getDynamicProperties(&added); added.hasMoreElements();)
        if (const auto* property = hos::hosiToProp(added.nextElement()))
            names.insert(property->getName());
    return names;
}

Names methodNames(const hxArray* array) {
    Names names;
    if (hos::HOSClass* const objectClass = liveClassOf(array))
        for (const auto* method : callableMethods(*objectClass))
            names.insert(method->getName());
    return names;
}

Names eventNames(const hxArray* array) {
    Names names;
    if (hos::HOSClass* const objectClass = liveClassOf(array))
        for (const auto* event : events(*objectClass))
            names.insert(event->getName());
    return names;
}

Names memberNames(const hxArray* array) {
    Names names;
    if (hxGetClassID(array) == hxSTRUCT_CLASS)
        for (const std::string& name : get_struct_field_names(array))
            names.insert(name);
    names.merge(methodNames(array));
    names.merge(propertyNames(array));
    return names;
}

Names constantNames(const hxArray* array, const std::string& property) {
    Names names;
    if (hos::HOSClass* const objectClass = liveClassOf(array))
        for (const auto* candidate : properties(*objectClass))
            if (property == candidate->getName())
                for (const Constant& constant : constantsOf(typeOf(*candidate).getID()))
                    names.insert(constant.name);
    return names;
}

Names plainNames(const Variables& variables) {
    Names names(keywords().begin(), keywords().end());
    for (const std::string& name : functionNames())
        names.insert(name);
    for (const auto& [name, value] : variables) {
        names.insert(name);
        if (liveClassOf(value.get()))
            for (const std::string& method : MethodsOfObject(value.get()).builtIn)
                names.insert(method);
    }
    return names;
}

// What the path "a.b.c" names; an empty value for what isn't there.
Value valueOf(const Variables& variables, const std::string& path) {
    std::istringstream parts(path);
    std::string name;
    std::getline(parts, name, '.');
    const auto variable = variables.find(name);
    if (variable == variables.end()) return Value();
    Value value = variable->second;
    while (std::getline(parts, name, '.'))
        value = memberOf(value, name);
    return value;
}

// What a quote that has just been opened will hold.
Names namesInQuotes(const Variables& variables, const std::string& before) {
    const std::string path = R"(([A-Za-z_][\w.]*))";
    const std::string quote = R"(\s*['"]$)";
    static const std::regex assignment(path + R"(\.(\w+)\s*=)" + quote);
    static const std::regex setting(R"(\bset\(\s*)" + path + R"(\s*,\s*['"](\w+)['"]\s*,)" + quote);
    static const std::regex naming(R"((\w+)\(\s*)" + path + R"(\s*,)" + quote);
    std::smatch found;
    if (std::regex_search(before, found, assignment) || std::regex_search(before, found, setting))
        return constantNames(valueOf(variables, found[1]).get(), found[2]);
    if (!std::regex_search(before, found, naming)) return {};
    const std::string function = found[1];
    const Value object = valueOf(variables, found[2]);
    if (function == "invoke") return methodNames(object.get());
    if (function == "addlistener") return eventNames(object.get());
    const bool namesProperty = function == "get" || function == "set" || function == "isprop" ||
                               function == "deleteproperty";
    return namesProperty ? propertyNames(object.get()) : Names();
}

Names candidates(const Variables& variables, const std::string& before, const std::string& path) {
    if (!path.empty()) return memberNames(valueOf(variables, path).get());
    const bool isQuoted = !before.empty() && (before.back() == '\'' || before.back() == '"');
    Names quoted = isQuoted ? namesInQuotes(variables, before) : Names();
    return quoted.empty() ? plainNames(variables) : quoted;
}

} // namespace

std::vector<std::string> complete(const Variables& variables, const std::string& before,
                                  const std::string& word) {
    const std::size_t dot = word.rfind('.');
    const std::string path = dot == std::string::npos ? "" : word.substr(0, dot);
    const std::string kept = dot == std::string::npos ? "" : word.substr(0, dot + 1);
    std::vector<std::string> found;
    try {
        const velmar::QuietWarnings quiet;
        for (const std::string& name : candidates(variables, before, path))
            if ((kept + name).starts_with(word)) found.push_back(kept + name);
    } catch (...) {
        found.clear(); // what a server answers to a half-written line is no error of the user's
    }
    return found;
}

} // namespace velsh
