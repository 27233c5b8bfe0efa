// Interned names: one word that stands for the one copy of a name, compared by pointer.
#pragma once

#include <cstddef>
#include <functional>
#include <string>

namespace hos::internal {

struct IdEmptyPolicy {};

} // namespace hos::internal

// A name by its one interned copy. The empty id holds null and reads as an empty text.
template <class Policy>
class HOSInternedBase {
  public:
    constexpr HOSInternedBase() = default;
    explicit constexpr HOSInternedBase(const std::string* interned) : name_(interned) {}

    bool isEmpty() const { return name_ == nullptr; }
    const char* c_str() const { return name_ ? name_->c_str() : ""; }
    std::string str() const { return name_ ? *name_ : std::string(); }

    friend bool operator==(HOSInternedBase a, HOSInternedBase b) { return a.name_ == b.name_; }
    friend bool operator<(HOSInternedBase a, HOSInternedBase b) {
        return std::less<const std::string*>()(a.name_, b.name_);
    }
    std::size_t hash() const { return std::hash<const std::string*>()(name_); }

  private:
    const std::string* name_ = nullptr;
};

namespace hos {

using id = HOSInternedBase<internal::IdEmptyPolicy>;

namespace internal {

// The id of `name`, interned now if it was not known. Never the empty id.
id makeInterned(std::string&& name);

// The id of `name` if it has been interned, else the empty id. A null name gives the empty id.
id findInterned(const char* name);

} // namespace internal
} // namespace hos

template <>
struct std::hash<hos::id> {
    std::size_t operator()(hos::id name) const { return name.hash(); }
};
