// Case folding with the system's own tables, whatever locale the program runs in.
#include "platform/fold_case.h"

namespace platform {

OLECHAR foldCase(OLECHAR unit) noexcept {
    OLECHAR folded = unit;
    LCMapStringEx(LOCALE_NAME_INVARIANT, LCMAP_UPPERCASE, &unit, 1, &folded, 1, nullptr, nullptr,
                  0);
    return folded;
}

int compareNoCase(OleView a, OleView b) noexcept {
    // A view of nothing may point nowhere, which the system refuses.
    if (a.empty() || b.empty()) return static_cast<int>(!a.empty()) - static_cast<int>(!b.empty());
    return CompareStringOrdinal(a.data(), static_cast<int>(a.size()), b.data(),
                                static_cast<int>(b.size()), TRUE) -
           CSTR_EQUAL;
}

} // namespace platform
