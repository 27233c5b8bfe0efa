// Rows in columns, and what stands in them.
#include "shell/class_tables.h"

#include "shell/live_members.h"

#include <algorithm>
#include <set>

namespace velsh {
namespace {

constexpr std::size_t lineWidth = 78;

// Characters: what follows the first byte of a UTF-8 sequence takes no room.
std::size_t widthOf(const std::string& text) {
    return static_cast<std::size_t>(
        std::ranges::count_if(text, [](char c) { return (c & 0xC0) != 0x80; }));
}

std::string padded(const std::string& text, std::size_t width) {
    return text + std::string(width - std::min(width, widthOf(text)), ' ');
}

std::string withoutBlanksBehind(const std::string& line) {
    return line.substr(0, line.find_last_not_of(' ') + 1);
}

} // namespace

std::string table(const std::string& heading, const std::vector<Row>& rows) {
    if (rows.empty()) return {};
    std::vector<std::size_t> widths;
    for (const Row& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], widthOf(row[i]));
    }
    std::string text = "\n" + heading + "\n";
    for (const Row& row : rows) {
        std::string line = " ";
        for (std::size_t i = 0; i < row.size(); ++i)
            line += " " + padded(row[i], widths[i] + 1);
        text += withoutBlanksBehind(line) + "\n";
    }
    return text;
}

std::string columnsOfNames(const std::string& heading, const std::vector<std::string>& names) {
    if (names.empty()) return {};
    std::size_t width = 1;
    for (const std::string& name : names)
        width = std::max(width, widthOf(name) + 2);
    const std::size_t columns = std::max<std::size_t>(lineWidth / width, 1);
    const std::size_t rows = (names.size() + columns - 1) / columns;
    std::string text = "\n" + heading + "\n";
    for (std::size_t row = 0; row < rows; ++row) {
        std::string line = "  ";
        for (std::size_t i = row; i < names.size(); i += rows)
            line += padded(names[i], width);
        text += withoutBlanksBehind(line) + "\n";
    }
    return text;
}

MethodsOfObject::MethodsOfObject(const hxArray* object) {
    hos::HOSClass* const objectClass = classOf(object);
    if (!objectClass) return;
    std::set<std::string> fixed;
    for (hos::HOSMethodInfo* method : callableMethods(*objectClass)) {
        if (method->getPrecedence() == hos::Precedence::Usual)
            declared.push_back(method);
        else
            fixed.insert(method->getName());
    }
    builtIn.assign(fixed.begin(), fixed.end());
}

std::string accessText(const hos::HOSPropInfo& property) {
    const bool reads = property.getGetAccess() == 0;
    const bool writes = property.getSetAccess() == 0;
    return reads && writes ? "read-write" : reads ? "read" : writes ? "write" : "none";
}

hos::HOSDataTypePtr typeOf(const hos::HOSPropInfo& property) {
    hos::HOSDataTypePtr type;
    property.getDataType(&type);
    return type;
}

std::vector<Constant> constantsOf(hos::id type) {
    auto* found = hos::HOSDataTypePtrHelper::getObject(hos::HOSTypeRepository::getType(type));
    const auto* enumeration = dynamic_cast<hos::TypedEnumStringType*>(found);
    std::vector<Constant> constants;
    if (!enumeration) return constants;
    for (auto values = enumeration->getPossibleValues(); values.hasMoreElements();) {
        const hos::HOSValue value = values.nextElement();
        const char* name = enumeration->valueName(value);
        constants.push_back({name ? name : "", value.integer()});
    }
    return constants;
}

} // namespace velsh
