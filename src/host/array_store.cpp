// Element stores: made, shared, copied for writing and ended.
#include "host/array_store.h"

#include "host/host_messages.h"
#include "platform/thread_slot.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <memory>
#include <new>

namespace harray::detail {
namespace {

// A block with room for `bytes` zero bytes, or bytes that hold anything.
Block* allocateBlock(std::size_t bytes, Filling filling) {
    if (bytes > std::numeric_limits<std::ptrdiff_t>::max() - sizeof(Block)) throw std::bad_alloc();
    void* memory = filling == Filling::Zero ? std::calloc(1, sizeof(Block) + bytes)
                                            : std::malloc(sizeof(Block) + bytes);
    if (!memory) throw std::bad_alloc();
    return new (memory) Block(bytes);
}

void freeBlock(Block* block) {
    block->~Block();
    std::free(block);
}

void destroyElements(ElementKind kind, void* store, std::size_t count) {
    visitElements(kind, [&]<class Element>(Element*) {
        std::destroy_n(static_cast<Element*>(store), count);
    });
}

void copyElements(ElementKind kind, void* to, const void* from, std::size_t count) {
    visitElements(kind, [&]<class Element>(Element*) {
        std::uninitialized_copy_n(static_cast<const Element*>(from), count,
                                  static_cast<Element*>(to));
    });
}

void makeElements(ElementKind kind, void* store, std::size_t count) {
    visitElements(kind, [&]<class Element>(Element*) {
        std::uninitialized_value_construct_n(static_cast<Element*>(store), count);
    });
}

// Elements as the loops above count them: bytes for plain data.
std::size_t countedElements(const hxArray& array) {
    return array.kind == ElementKind::Plain ? array.stored * elementBytes(array) : array.stored;
}

void releaseStore(hxArray& array) {
    if (!array.block) {
        if (array.kind != ElementKind::Plain)
            destroyElements(array.kind, array.store, array.stored);
    } else if (array.block->owners.load(std::memory_order_acquire) == 1 ||
               array.block->owners.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        if (array.kind != ElementKind::Plain)
            destroyElements(array.kind, array.store, array.stored);
        freeBlock(array.block);
    }
    array.store = nullptr;
    array.block = nullptr;
    array.stored = 0;
}

std::size_t plainBytes(hxClassID classId) {
    switch (classId) {
    case hxLOGICAL_CLASS:
    case hxINT8_CLASS:
    case hxUINT8_CLASS:
        return 1;
    case hxCHAR_CLASS:
    case hxINT16_CLASS:
    case hxUINT16_CLASS:
        return 2;
    case hxSINGLE_CLASS:
    case hxINT32_CLASS:
    case hxUINT32_CLASS:
        return 4;
    default:
        return 8;
    }
}

} // namespace

std::size_t elementBytes(const hxArray& array) {
    if (array.kind == ElementKind::Plain)
        return plainBytes(array.classId) * (array.complex ? 2 : 1);
    return visitElements(array.kind,
                         []<class Element>(Element*) -> std::size_t { return sizeof(Element); });
}

std::size_t checkedProduct(std::size_t a, std::size_t b) {
    std::size_t product;
    if (__builtin_mul_overflow(a, b, &product)) throw std::bad_alloc();
    return product;
}

void setShape(hxArray& array, std::size_t rank, const std::size_t* extents) {
    if (rank == 2 && array.rank == 2) { // the usual case
        array.count = checkedProduct(extents[0], extents[1]);
        array.extents[0] = extents[0];
        array.extents[1] = extents[1];
        return;
    }
    while (rank > 2 && extents[rank - 1] == 1)
        --rank;
    const std::size_t rows = rank > 0 ? extents[0] : 1;
    const std::size_t columns = rank > 1 ? extents[1] : 1;
    std::size_t count = checkedProduct(rows, columns);
    std::unique_ptr<std::size_t[]> many;
    if (rank > 2) {
        if (rank > std::numeric_limits<decltype(array.rank)>::max()) throw std::bad_alloc();
        many = std::make_unique<std::size_t[]>(rank);
        std::copy_n(extents, rank, many.get());
        for (std::size_t i = 2; i < rank; ++i)
            count = checkedProduct(count, extents[i]);
    }
    array.manyExtents = std::move(many);
    array.rank = static_cast<decltype(array.rank)>(std::max<std::size_t>(rank, 2));
    array.extents[0] = rows;
    array.extents[1] = columns;
    array.count = count;
}

void makeStore(hxArray& array, std::size_t stored, Filling filling) {
    if (stored == 0) return;
    const std::size_t bytes = checkedProduct(stored, elementBytes(array));
    void* store = array.own;
    Block* block = nullptr;
    // Nested arrays lie in a block whatever their number: copies of it share them at once, while
    // copies of elements in the header would go down to the innermost.
    if (bytes > sizeof array.own || array.kind == ElementKind::Array) {
        block = allocateBlock(bytes, filling);
        store = block + 1;
    }
    if (array.kind != ElementKind::Plain) makeElements(array.kind, store, stored);
    array.store = store;
    array.block = block;
    array.stored = stored;
}

void reserveElement(hxArray& array) {
    const std::size_t used = array.stored * sizeof(ArrayElement);
    const std::size_t needed = used + sizeof(ArrayElement);
    if (array.block && array.block->bytes >= needed) return;
    Block* const larger = allocateBlock(checkedProduct(2, needed), Filling::None);
    if (array.block) {
        // Elements are no more than pointers, and stay the same ones.
        std::memcpy(static_cast<void*>(larger + 1), array.store, used);
        freeBlock(array.block);
    }
    array.block = larger;
    array.store = larger + 1;
}

void swapStores(hxArray& a, hxArray& b) {
    std::swap(a.own, b.own);
    std::swap(a.block, b.block);
    std::swap(a.stored, b.stored);
    std::swap(a.store, b.store);
    for (hxArray* side : {&a, &b})
        if (side->store && !side->block) side->store = side->own;
}

void unshare(hxArray& array) {
    if (!array.block || array.block->owners.load(std::memory_order_acquire) == 1) return;
    Block* own = allocateBlock(array.stored * elementBytes(array), Filling::None);
    try {
        copyElements(array.kind, own + 1, array.store, countedElements(array));
    } catch (...) {
        freeBlock(own);
        throw;
    }
    const std::size_t stored = array.stored;
    releaseStore(array);
    array.block = own;
    array.store = own + 1;
    array.stored = stored;
}

unique_array makeScalar(hxClassID classId, ElementKind kind) {
    unique_array array(new hxArray);
    array->classId = classId;
    array->kind = kind;
    array->extents[0] = 1;
    array->extents[1] = 1;
    array->count = 1;
    if (kind == ElementKind::Plain) { // what it holds fits its own place, which is zero
        array->store = array->own;
        array->stored = 1;
    } else {
        makeStore(*array, 1);
    }
    return array;
}

unique_array makeArray(hxClassID classId, ElementKind kind, std::size_t rank,
                       const std::size_t* extents, bool complex, Filling filling) {
    unique_array array(new hxArray);
    array->classId = classId;
    array->kind = kind;
    array->complex = complex;
    setShape(*array, rank, extents);
    makeStore(*array, array->count, filling);
    return array;
}

const hxArray& emptyDouble() {
    static const hxArray& empty = *::new hxArray; // never destroyed, and not counted
    return empty;
}

void failNull(const char* operation) { velmar::fail(velmar::keys::NullArray, operation); }

void failIndex(std::size_t index, std::size_t count) {
    velmar::fail(velmar::keys::badsubscript, static_cast<std::int64_t>(index + 1),
                 static_cast<std::int64_t>(count));
}

void failWrongClass(const char* operation, const hxArray* array) {
    velmar::fail(velmar::keys::WrongArrayClass, operation, hxGetClassName(array));
}

hxArray* do_shared_copy(const hxArray* array) {
    const hxArray& source = reading(array);
    unique_array copy(new hxArray);
    copy->classId = source.classId;
    copy->kind = source.kind;
    copy->complex = source.complex;
    if (source.rank > 2) {
        setShape(*copy, source.rank, source.dimensions());
    } else {
        copy->extents[0] = source.extents[0];
        copy->extents[1] = source.extents[1];
        copy->count = source.count;
    }
    copy->objectClass = source.objectClass;
    copy->fields = source.fields;
    if (source.sparse) copy->sparse = std::make_unique<SparseIndex>(*source.sparse);
    if (source.block) {
        source.block->owners.fetch_add(1, std::memory_order_relaxed);
        copy->block = source.block;
        copy->store = source.store;
    } else if (source.store) {
        if (source.kind == ElementKind::Plain)
            std::memcpy(copy->own, source.own, sizeof copy->own);
        else
            copyElements(source.kind, copy->own, source.own, source.stored);
        copy->store = copy->own;
    }
    copy->stored = source.stored;
    return copy.release();
}

} // namespace harray::detail

