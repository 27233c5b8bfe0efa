// The names of a struct's fields.
#pragma once

#include <cstddef>
#include <string>
#include <unordered_map>
#include <vector>

namespace harray::detail {

// Names in the order of the fields, each found in next to no time. Of equal ones the first counts.
class FieldNames {
  public:
    explicit FieldNames(std::vector<std::string> names);

    const std::vector<std::string>& all() const { return names_; }
    std::size_t size() const { return names_.size(); }
    // The 0-based number of a field; -1 for no such field.
    int find(const std::string& name) const;
    void add(const std::string& name);

  private:
    void index(std::size_t first);

    std::vector<std::string> names_;
    std::unordered_map<std::string, int> numbers_; // once there are many
};

} // namespace harray::detail
