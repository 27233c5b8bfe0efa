// The language: what programs print.
#include "shell/run_source.h"

#include <cfenv>

namespace velsh::test {

TEST(Language, ValuesAreShownUnlessASemicolonEndsTheStatement) {
    expectSeen({
        {"x = 5", "x = 5\n"},
        {"x = 5;", ""},
        {"x = 1, y = 2; z = 3", "x = 1\nz = 3\n"},
        {"1 + 1", "ans = 2\n"},
        {"x = 3; x", "x = 3\n"},
        {"t = 'it''s'", "t = it's\n"},
        {"t = ''", "t = ''\n"},
        {"x = 1 + ... the rest\n 2 % end", "x = 3\n"},
    });
}

TEST(Language, ArithmeticFollowsPrecedenceAndClasses) {
    expectSeen({
        {"disp(-2^2 + 3*2)", "2\n"},
        {"disp(2^-1)", "0.5\n"},
        {"disp(num2str(~1 == 0))", "1\n"},
        {"disp(num2str(1:1+2))", "1  2  3\n"},
        {"disp(num2str([1e3 .5 0x1F 1.]))", "1000  0.5  31  1\n"},
        {"disp(num2str([1 2 3] * 2 - 1))", "1  3  5\n"},
        {"disp(num2str([1 2 3] .* [4 5 6] ./ 2))", "2  5  9\n"},
        {"disp(num2str([int8(100) + 100, -int8(-128), uint8(3) - 5]))", "127  127  0\n"},
        {"disp(num2str([int32(2.5), int32(-2.5), int32(7) / 2]))", "3  -3  4\n"},
        {"x = 0.49999999999999994; disp(num2str([int32(x), int32(-x), int8(1) * x]))", "0  0  0\n"},
        {"disp(num2str(int64(9007199254740993) + int64(2)))", "9007199254740994\n"},
        {"disp(class(single(1) + 1))", "single\n"},
        {"disp(num2str('a' + 1))", "98\n"},
        {"disp(\"n = \" + 5)", "n = 5\n"},
        {"disp(num2str([1 -1 0] / 0))", "Inf  -Inf  NaN\n"},
        {"disp(num2str([1 2 3] >= 2))", "0  1  1\n"},
        {"disp(num2str(\"b\" == ['b' \"c\"]))", "1  0\n"},
        {"disp(num2str([1 0 1] & [1 1 0] | 0))", "1  0  0\n"},
        {"disp(num2str(false && unknown))", "0\n"},
        {"disp(num2str(5:-2:1)); disp(num2str(numel(0:0.1:1))); disp(num2str(size(3:1)))",
         "5  3  1\n11\n1  0\n"},
    });
}

TEST(Language, BlanksSeparateElementsWhereTheyShould) {
    expectSeen({
        {"disp(num2str([1 -2]))", "1  -2\n"},
        {"disp(num2str([1-2]))", "-1\n"},
        {"disp(num2str([numel([1 2]), (1) -1]))", "2  1  -1\n"},
        {"x = [4 5]; disp(num2str([x(2) x (1)]))", "5  4  5  1\n"},
        {"disp(num2str(size([1 2\n 3 4\n])))", "2  2\n"},
        {"disp(num2str([1, ...\n 2]))", "1  2\n"},
        {"c = {@(x) x+1, 2}; disp(num2str(c{1}(4)))", "5\n"},
        {"disp(num2str([(1 -2)]))", "-1\n"},
    });
}

TEST(Language, ArraysAreJoined) {
    expectSeen({
        {"a = [1; 2]; disp(num2str([a a+2; 9 9]))", "1  3\n2  4\n9  9\n"},
        {"disp(['a' 66 'c'])", "aBc\n"},
        {"disp(['' 'x' []])", "x\n"},
        {"s = ['a' \"b\"]; disp(class(s)), disp(numel(s))", "string\n2\n"},
        {"disp(class([1 int8(2) single(3)]))", "int8\n"},
        {"c = [{1} 'ab' {2; 3}'];", "1:21: Transposing with ' isn't part of the language.\n"},
        {"c = [{1}, 'ab']; disp(numel(c)), disp(c{2})", "2\nab\n"},
        {"s = [struct('a', 1), struct('a', 2)]; disp(numel(s)), disp(s(2).a)", "2\n2\n"},
        {"c = {1, {2, 3}; 'a', []}; disp(num2str(size(c))), disp(c{1, 2}{2})", "2  2\n3\n"},
    });
}

TEST(Language, PartsAreReadByIndex) {
    expectSeen({
        {"x = [4 5 6]; disp(num2str(x([1 end])))", "4  6\n"},
        {"x = [1 2; 3 4]; disp(num2str(x(2, :))), disp(num2str(x(end)))", "3  4\n4\n"},
        {"x = [1 2; 3 4]; disp(num2str(size(x(:))))", "4  1\n"},
        {"x = [4 5 6]; disp(num2str(x(x > 4)))", "5  6\n"},
        {"x = [1 2 3]; y = [1 2]; disp(x(y(end) + 1))", "3\n"},
        {"c = {1, 2, 3}; disp(num2str([c{2:3}]))", "2  3\n"},
        {"s(2).a = 5; s(1).a = 4; disp(num2str([s.a]))", "4  5\n"},
        {"s = [\"ab\" \"cd\"]; disp(s(2))", "cd\n"},
        {"s.abc = 7; f = 'abc'; disp(s.(f))", "7\n"},
    });
}

TEST(Language, PartsAreAssigned) {
    expectSeen({
        {"x(3) = 5; disp(num2str(x))", "0  0  5\n"},
        {"x = [1 2]; x(2, 3) = 9; disp(num2str(x))", "1  2  0\n0  0  9\n"},
        {"x = zeros(2); x(:, 1) = [1; 2]; x(2, :) = 7; disp(num2str(x))", "1  0\n7  7\n"},
        {"x = [1 2]; y = x; y(1) = 9; disp(num2str(x))", "1  2\n"},
        {"x = int8([1 2]); x(1) = 300; disp(num2str(x))", "127  2\n"},
        {"c = {}; c{3} = 'x'; disp(numel(c)), disp(isempty(c{1}))", "3\n1\n"},
        {"s.a.b(2).c = {1, 2}; s.a.b(2).c{2} = 5; disp(s.a.b(2).c{2})", "5\n"},
        {"s = []; s.x = 1; disp(class(s))", "struct\n"},
        {"[r, c] = size([1 2 3]); disp(num2str([r c]))", "1  3\n"},
        {"[~, c] = size(zeros(2, 5)); disp(c)", "5\n"},
        {"[s.a, x(2)] = size(zeros(2, 5)); disp(s.a), disp(num2str(x))", "2\n0  5\n"},
        {"c = {7, 8}; [a, b] = c{:}; disp(b)", "8\n"},
        {"x = [1 2]; try, x(0) = int8(1); catch, end, disp(class(x))", "double\n"},
    });
}

TEST(Language, StatementsControlTheFlow) {
    expectSeen({
        {"x = 2; if x == 1, disp('one'), elseif x == 2, disp('two'), else, disp('?'), end",
         "two\n"},
        {"if [], disp('yes'), else, disp('no'), end", "no\n"},
        {"if [1 0], disp('yes'), else, disp('no'), end", "no\n"},
        {"for c = [1 2; 3 4]\n disp(c(2))\nend", "3\n4\n"},
        {"for c = {1, 'a'}, disp(class(c)), end", "cell\ncell\n"},
        {"for i = [], disp('never'), end", ""},
        {"for i = 1:9\n if i == 2, continue, end\n if i == 4, break; end\n disp(i)\nend", "1\n3\n"},
        {"i = 0; while i < 3, i = i + 1; end, disp(i)", "3\n"},
        {"try, disp('a'), catch, disp('b'), end", "a\n"},
        {"try\n error('A:b', 'No %d', 5)\ncatch e\n disp(e.message), disp(e.identifier)\nend",
         "No 5\nA:b\n"},
        {"try, error('x'); catch e, disp(e.message), end", "x\n"},
        {"try, error('A:b', 'x'), catch e, rethrow(e), end", "x (A:b)\n"},
    });
}

TEST(Language, FunctionsAreValues) {
    expectSeen({
        {"f = @(a, b) a + 2*b; disp(f(1, 2))", "5\n"},
        {"k = 1; f = @(x) x + k; k = 5; disp(f(1))", "2\n"},
        {"f = @numel; disp(f([1 2 3]))", "3\n"},
        {"f = @(x)  x+1; disp(f)", "@(x)  x+1\n"},
        {"f = @(a, b) a; disp(f(1))", "1\n"},
        {"f = @(x) size(x); [r, c] = f([1 2]); disp(c)", "2\n"},
        {"k = 3; f = @(x) @(y) x + y + k; g = f(1); disp(g(1))", "5\n"},
        {"f = @(~, e) e; disp(f(1, 2))", "2\n"},
    });
}

TEST(Language, FunctionsAnswer) {
    expectSeen({
        {"disp(num2str(pi)), disp(num2str(pi, 8)), disp(num2str(1.5e10)), "
         "disp(num2str(1234.5678)), disp(num2str(true))",
         "3.1416\n3.1415927\n15000000000\n1234.5678\n1\n"},
        {"disp(sprintf('%d|%5.2f|%-4s|%x|%g|%%', 3, pi, 'ab', 255, 0.5))",
         "3| 3.14|ab  |ff|0.5|%\n"},
        {"disp(sprintf('%d,', [1 2 3]))", "1,2,3,\n"},
        {"disp(sprintf('%d %d', 1.5, Inf))", "1.500000e+00 Inf\n"},
        {"fprintf('%s: %g\\n', 'a', 1, 'b', 2)", "a: 1\nb: 2\n"},
        {"x = zeros(2, 3); disp(num2str([size(x) numel(x) length(x) size(x, 2)]))",
         "2  3  6  3  3\n"},
        {"disp(num2str(double(\"12.5\"))), disp(char([72 105])), disp(class(string(5)))",
         "12.5\nHi\nstring\n"},
        {"disp(num2str([strcmp('a', \"a\"), strcmp({'a', 'b'}, 'b'), strcmp(1, '1')]))",
         "1  0  1  0\n"},
        {"disp(num2str([isequal({1, 'a'}, {1, \"a\"}), isequal(1, int8(1), true), isequal(NaN, "
         "NaN), isequal(struct('a', 1), struct('a', 2))]))",
         "1  1  0  0\n"},
        {"disp(num2str([ischar('a') ischar(\"a\") iscell({}) isstruct(struct()) isnumeric(true) "
         "isempty('') isa(int8(1), 'numeric') isvalid(1)]))",
         "1  0  1  1  0  1  1  0\n"},
        {"n = fieldnames(struct('b', 1, 'a', 2)); disp(n{1})", "b\n"},
        {"tic; t = toc; disp(num2str(t >= 0 && t < 60))", "1\n"},
    });
}

// What a call has done to the processor's rounding is over with its statement.
TEST(Language, RoundsAsEverAfterEachStatement) {
    velmar::defineFunction("roundUp", [](auto...) { std::fesetround(FE_UPWARD); });
    SourceRunner runner;
    EXPECT_EQ(runner.run("roundUp()\nfprintf('%.17g', 1/3)"), "0.33333333333333331");
}

} // namespace velsh::test
