// Deep copies of type descriptions: each owns all that it points to.
#pragma once

#include "platform/answer.h"
#include "platform/portable/typeinfo.h"
#include "platform/text.h"

#include <atomic>
#include <memory_resource>
#include <vector>

namespace platform {

// Where the parts of one description live; they go with it.
class DescMemory {
  public:
    DescMemory() = default;
    DescMemory(const DescMemory&) = delete;
    DescMemory& operator=(const DescMemory&) = delete;
    ~DescMemory();

    // Zeroed elements of a plain type.
    template <class T>
    T* make(std::size_t count = 1) {
        void* place = memory_.allocate(count * sizeof(T), alignof(T));
        return new (place) T[count]();
    }

    // Raises std::bad_alloc, std::invalid_argument for a value that can't be copied.
    VARIANT* copyVariant(const VARIANT& value);

    // Raises std::invalid_argument for a description that points to nothing where it must.
    TYPEDESC copyType(const TYPEDESC& from);

  private:
    std::pmr::monotonic_buffer_resource memory_;
    std::vector<VARIANT*> variants_;
};

void copyDesc(DescMemory& memory, TYPEATTR& to, const TYPEATTR& from);
void copyDesc(DescMemory& memory, FUNCDESC& to, const FUNCDESC& from);
void copyDesc(DescMemory& memory, VARDESC& to, const VARDESC& from);
void copyDesc(DescMemory& memory, TLIBATTR& to, const TLIBATTR& from);

// A description with its own copy of everything below it.
template <class Desc>
struct OwnedDesc : Desc {
    explicit OwnedDesc(const Desc& from) : Desc{} { copyDesc(memory, *this, from); }
    DescMemory memory;
};

extern std::atomic<int> descriptionsOut;

// A copy for a caller, to come back through takeBack.
template <class Desc>
HRESULT handOut(const Desc& from, Desc** result) {
    return answer([&] {
        *result = new OwnedDesc<Desc>(from);
        ++descriptionsOut;
        return S_OK;
    });
}

template <class Desc>
void takeBack(Desc* desc) {
    if (desc) {
        delete static_cast<OwnedDesc<Desc>*>(desc);
        --descriptionsOut;
    }
}

} // namespace platform
