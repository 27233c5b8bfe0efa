// Subscripts by shape: fewer, as many and more of them than the array has dimensions.
#include "shell/run_source.h"

namespace velsh::test {

// Size and elements in column order; a 2-by-3 matrix and a 2-by-3-by-2 array that count up.
constexpr const char* prologue =
    "show = @(v) disp([sprintf('%d ', size(v)) '|' sprintf(' %d', v)]);\n"
    "m = [1 3 5; 2 4 6]; t = zeros(2, 3, 2); t(:) = 1:12; e = [];\n";

TEST(Subscripts, ReadPlacesOfAnyShape) {
    expectSeen(
        {
            {"show(m(:))", "6 1 | 1 2 3 4 5 6\n"},
            {"show(m(:, :, 1))", "2 3 | 1 2 3 4 5 6\n"},
            {"show(m(2, end, 1, 1))", "1 1 | 6\n"},
            {"show(m(:, 3, [1 1]))", "2 1 2 | 5 6 5 6\n"},
            {"show(m([1 6; 2 5]))", "2 2 | 1 2 6 5\n"},
            {"show(t(2, :))", "1 6 | 2 4 6 8 10 12\n"},
            {"show(t(2, end - 1)), show(t(end)), show(t(end, 1, end))",
             "1 1 | 10\n1 1 | 12\n1 1 | 8\n"},
            {"show(t(:, [3 1], 2))", "2 2 | 11 12 7 8\n"},
            {"show(t(:, 2, :, 1))", "2 1 2 | 3 4 9 10\n"},
            {"show(t(t > 10)), show(t([])), show(t(:, :, []))", "2 1 | 11 12\n0 0 | \n2 3 0 | \n"},
            {"c = cell(1, 2, 2); c{1, 2, 2} = 7; c{4, 1, 1}",
             "Subscript 1, 4, lies beyond the end, 1. (VELMAR:badsubscript)\n"},
            {"m(1, 1, 2)", "Subscript 3, 2, lies beyond the end, 1. (VELMAR:badsubscript)\n"},
            {"t(1, 7)", "Subscript 2, 7, lies beyond the end, 6. (VELMAR:badsubscript)\n"},
            {"t(13)", "The index, 13, lies beyond the end, 12. (VELMAR:badsubscript)\n"},
        },
        prologue);
}

TEST(Subscripts, AssignToPlacesOfAnyShape) {
    const char* const byDimension =
        "An array grows only with one subscript for each dimension. (VELMAR:badsubscript)\n";
    const char* const bySingle =
        "A matrix can't grow by a single index; use a row and a column. (VELMAR:badsubscript)\n";
    expectSeen(
        {
            {"m(:, :, 1) = [9 8 7; 6 5 4]; show(m)", "2 3 | 9 6 8 5 7 4\n"},
            {"m(2, 2, 1, 1) = 7; show(m)", "2 3 | 1 2 3 7 5 6\n"},
            {"m(:, 2:3, 1, 1) = 0; show(m)", "2 3 | 1 2 0 0 0 0\n"},
            {"m(3, 1, 1) = 7; show(m)", "3 3 | 1 2 7 3 4 0 5 6 0\n"},
            {"m(:, :, 2) = 7; show(m)", "2 3 2 | 1 2 3 4 5 6 7 7 7 7 7 7\n"},
            {"t(2, 5) = 0; show(t)", "2 3 2 | 1 2 3 4 5 6 7 8 9 0 11 12\n"},
            {"t(1, :) = 0; show(t)", "2 3 2 | 0 2 0 4 0 6 0 8 0 10 0 12\n"},
            {"t(1, 3, 2, 1) = 0; show(t)", "2 3 2 | 1 2 3 4 5 6 7 8 9 10 0 12\n"},
            {"t(t < 12) = 0; show(t)", "2 3 2 | 0 0 0 0 0 0 0 0 0 0 0 12\n"},
            {"e(:, :, 1) = [1 2; 3 4]; show(e)", "2 2 | 1 3 2 4\n"},
            {"e(2, 1, 2) = 5; show(e)", "2 1 2 | 0 0 0 5\n"},
            {"x = 'abcd'; x(1, 2:3, 1) = 'xy'; disp(x)", "axyd\n"},
            {"s = [\"a\" \"b\"]; s(:, 2, 1) = \"z\"; disp(s(2))", "z\n"},
            {"c = {1, 2}; c{1, 2, 1} = 'x'; disp(c{2}), c{1, 1, 2} = 3; show(size(c))",
             "x\n1 3 | 1 2 2\n"},
            {"r(1, 1, 2).a = 4; r(1, 1, 1).a = 3; show([r(1).a r(2).a])", "1 2 | 3 4\n"},
            {"t(1, 7) = 1", byDimension},
            {"m(7) = 1", bySingle},
            {"m(:, :, 1) = [1 2]", "6 elements are assigned to, but 2 are given. "
                                   "(VELMAR:dimagree)\n"},
        },
        prologue);
}

} // namespace velsh::test
