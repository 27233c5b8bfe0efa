// The bytes of one input, drawn as the values that a target makes its case from.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>

namespace fuzz {

// What isn't there any more reads as zero, so every input makes a whole case.
class ByteSource {
  public:
    explicit ByteSource(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    bool isEmpty() const { return bytes_.empty(); }

    std::uint8_t byte() { return number<std::uint8_t>(); }
    template <class T>
    T number() {
        T value{};
        const auto part = take(sizeof value);
        std::memcpy(&value, part.data(), part.size());
        return value;
    }
    // 0 to `most`, which is below 256.
    unsigned upTo(unsigned most) { return byte() % (most + 1); }
    // True in one of `times` cases; never at the end.
    bool oneIn(unsigned times) { return byte() % times == times - 1; }

    template <class T, std::size_t count>
    T pick(const std::array<T, count>& values) {
        return values[byte() % count];
    }

    // At most `most` bytes, after their number.
    std::string_view text(unsigned most) {
        const auto part = take(upTo(most));
        return {reinterpret_cast<const char*>(part.data()), part.size()};
    }
    // The same as UTF-16, whatever the bytes: every unit can occur, most are letters.
    std::u16string wideText(unsigned most) {
        std::u16string wide;
        for (unsigned left = upTo(most); left > 0; --left) {
            const std::uint8_t unit = byte();
            wide += unit == 0xFF ? number<char16_t>() : char16_t{unit};
        }
        return wide;
    }

    // Its next bytes, to be drawn from on their own.
    ByteSource split(std::size_t count) { return ByteSource(take(count)); }

  private:
    std::span<const std::uint8_t> take(std::size_t count) {
        const auto part = bytes_.first(std::min(count, bytes_.size()));
        bytes_ = bytes_.subspan(part.size());
        return part;
    }

    std::span<const std::uint8_t> bytes_;
};

} // namespace fuzz
