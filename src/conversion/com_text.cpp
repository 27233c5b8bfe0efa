// Text made where it is to stay, without a copy in between.
#include "conversion/com_text.h"

#include "platform/text.h"

#include <algorithm>
#include <limits>

namespace axlink2 {

namespace {

// The part before the first zero. Few texts have one, so that all units are looked at first, of
// which the compiler can do many at once.
template <class Unit>
std::basic_string_view<Unit> untilZero(std::basic_string_view<Unit> text) {
    unsigned zeros = 0;
    for (const Unit unit : text)
        zeros |= unit == 0;
    return zeros == 0 ? text : text.substr(0, text.find(Unit{0}));
}

} // namespace

BSTR newBstr(std::u16string_view text) {
    text = untilZero(text);
    const bool fits = text.size() <= std::numeric_limits<INT>::max();
    const BSTR bstr = fits ? SysAllocStringLen(nullptr, static_cast<UINT>(text.size())) : nullptr;
    if (!bstr) _com_issue_error(E_OUTOFMEMORY);
    std::copy(text.begin(), text.end(), bstr);
    return bstr;
}

harray::unique_array charRow(BSTR text) {
    const platform::OleView view = untilZero(platform::viewOf(text));
    const std::size_t extents[] = {view.empty() ? std::size_t{0} : 1, view.size()};
    harray::unique_array row(hxCreateUninitNumericArray(2, extents, hxCHAR_CLASS, hxREAL));
    if (!view.empty())
        std::copy(view.begin(), view.end(), static_cast<char16_t*>(hxGetWritableData(row.get())));
    return row;
}

} // namespace axlink2
