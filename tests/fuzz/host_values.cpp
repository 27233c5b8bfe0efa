// Drawing arrays of the host.
#include "classmodel/object_creation.h"
#include "conversion/wrapped_interface.h"
#include "fuzz/variant_values.h"
#include "host/embedding.h"
#include "host/text.h"

#include <algorithm>

namespace fuzz {
namespace {

using harray::unique_array;

constexpr unsigned deepest = 4;

std::vector<std::size_t> drawExtents(ByteSource& source) {
    std::vector<std::size_t> extents(source.oneIn(8) ? 3 : 2);
    for (std::size_t& extent : extents)
        extent = source.oneIn(4) ? source.upTo(4) : 1;
    return extents;
}

unique_array drawNumbers(ByteSource& source, hxClassID id) {
    const auto extents = drawExtents(source);
    const bool isComplex = id != hxCHAR_CLASS && id != hxLOGICAL_CLASS && source.oneIn(16);
    unique_array array(id == hxLOGICAL_CLASS
                           ? hxCreateLogicalArray(extents.size(), extents.data())
                           : hxCreateNumericArray(extents.size(), extents.data(), id,
                                                  isComplex ? hxCOMPLEX : hxREAL));
    auto* bytes = static_cast<std::uint8_t*>(hxGetWritableData(array.get()));
    const std::size_t size = hxGetNumberOfElements(array.get()) * hxGetElementSize(array.get());
    for (std::size_t i = 0; i < size; ++i)
        bytes[i] = id == hxLOGICAL_CLASS ? source.byte() & 1 : source.byte();
    return array;
}

unique_array drawStrings(ByteSource& source) {
    const std::size_t rows = source.upTo(2), columns = source.upTo(2);
    std::vector<std::optional<std::u16string>> texts(rows * columns);
    for (auto& text : texts)
        if (!source.oneIn(4)) text = source.wideText(6);
    return hoststring::createStringArray(rows, columns, std::move(texts));
}

unique_array drawCell(ByteSource& source, const MakeObject& makeObject, unsigned depth) {
    const auto extents = drawExtents(source);
    unique_array cell(hxCreateCellArray(extents.size(), extents.data()));
    for (std::size_t i = 0; i < hxGetNumberOfElements(cell.get()); ++i)
        if (!source.oneIn(4))
            hxSetCell(cell.get(), i, hostValue(source, makeObject, depth + 1).release());
    return cell;
}

unique_array drawStruct(ByteSource& source, const MakeObject& makeObject, unsigned depth) {
    const char* const names[] = {"a", "b"};
    unique_array array(hxCreateStructMatrix(source.upTo(2), 1, 2, names));
    for (std::size_t i = 0; i < hxGetNumberOfElements(array.get()); ++i)
        hxSetFieldByNumber(array.get(), i, 0, hostValue(source, makeObject, depth + 1).release());
    return array;
}

unique_array drawObject(const MakeObject& makeObject) {
    VARIANT v{};
    v.vt = VT_DISPATCH;
    v.pdispVal = makeObject();
    unique_array wrapped(axlink2::wrapInterface(&v, {}, "Made"));
    return wrapped ? std::move(wrapped) : unique_array(hxCreateCellMatrix(0, 0));
}

} // namespace

harray::unique_array hostValue(ByteSource& source, const MakeObject& makeObject, unsigned depth) {
    constexpr std::array<hxClassID, 14> plain = {
        hxDOUBLE_CLASS, hxDOUBLE_CLASS, hxCHAR_CLASS,   hxLOGICAL_CLASS, hxSINGLE_CLASS,
        hxINT8_CLASS,   hxUINT8_CLASS,  hxINT16_CLASS,  hxUINT16_CLASS,  hxINT32_CLASS,
        hxUINT32_CLASS, hxINT64_CLASS,  hxUINT64_CLASS, hxCHAR_CLASS};
    switch (source.upTo(10)) {
    case 0:
        return drawStrings(source);
    case 1:
        return drawObject(makeObject);
    case 2:
    case 3:
        if (depth < deepest) return drawCell(source, makeObject, depth);
        break;
    case 4:
        if (depth < deepest) return drawStruct(source, makeObject, depth);
        break;
    case 5:
        if (source.oneIn(2)) return unique_array(hxCreateSparseLogical(3, 2, 4));
        return unique_array(hxCreateSparse(2, 2, 3, source.oneIn(2) ? hxCOMPLEX : hxREAL));
    case 6:
        return velmar::createFunctionHandle("@f", {});
    case 7:
        return harray::create(source.wideText(12));
    default:
        break;
    }
    return drawNumbers(source, source.pick(plain));
}

} // namespace fuzz
