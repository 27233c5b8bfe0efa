// Case folding with the C library's tables for Unicode, whatever locale the program runs in.
#include "platform/fold_case.h"

#include <algorithm>
#include <locale.h>
#include <wctype.h>

namespace platform {

OLECHAR foldCase(OLECHAR unit) noexcept {
    if (unit < 0x80) {
        return unit >= u'a' && unit <= u'z' ? static_cast<OLECHAR>(unit - (u'a' - u'A')) : unit;
    }
    static const locale_t unicode = newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    return unicode ? static_cast<OLECHAR>(towupper_l(unit, unicode)) : unit;
}

int compareNoCase(OleView a, OleView b) noexcept {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        const int difference = foldCase(a[i]) - foldCase(b[i]);
        if (difference != 0) {
            return difference;
        }
    }
    return a.size() == b.size() ? 0 : (a.size() < b.size() ? -1 : 1);
}

} // namespace platform
