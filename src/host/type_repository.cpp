// All data types and the conversions between them.
#include "host/class.h"
#include "host/host_messages.h"
#include "host/text.h"
#include "host/type_entry.h"

#include <map>
#include <memory>
#include <unordered_map>

namespace velmar {
namespace {

struct Repository {
    std::unordered_map<hos::id, std::unique_ptr<TypeEntry>> entries;
    std::map<std::pair<hos::id, hos::id>, std::unique_ptr<hos::HOSTypeConversion>> conversions;
    hos::id any = hos::internal::makeInterned("any");

    std::vector<std::unique_ptr<HostType>> ownTypes = makeHostTypes();

    Repository() {
        for (const auto& type : ownTypes)
            setHostType(entry(hos::internal::makeInterned(type->getName())), type.get());
    }

    TypeEntry& entry(hos::id name) {
        std::unique_ptr<TypeEntry>& slot = entries[name];
        if (!slot) {
            slot = std::make_unique<TypeEntry>();
            slot->name = name;
        }
        return *slot;
    }

    // The entry, with the type of a class when the name is a class's.
    TypeEntry& known(hos::id name) {
        TypeEntry& found = entry(name);
        if (!found.type && !name.isEmpty() && hos::HOSClass::getClass(name))
            setHostType(found, makeClassType(name));
        return found;
    }

    static void setHostType(TypeEntry& entry, HostType* type) {
        entry.type = type;
        entry.host = type;
        entry.conversion = type;
        entry.isWord = type->isWord();
    }
};

// Never destroyed: member plans and modules point into it.
Repository& repository() {
    static auto& the = *new Repository;
    return the;
}

} // namespace

const TypeEntry& typeEntry(hos::id name) { return repository().known(name); }

Fit TypeEntry::openFit(const hxArray& array) const {
    if (!conversion) return Fit::None;
    if (!enumeration) return Fit::Open;
    if (hoststring::isScalarText(&array, false, true)) return Fit::Text;
    static const TypeEntry& number = typeEntry(hos::internal::makeInterned("int32 scalar"));
    return number.fit(array) == Fit::None ? Fit::None : Fit::Convertible;
}

hos::HOSValue TypeEntry::valueOf(const hxArray* array) const {
    const hxArray& source = harray::detail::reading(array);
    if (!isWord && host && host->passes(source)) return hos::HOSValue::ofPointer(&source);
    if (!conversion) fail(keys::UnknownType, name.str());
    hos::HOSValue value;
    conversion->convertFromHost(&value, &source);
    return value;
}

harray::unique_array TypeEntry::arrayOf(hos::HOSValue value) const {
    if (!conversion) fail(keys::UnknownType, name.str());
    hxArray* array = nullptr;
    conversion->convertToHost(&array, value);
    return harray::unique_array(array);
}

harray::unique_array TypeEntry::takeArray(hos::HOSValue value) const {
    if (holdsArrays()) return harray::unique_array(value.array());
    if (isWord) return arrayOf(value);
    struct Ending {
        const TypeEntry& entry;
        hos::HOSValue value;
        ~Ending() { entry.releaseValue(value); }
    } ending{*this, value};
    return arrayOf(value);
}

} // namespace velmar

namespace hos {

HOSInterfacePtr HOSTypeRepository::getType(id name) {
    const HOSDataType* type = name.isEmpty() ? nullptr : velmar::repository().known(name).type;
    return type ? type->handle() : HOSInterfacePtr();
}

void HOSTypeRepository::addGlobalType(HOSDataType* type) {
    std::unique_ptr<HOSDataType> owned(type);
    velmar::TypeEntry& entry = velmar::repository().known(internal::makeInterned(type->getName()));
    if (entry.type) return;
    entry.type = owned.release();
    entry.enumeration = dynamic_cast<TypedEnumStringType*>(type);
}

HOSTypeConversion* HOSTypeRepository::getConversion(id from, id to) {
    velmar::Repository& all = velmar::repository();
    if (from == all.any) return to.isEmpty() ? nullptr : all.known(to).conversion;
    const auto at = all.conversions.find({from, to});
    return at == all.conversions.end() ? nullptr : at->second.get();
}

void HOSTypeRepository::addConversion(id from, id to, HOSTypeConversion* conversion) {
    std::unique_ptr<HOSTypeConversion> owned(conversion);
    if (getConversion(from, to)) return;
    velmar::Repository& all = velmar::repository();
    velmar::TypeEntry* const entry = from == all.any ? &all.entry(to) : nullptr;
    all.conversions[{from, to}] = std::move(owned);
    if (entry) entry->conversion = conversion;
}

} // namespace hos
