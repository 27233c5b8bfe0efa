// What a word at the prompt can become.
#include "shell/completion.h"

#include "host/embedding.h"
#include "shell/functions.h"
#include "shell/live_members.h"
#include "shell/parser.h"

#include <algorithm>
#include <set>
#include <sstream>

namespace velsh {

namespace {

Value memberOf(const Value& value, const std::string& name) {
    if (hxGetClassID(value.get()) == hxSTRUCT_CLASS && countOf(value.get()) == 1) {
        const hxArray* field = hxGetField(value.get(), 0, name.c_str());
        return field ? copyOf(field) : Value();
    }
    if (!isObject(value.get()) || !velmar::hasProperty(value.get(), name)) return Value();
    velmar::Arrays outputs = velmar::callMember(value.get(), name, 1, {});
    return outputs.empty() ? Value() : Value(std::move(outputs.front()));
}

std::set<std::string> memberNames(const hxArray* array) {
    std::set<std::string> names;
    if (hxGetClassID(array) == hxSTRUCT_CLASS)
        for (const std::string& name : get_struct_field_names(array))
            names.insert(name);
    hos::HOSClass* const objectClass = isObject(array) ? classOf(array) : nullptr;
    if (!objectClass) return names;
    for (const auto* method : visibleMethods(*objectClass))
        names.insert(method->getName());
    for (const auto* property : properties(*objectClass))
        names.insert(property->getName());
    return names;
}

std::set<std::string> plainNames(const Variables& variables) {
    std::set<std::string> names(keywords().begin(), keywords().end());
    for (const std::string& name : functionNames())
        names.insert(name);
    for (const auto& [name, value] : variables)
        names.insert(name);
    return names;
}

// The members of what the path "a.b.c" names.
std::set<std::string> namesBehind(const Variables& variables, const std::string& path) {
    std::istringstream parts(path);
    std::string name;
    std::getline(parts, name, '.');
    const auto variable = variables.find(name);
    if (variable == variables.end()) return {};
    Value value = variable->second;
    while (std::getline(parts, name, '.'))
        value = memberOf(value, name);
    return memberNames(value.get());
}

} // namespace

std::vector<std::string> complete(const Variables& variables, const std::string& word) {
    const std::size_t dot = word.rfind('.');
    const bool isMember = dot != std::string::npos;
    const std::string before = isMember ? word.substr(0, dot + 1) : std::string();
    std::vector<std::string> found;
    try {
        for (const std::string& name :
             isMember ? namesBehind(variables, word.substr(0, dot)) : plainNames(variables))
            if ((before + name).starts_with(word)) found.push_back(before + name);
    } catch (...) {
        found.clear(); // what a server answers to a half-written line is no error of the user's
    }
    return found;
}

} // namespace velsh