namespace harray::detail {
namespace {

// The arrays whose end has been asked for while another one's was under way. They end one after the
// other, as what stands in arrays (cells, objects with properties, functions with variables) may
// stand deeper in each other than the stack is. They are linked through their headers: what ends an
// array must not ask for memory.
class WaitingEnds {
  public:
    WaitingEnds() { Slot::set(this); }
    WaitingEnds(const WaitingEnds&) = delete;
    WaitingEnds& operator=(const WaitingEnds&) = delete;
    ~WaitingEnds() { Slot::set(nullptr); }

    // Those of the thread; null while none of its arrays ends.
    static WaitingEnds* current() { return static_cast<WaitingEnds*>(Slot::get()); }
    static void makeCurrent(WaitingEnds* ends) { Slot::set(ends); }

    void add(hxArray& array) {
        array.extents[0] = reinterpret_cast<std::uintptr_t>(first_);
        first_ = &array;
    }
    void run() {
        while (hxArray* const next = first_) {
            first_ = reinterpret_cast<hxArray*>(next->extents[0]);
            delete next;
        }
    }

  private:
    using Slot = platform::ThreadSlot<WaitingEnds>;

    hxArray* first_ = nullptr;
};

} // namespace

ProgramRuns::ProgramRuns() : outer_(WaitingEnds::current()) { WaitingEnds::makeCurrent(nullptr); }

ProgramRuns::~ProgramRuns() { WaitingEnds::makeCurrent(static_cast<WaitingEnds*>(outer_)); }

} // namespace harray::detail

hxArray::~hxArray() {
    // Plain elements in the array's own place end with it.
    if (block || kind != harray::detail::ElementKind::Plain) harray::detail::releaseStore(*this);
}

void harray::destroyArray(hxArray* array) {
    using namespace harray::detail;
    if (!array || array->kind == ElementKind::Plain) {
        delete array; // nothing stands in it
        return;
    }
    if (WaitingEnds* const ends = WaitingEnds::current()) return ends->add(*array);
    WaitingEnds ends;
    ends.add(*array);
    ends.run();
}

hxArray* hxCreateSharedDataCopy(const hxArray* array) {
    return harray::detail::do_shared_copy(array);
}

hxArray* hxUnshareShallow(hxArray* array) {
    if (array) harray::detail::unshare(*array);
    return array;
}
