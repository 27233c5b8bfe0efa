// HOSValue: the word in which a value of a host data type travels.
#pragma once

#include <bit>
#include <cstdint>
#include <string>

struct hxArray;

namespace hos {

// One 64-bit word. What it carries is decided by the data type that goes with it: an integer, the
// bit pattern of a double, or a pointer. Ownership of what it points at is the data type's matter.
class HOSValue {
  public:
    constexpr HOSValue() = default;

    static HOSValue ofPointer(const void* pointer) {
        return HOSValue(reinterpret_cast<std::uintptr_t>(pointer));
    }
    static constexpr HOSValue ofInteger(std::int64_t integer) {
        return HOSValue(static_cast<std::uint64_t>(integer));
    }
    static constexpr HOSValue ofUnsigned(std::uint64_t integer) { return HOSValue(integer); }
    static constexpr HOSValue ofDouble(double number) {
        return HOSValue(std::bit_cast<std::uint64_t>(number));
    }

    template <class T>
    T* pointer() const {
        return reinterpret_cast<T*>(static_cast<std::uintptr_t>(word_));
    }
    hxArray* array() const { return pointer<hxArray>(); }
    const std::u16string* text() const { return pointer<const std::u16string>(); }
    constexpr std::int64_t integer() const { return static_cast<std::int64_t>(word_); }
    constexpr std::uint64_t word() const { return word_; }
    constexpr double number() const { return std::bit_cast<double>(word_); }
    constexpr bool isNull() const { return word_ == 0; }

  private:
    explicit constexpr HOSValue(std::uint64_t word) : word_(word) {}

    std::uint64_t word_ = 0;
};

static_assert(sizeof(HOSValue) == 8);

} // namespace hos
