// The inside of host arrays: the header, the element store that headers share, and its elements.
#pragma once

#include "host/array.h"
#include "host/field_names.h"
#include "host/interface.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

namespace harray::detail {

// What the elements of an array are made of.
enum class ElementKind : std::uint8_t { Plain, Array, Object, String, Function };

// An element of a cell or a field of a struct: an owned array, null at first.
struct ArrayElement {
    hxArray* array = nullptr;

    ArrayElement() = default;
    ArrayElement(const ArrayElement& other)
        : array(other.array ? hxCreateSharedDataCopy(other.array) : nullptr) {}
    ArrayElement& operator=(const ArrayElement&) = delete;
    ~ArrayElement() { destroyArray(array); }
};

using ObjectElement = hos::HOSInterfacePtr;
using StringElement = std::optional<std::u16string>; // no value: a missing string

// What a function handle holds.
struct FunctionRecord {
    std::string text;
    std::function<void(int, unique_array*, int, const hxArray* const*)> function;
};
using FunctionElement = std::shared_ptr<const FunctionRecord>;

// Runs `visitor` with a null pointer to the element type of `kind`, std::byte for plain data.
template <class Visitor>
decltype(auto) visitElements(ElementKind kind, Visitor&& visitor) {
    switch (kind) {
    case ElementKind::Array:
        return visitor(static_cast<ArrayElement*>(nullptr));
    case ElementKind::Object:
        return visitor(static_cast<ObjectElement*>(nullptr));
    case ElementKind::String:
        return visitor(static_cast<StringElement*>(nullptr));
    case ElementKind::Function:
        return visitor(static_cast<FunctionElement*>(nullptr));
    case ElementKind::Plain:
        break;
    }
    return visitor(static_cast<std::byte*>(nullptr));
}

// A counted store of elements too large for a header; the elements follow it.
struct alignas(16) Block {
    explicit Block(std::size_t bytes) : bytes(bytes) {}

    std::atomic<std::uint32_t> owners{1};
    std::size_t bytes; // room for elements
};

struct SparseIndex {
    std::vector<std::size_t> rows;
    std::vector<std::size_t> starts;
};

enum class Filling : bool { Zero, None };

} // namespace harray::detail

struct hxArray {
    hxClassID classId = hxDOUBLE_CLASS;
    harray::detail::ElementKind kind = harray::detail::ElementKind::Plain;
    bool complex = false;
    std::uint16_t rank = 2;
    std::size_t extents[2] = {0, 0};
    std::unique_ptr<std::size_t[]> manyExtents; // all of them, when there are more than two
    std::size_t count = 0;                      // product of the extents
    std::size_t stored = 0;                     // elements in the store: fields and entries count
    void* store = nullptr;                      // the own place below, a block's, or null
    harray::detail::Block* block = nullptr;
    hos::id objectClass;                                 // arrays of objects
    std::shared_ptr<harray::detail::FieldNames> fields;  // structs; shared by copies
    std::unique_ptr<harray::detail::SparseIndex> sparse; // sparse arrays
    alignas(16) std::byte own[48] = {};                  // numbers, and texts of a few words

    hxArray() = default;
    hxArray(const hxArray&) = delete; // hxCreateSharedDataCopy is the way
    hxArray& operator=(const hxArray&) = delete;
    ~hxArray();

    // Headers are recycled and counted.
    static void* operator new(std::size_t size);
    static void operator delete(void* header);

    const std::size_t* dimensions() const { return rank > 2 ? manyExtents.get() : extents; }

    template <class Element>
    Element* elements() const {
        return static_cast<Element*>(store);
    }
};

namespace harray::detail {

// Bytes of one element of the array's store, both parts of a complex one.
std::size_t elementBytes(const hxArray& array);

// The product of extents. Raises std::bad_alloc when it doesn't fit.
std::size_t checkedProduct(std::size_t a, std::size_t b);

// Sets shape and count. One extent is a column; trailing ones beyond the second are dropped.
void setShape(hxArray& array, std::size_t rank, const std::size_t* extents);

// Gives the array, whose class, kind and complexity are set, a store of `stored` new elements.
void makeStore(hxArray& array, std::size_t stored, Filling filling = Filling::Zero);

// Makes room for one more nested array behind those of an array that shares its store with none.
// Places are doubled, so that many are added in a time that grows as they do.
void reserveElement(hxArray& array);

// Gives each of two arrays the store of the other.
void swapStores(hxArray& a, hxArray& b);

// Replaces what is shared with other arrays by an own copy.
void unshare(hxArray& array);

// A new array of that kind and shape with its store.
unique_array makeArray(hxClassID classId, ElementKind kind, std::size_t rank,
                       const std::size_t* extents, bool complex = false,
                       Filling filling = Filling::Zero);

// A new real array of one element.
unique_array makeScalar(hxClassID classId, ElementKind kind);

// A 0-by-0 double that is always there.
const hxArray& emptyDouble();

// `array`, or a 0-by-0 double for null.
inline const hxArray& reading(const hxArray* array) { return array ? *array : emptyDouble(); }

// While it lives, what ends does so at once, also inside of another array's end: a program runs
// that sees when its objects end.
class ProgramRuns {
  public:
    ProgramRuns();
    ProgramRuns(const ProgramRuns&) = delete;
    ProgramRuns& operator=(const ProgramRuns&) = delete;
    ~ProgramRuns();

  private:
    void* outer_;
};

[[noreturn]] void failNull(const char* operation);
[[noreturn]] void failIndex(std::size_t index, std::size_t count);

// `array` for writing, unshared. Raises when it is null.
inline hxArray& writing(hxArray* array, const char* operation) {
    if (!array) failNull(operation);
    if (array->block) unshare(*array);
    return *array;
}

// Raises when `index` isn't below `count`.
inline void checkIndex(std::size_t index, std::size_t count) {
    if (index >= count) failIndex(index, count);
}

// Raises that `operation` isn't for arrays of this class.
[[noreturn]] void failWrongClass(const char* operation, const hxArray* array);

} // namespace harray::detail
