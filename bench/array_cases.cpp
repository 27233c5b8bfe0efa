// Arrays and cells on their way to a server and back, without the call itself.
#include "bench/cases.h"
#include "conversion/host_to_variant.h"
#include "conversion/variant_to_host.h"

#include <cstdlib>
#include <cstring>
#include <memory>

namespace axlink2::bench {
namespace {

using harray::unique_array;
using platform::ScopedSafeArray;
using platform::ScopedVariant;

constexpr std::size_t bytes = 8'000'000;

// What a compiler must not see through.
void keep(const void* written) { asm volatile("" : : "g"(written) : "memory"); }

unique_array numbers(std::size_t rows, std::size_t columns, hxClassID type) {
    const std::size_t extents[] = {rows, columns};
    unique_array array(hxCreateNumericArray(2, extents, type, hxREAL));
    auto* data = static_cast<unsigned char*>(hxGetWritableData(array.get()));
    const std::size_t size = rows * columns * hxGetElementSize(array.get());
    for (std::size_t i = 0; i < size; ++i)
        data[i] = type == hxLOGICAL_CLASS ? i % 3 == 0 : static_cast<unsigned char>(i);
    return array;
}

ScopedVariant toServer(const hxArray* value, bool forceArray = false) {
    ScopedVariant target;
    ReferenceHolders holders;
    hostToVariant(target.inOut(), value, false, 0, 0, 0, forceArray, &holders);
    return target;
}

unique_array toHost(VARIANT& value) {
    hxArray* array = nullptr;
    variantToHost(&value, &array, {.warn = true});
    return unique_array(array);
}

ScopedSafeArray newArray(VARTYPE vt, std::size_t rows, std::size_t columns) {
    SAFEARRAYBOUND bounds[] = {{static_cast<ULONG>(rows), 0}, {static_cast<ULONG>(columns), 0}};
    return ScopedSafeArray::adopt(SafeArrayCreate(vt, 2, bounds));
}

// Large arrays: a new destination and one memcpy of the server's bytes. A logical is two of them
// there and one here.

template <hxClassID type>
constexpr std::size_t elementSize = type == hxDOUBLE_CLASS  ? 8
                                    : type == hxINT32_CLASS ? 4
                                                            : 1;

template <hxClassID type>
const hxArray* large() {
    static const unique_array array = numbers(1000, bytes / 1000 / elementSize<type>, type);
    return array.get();
}

template <hxClassID type>
VARIANT& largeFromServer() {
    static ScopedVariant value = toServer(large<type>());
    return *value.inOut();
}

template <hxClassID type>
void rawOut(std::size_t count) {
    SAFEARRAY* const source = largeFromServer<type>().parray;
    VARTYPE vt = VT_EMPTY;
    SafeArrayGetVartype(source, &vt);
    for (; count > 0; --count) {
        const ScopedSafeArray made =
            newArray(vt, source->rgsabound[1].cElements, source->rgsabound[0].cElements);
        void* data = nullptr;
        SafeArrayAccessData(made.get(), &data);
        std::memcpy(data, source->pvData, bytes / elementSize<type> * source->cbElements);
        SafeArrayUnaccessData(made.get());
        keep(data);
    }
}

template <hxClassID type>
void out(std::size_t count) {
    for (; count > 0; --count)
        toServer(large<type>());
}

template <hxClassID type>
void rawBack(std::size_t count) {
    const SAFEARRAY* const source = largeFromServer<type>().parray;
    const std::size_t size = bytes / elementSize<type> * source->cbElements;
    for (; count > 0; --count) {
        const std::unique_ptr<char[]> made(new char[size]);
        std::memcpy(made.get(), source->pvData, size);
        keep(made.get());
    }
}

template <hxClassID type>
void back(std::size_t count) {
    for (; count > 0; --count)
        toHost(largeFromServer<type>());
}

// Cells of texts.

unique_array texts(std::size_t count) {
    unique_array cell(hxCreateCellMatrix(count, 1));
    for (std::size_t i = 0; i < count; ++i)
        hxSetCell(cell.get(), i, hxCreateString(("the text number " + std::to_string(i)).c_str()));
    return cell;
}

template <std::size_t size>
const hxArray* cellOfTexts() {
    static const unique_array cell = texts(size);
    return cell.get();
}

template <std::size_t size>
VARIANT& textsFromServer() {
    static ScopedVariant value = toServer(cellOfTexts<size>());
    return *value.inOut();
}

constexpr std::size_t many = 100'000;
constexpr std::size_t fewer = many / 10;

void rawTextsOut(std::size_t count) {
    const auto* source = static_cast<const VARIANT*>(textsFromServer<many>().parray->pvData);
    for (; count > 0; --count) {
        const ScopedSafeArray made = newArray(VT_VARIANT, many, 1);
        auto* target = static_cast<VARIANT*>(made.get()->pvData);
        for (std::size_t i = 0; i < many; ++i) {
            target[i].bstrVal = SysAllocString(source[i].bstrVal);
            target[i].vt = VT_BSTR;
        }
    }
}

template <std::size_t size, std::size_t times>
void textsOut(std::size_t count) {
    for (count *= times; count > 0; --count)
        toServer(cellOfTexts<size>());
}

void rawTextsBack(std::size_t count) {
    const auto* source = static_cast<const VARIANT*>(textsFromServer<many>().parray->pvData);
    for (; count > 0; --count) {
        std::vector<std::u16string> made(many);
        for (std::size_t i = 0; i < many; ++i)
            made[i] = platform::toUtf16(source[i].bstrVal);
    }
}

template <std::size_t size, std::size_t times>
void textsBack(std::size_t count) {
    for (count *= times; count > 0; --count)
        toHost(textsFromServer<size>());
}

// Small arrays: a scalar and a SAFEARRAY of that shape, to a server and back.

const hxArray* one() {
    static const unique_array array(hxCreateDoubleScalar(1));
    return array.get();
}

const hxArray* none() {
    static const unique_array array = numbers(0, 5, hxDOUBLE_CLASS);
    return array.get();
}

template <std::size_t rows, std::size_t columns>
void rawSmall(std::size_t count) {
    for (; count > 0; --count) {
        ScopedVariant value = toServer(one());
        toHost(*value.inOut());
        newArray(VT_R8, rows, columns);
    }
}

template <const hxArray* source()>
void small(std::size_t count) {
    for (; count > 0; --count) {
        ScopedVariant value = toServer(source(), true);
        toHost(*value.inOut());
    }
}

} // namespace

std::vector<Case> arrayCases() {
    constexpr std::size_t batch = 1000;
    return {
        {"8 MB double to a server", rawOut<hxDOUBLE_CLASS>, out<hxDOUBLE_CLASS>, 1.2},
        {"8 MB double from a server", rawBack<hxDOUBLE_CLASS>, back<hxDOUBLE_CLASS>, 1.2},
        {"8 MB int32 to a server", rawOut<hxINT32_CLASS>, out<hxINT32_CLASS>, 1.2},
        {"8 MB int32 from a server", rawBack<hxINT32_CLASS>, back<hxINT32_CLASS>, 1.2},
        {"8M logical to a server", rawOut<hxLOGICAL_CLASS>, out<hxLOGICAL_CLASS>, 1.2},
        {"8M logical from a server", rawBack<hxLOGICAL_CLASS>, back<hxLOGICAL_CLASS>, 1.2},
        {"100,000 texts to a server", rawTextsOut, textsOut<many, 1>, 2},
        {"100,000 texts from a server", rawTextsBack, textsBack<many, 1>, 2},
        {"100,000 texts, raw: 10 x 10,000, to", textsOut<fewer, 10>, textsOut<many, 1>, 1.5},
        {"100,000 texts, raw: 10 x 10,000, from", textsBack<fewer, 10>, textsBack<many, 1>, 1.5},
        {"one element, there and back", rawSmall<1, 1>, small<one>, 1.2, batch},
        {"no element, there and back", rawSmall<0, 5>, small<none>, 1.2, batch},
    };
}

} // namespace axlink2::bench
