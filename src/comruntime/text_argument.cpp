// Reading text arguments.
#include "comruntime/text_argument.h"

#include "host/exception.h"
#include "host/message_ids.h"
#include "host/text.h"

namespace axlink2 {
namespace {

bool isRow(const hxArray* array) {
    if (hxGetNumberOfDimensions(array) != 2) return false;
    const std::size_t rows = hxGetM(array);
    return rows == 1 || (rows == 0 && hxGetN(array) == 0);
}

std::u16string_view characters(const hxArray* array) {
    return {static_cast<const char16_t*>(hxGetData(array)), hxGetNumberOfElements(array)};
}

} // namespace

std::u16string_view readScalarText(const hxArray* array, bool rowOnly) {
    if (array && hxGetClassID(array) == hxCHAR_CLASS && (!rowOnly || isRow(array)))
        return characters(array);
    if (array && hoststring::isString(array)) {
        const auto elements = hoststring::getString(array);
        if (elements.size() == 1) {
            if (!elements.front()) hmsgcore::raise(VELMAR::string::MissingNotSupported());
            return *elements.front();
        }
    }
    hmsgcore::raise(VELMAR::string::MustBeStringScalarOrCharacterVector());
}

std::string readNarrowText(const hxArray* array) {
    return hsys::i18n::to_string(readScalarText(array, true));
}

} // namespace axlink2
