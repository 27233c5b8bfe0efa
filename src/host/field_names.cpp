// Few names are sought one after the other, many by an index.
#include "host/field_names.h"

#include <algorithm>

namespace harray::detail {
namespace {

constexpr std::size_t few = 16;

} // namespace

FieldNames::FieldNames(std::vector<std::string> names) : names_(std::move(names)) { index(0); }

int FieldNames::find(const std::string& name) const {
    if (names_.size() > few) {
        const auto found = numbers_.find(name);
        return found == numbers_.end() ? -1 : found->second;
    }
    const auto at = std::ranges::find(names_, name);
    return at == names_.end() ? -1 : static_cast<int>(at - names_.begin());
}

void FieldNames::add(const std::string& name) {
    names_.push_back(name);
    try {
        index(names_.size() > few + 1 ? names_.size() - 1 : 0);
    } catch (...) {
        names_.pop_back();
        throw;
    }
}

void FieldNames::index(std::size_t first) {
    for (std::size_t i = first; names_.size() > few && i < names_.size(); ++i)
        numbers_.try_emplace(names_[i], static_cast<int>(i));
}

} // namespace harray::detail
