// The members of a live class in tables that a person can read.
#pragma once

#include "host/class.h"
#include "shell/value.h"

#include <string>
#include <vector>

namespace velsh {

using Row = std::vector<std::string>;

// A heading and its rows, columns aligned and two blanks apart; nothing without rows.
std::string table(const std::string& heading, const std::vector<Row>& rows);

// A heading and names side by side, in lines that fit a terminal; nothing without names.
std::string columnsOfNames(const std::string& heading, const std::vector<std::string>& names);

// The methods of an object's class, each in its order. Those that are there whatever the server has
// are apart, by name, sorted.
struct MethodsOfObject {
    explicit MethodsOfObject(const hxArray* object);

    std::vector<hos::HOSMethodInfo*> declared;
    std::vector<std::string> builtIn;
};

// "read-write", "read", "write".
std::string accessText(const hos::HOSPropInfo& property);
hos::HOSDataTypePtr typeOf(const hos::HOSPropInfo& property);

// The constants of a type, in order; empty for what is no enumeration.
struct Constant {
    std::string name;
    std::int64_t value;
};
std::vector<Constant> constantsOf(hos::id type);

} // namespace velsh
