// Few names are sought one after the other, many that were added by an index.
#include "host/field_names.h"

#include <algorithm>

namespace harray::detail {
namespace {

constexpr std::size_t few = 16;

} // namespace

int FieldNames::find(std::string_view name) const {
    if (isIndexed_) {
        const auto found = numbers_.find(name);
        return found == numbers_.end() ? -1 : found->second;
    }
    const auto at = std::ranges::find(names_, name);
    return at == names_.end() ? -1 : static_cast<int>(at - names_.begin());
}

void FieldNames::add(const std::string& name) {
    names_.push_back(name);
    if (names_.size() <= few) return;
    try {
        for (std::size_t i = isIndexed_ ? names_.size() - 1 : 0; i < names_.size(); ++i)
            numbers_.try_emplace(names_[i], static_cast<int>(i));
        isIndexed_ = true;
    } catch (...) {
        names_.pop_back();
        throw;
    }
}

} // namespace harray::detail
