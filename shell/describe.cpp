// What the class of a server looks like, in tables.
#include "shell/describe.h"

#include "host/embedding.h"
#include "shell/live_members.h"

#include <algorithm>
#include <set>

namespace velsh {

namespace {

using Row = std::vector<std::string>;

// A heading and its rows, columns aligned and two blanks apart; nothing without rows.
std::string table(const std::string& heading, const std::vector<Row>& rows) {
    if (rows.empty()) return {};
    std::vector<std::size_t> widths;
    for (const Row& row : rows) {
        widths.resize(std::max(widths.size(), row.size()));
        for (std::size_t i = 0; i < row.size(); ++i)
            widths[i] = std::max(widths[i], row[i].size());
    }
    std::string text = "\n" + heading + "\n";
    for (const Row& row : rows) {
        std::string line = " ";
        for (std::size_t i = 0; i < row.size(); ++i)
            line += " " + row[i] + std::string(widths[i] - row[i].size() + 1, ' ');
        text += line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
    }
    return text;
}

// The fields of the struct that a built-in method gives, by name.
class Listing {
  public:
    Listing(const hxArray* object, const char* method) {
        if (!velmar::hasMethod(object, method)) return;
        velmar::Arrays outputs = velmar::callMember(object, method, 1, {});
        if (!outputs.empty()) list_ = Value(std::move(outputs.front()));
    }
    bool has(const std::string& name) const { return field(name) != nullptr; }
    std::string text(const std::string& name) const {
        const hxArray* value = field(name);
        return value && isText(value) ? narrowTextOf(value, "A description") : std::string();
    }

  private:
    const hxArray* field(const std::string& name) const {
        const hxArray* list = list_.get();
        if (hxGetClassID(list) != hxSTRUCT_CLASS || countOf(list) == 0) return nullptr;
        return hxGetField(list, 0, name.c_str());
    }
    Value list_;
};

hos::id firstInput(const hos::HOSMethodInfo& method) {
    hos::Enumeration<hos::id> inputs;
    method.getSignature()->getInputs(&inputs);
    return inputs.hasMoreElements() ? inputs.nextElement() : hos::id();
}

// The signature without the object, which stands before the dot in a program.
std::string signatureWithoutObject(const hos::HOSMethodInfo& method) {
    std::string text = velmar::signatureText(method);
    const std::string object = firstInput(method).str();
    const std::size_t at = text.find("(" + object);
    if (at == std::string::npos || object.empty()) return text;
    text.erase(at + 1, object.size());
    const std::size_t separator = text.find(", ", at);
    if (separator == at + 1 || (separator == at + 2 && text[at + 1] == '['))
        text.erase(separator, 2);
    return text;
}

std::string accessText(const hos::HOSPropInfo& property) {
    const bool reads = property.getGetAccess() == 0, writes = property.getSetAccess() == 0;
    return reads && writes ? "read-write" : reads ? "read" : writes ? "write" : "none";
}

// The enumerations among the types that members name.
class Enumerations {
  public:
    void add(hos::id type) {
        auto* found = hos::HOSDataTypePtrHelper::getObject(hos::HOSTypeRepository::getType(type));
        auto* enumeration = dynamic_cast<hos::TypedEnumStringType*>(found);
        if (enumeration && seen_.insert(type.str()).second) addRows(*enumeration);
    }
    void addAll(const hos::HOSMethodInfo& method) {
        hos::Enumeration<hos::id> types;
        for (method.getSignature()->getInputs(&types); types.hasMoreElements();)
            add(types.nextElement());
        for (method.getSignature()->getOutputs(&types); types.hasMoreElements();)
            add(types.nextElement());
    }
    const std::vector<Row>& rows() const { return rows_; }

  private:
    void addRows(const hos::TypedEnumStringType& enumeration) {
        std::string title = enumeration.getName();
        hos::Enumeration<hos::HOSValue> values = enumeration.getPossibleValues();
        while (values.hasMoreElements()) {
            const hos::HOSValue value = values.nextElement();
            const char* name = enumeration.valueName(value);
            rows_.push_back({title, name ? name : "", std::to_string(value.integer())});
            title.clear();
        }
    }
    std::set<std::string> seen_;
    std::vector<Row> rows_;
};

std::string lineOfNames(const std::string& heading, const std::vector<std::string>& names) {
    std::string text = "\n" + heading + "\n", line;
    for (const std::string& name : names) {
        if (line.size() + name.size() > 76) {
            text += " " + line + "\n";
            line.clear();
        }
        line += " " + name;
    }
    return text + " " + line + "\n";
}

} // namespace

std::string describeServer(const std::string& progId) {
    const Value name = charText(progId);
    velmar::Arrays outputs = velmar::call("actxserver", 1, {name.get()});
    const Value object(std::move(outputs.at(0)));
    hos::HOSClass* const objectClass = classOf(object.get());
    if (!objectClass) raise("wrongtype", "The server gave no object.");

    const Listing methodsOfServer(object.get(), "invoke"), eventsOfServer(object.get(), "events");
    Enumerations enumerations;
    std::vector<Row> methodRows, propertyRows, eventRows;
    std::vector<std::string> builtIns;
    for (const hos::HOSMethodInfo* method : visibleMethods(*objectClass)) {
        if (methodsOfServer.has(method->getName())) {
            methodRows.push_back({signatureWithoutObject(*method), method->getDescription()});
            enumerations.addAll(*method);
        } else if (std::find(builtIns.begin(), builtIns.end(), method->getName()) == builtIns.end())
            builtIns.emplace_back(method->getName());
    }
    for (const hos::HOSPropInfo* property : properties(*objectClass)) {
        hos::HOSDataTypePtr type;
        property->getDataType(&type);
        propertyRows.push_back({property->getName(), type.getID().str(), accessText(*property),
                                property->getDescription()});
        enumerations.add(type.getID());
    }
    for (const hos::HOSEventInfo* event : events(*objectClass)) {
        std::string signature = eventsOfServer.text(event->getName());
        if (signature.starts_with("void ")) signature.erase(0, 5);
        eventRows.push_back(
            {signature.empty() ? event->getName() : signature, event->getDescription()});
    }
    std::sort(builtIns.begin(), builtIns.end());
    return std::string(hxGetClassName(object.get())) + "\n" + table("Methods", methodRows) +
           table("Properties", propertyRows) + table("Events", eventRows) +
           table("Enumerations", enumerations.rows()) + lineOfNames("Built-in methods", builtIns);
}

} // namespace velsh
