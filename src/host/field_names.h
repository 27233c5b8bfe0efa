// The names of a struct's fields.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace harray::detail {

// Names in the order of the fields. Of equal ones the first counts. Adding many takes no longer for
// each of them; a list that was made at once is sought through.
class FieldNames {
  public:
    explicit FieldNames(std::vector<std::string> names) : names_(std::move(names)) {}

    const std::vector<std::string>& all() const { return names_; }
    std::size_t size() const { return names_.size(); }
    // The 0-based number of a field; -1 for no such field.
    int find(std::string_view name) const;
    void add(const std::string& name);

  private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view text) const {
            return std::hash<std::string_view>()(text);
        }
    };

    std::vector<std::string> names_;
    // Of all names, from the first addition to many on; an index that nobody asks costs as much as
    // the values of the fields.
    std::unordered_map<std::string, int, Hash, std::equal_to<>> numbers_;
    bool isIndexed_ = false;
};

} // namespace harray::detail
