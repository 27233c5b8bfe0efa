// The class of a server, and an object, in tables.
#include "shell/describe.h"

#include "host/embedding.h"
#include "host/object_array.h"
#include "shell/class_tables.h"
#include "shell/live_members.h"

#include <algorithm>
#include <set>

namespace velsh {

namespace {

// The fields of the struct that a built-in method gives, by name.
class Listing {
  public:
    Listing(const hxArray* object, const char* method) {
        if (!velmar::hasMethod(object, method)) return;
        velmar::Arrays outputs = velmar::callMember(object, method, 1, {});
        if (!outputs.empty()) list_ = Value(std::move(outputs.front()));
    }
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
    std::string text = velmar::labelledSignatureText(method);
    const std::string object = firstInput(method).str();
    const std::size_t at = text.find("(" + object);
    if (at == std::string::npos || object.empty()) return text;
    text.erase(at + 1, object.size());
    const std::size_t separator = text.find(", ", at);
    if (separator == at + 1 || (separator == at + 2 && text[at + 1] == '['))
        text.erase(separator, 2);
    return text;
}

// The enumerations among the types that members name.
class Enumerations {
  public:
    void add(hos::id type) {
        if (!seen_.insert(type.str()).second) return;
        std::string title = type.str();
        for (const Constant& constant : constantsOf(type)) {
            rows_.push_back({title, constant.name, std::to_string(constant.value)});
            title.clear();
        }
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
    std::set<std::string> seen_;
    std::vector<Row> rows_;
};

std::vector<Row> eventRows(const hxArray* object, hos::HOSClass& objectClass) {
    const Listing listing(object, "events");
    std::vector<Row> rows;
    for (const hos::HOSEventInfo* event : events(objectClass)) {
        std::string signature = listing.text(event->getName());
        if (signature.starts_with("void ")) signature.erase(0, 5);
        rows.push_back({"EventID " + std::string(event->getDescription()),
                        signature.empty() ? event->getName() : signature});
    }
    return rows;
}

std::string firstLine(const std::string& text) { return text.substr(0, text.find('\n')); }

std::string shortened(const std::string& text) {
    constexpr std::size_t longest = 46;
    if (text.size() <= longest) return text;
    std::size_t end = longest - 3;
    while (end > 0 && (text[end] & 0xC0) == 0x80) // not within a character
        --end;
    return text.substr(0, end) + "...";
}

std::string currentValue(const hxArray* object, const hos::HOSPropInfo& property) {
    if (property.getGetAccess() != 0) return {};
    try {
        // As a property: a method of that name may do anything.
        const Value value(hxGetPropertyShared(object, 0, property.getName()));
        return shortened(velmar::fieldText(value.get()));
    } catch (...) {
        const std::string text = velmar::describeError(std::current_exception()).text;
        return shortened("<" + firstLine(text) + ">");
    }
}

Row propertyRow(const hxArray* object, const hos::HOSPropInfo& property) {
    const std::string access = accessText(property);
    return {property.getName(), currentValue(object, property), typeOf(property).getID().str(),
            access == "read-write" ? "" : access + " only"};
}

std::vector<std::string> namesOf(const std::vector<hos::HOSEventInfo*>& events) {
    std::vector<std::string> names;
    names.reserve(events.size());
    for (const hos::HOSEventInfo* event : events)
        names.emplace_back(event->getName());
    return names;
}

} // namespace

std::string describeServer(const std::string& progId) {
    const Value name = charText(progId);
    velmar::Arrays outputs = velmar::call("actxserver", 1, {name.get()});
    const Value object(std::move(outputs.at(0)));
    if (!classOf(object.get())) raise("wrongtype", "The server gave no object.");
    return describeClass(object.get());
}

std::string describeClass(const hxArray* object) {
    hos::HOSClass& objectClass = *classOf(object);
    const MethodsOfObject methods(object);
    Enumerations enumerations;
    std::vector<Row> methodRows, propertyRows;
    for (const hos::HOSMethodInfo* method : methods.declared) {
        methodRows.push_back({signatureWithoutObject(*method), method->getDescription()});
        enumerations.addAll(*method);
    }
    for (const hos::HOSPropInfo* property : properties(objectClass)) {
        const hos::id type = typeOf(*property).getID();
        propertyRows.push_back(
            {property->getName(), type.str(), accessText(*property), property->getDescription()});
        enumerations.add(type);
    }
    return std::string(hxGetClassName(object)) + "\n" + table("Methods", methodRows) +
           table("Properties", propertyRows) + table("Events", eventRows(object, objectClass)) +
           table("Enumerations", enumerations.rows()) +
           columnsOfNames("Built-in methods", methods.builtIn);
}

std::string describeObject(const hxArray* object) {
    const velmar::QuietWarnings quiet; // a value that can't be had shows as such
    hos::HOSClass& objectClass = *classOf(object);
    std::vector<Row> rows;
    for (const hos::HOSPropInfo* property : properties(objectClass))
        rows.push_back(propertyRow(object, *property));
    hos::HOSIterator added;
    for (hoGetArrayElement(object, 0)->getDynamicProperties(&added); added.hasMoreElements();)
        if (const auto* property = hos::hosiToProp(added.nextElement()))
            rows.push_back(propertyRow(object, *property));
    std::vector<std::string> methodNames;
    for (const hos::HOSMethodInfo* method : MethodsOfObject(object).declared)
        if (std::ranges::find(methodNames, method->getName()) == methodNames.end())
            methodNames.emplace_back(method->getName());
    return table("Properties", rows) + columnsOfNames("Methods", methodNames) +
           columnsOfNames("Events", namesOf(events(objectClass)));
}

} // namespace velsh
