// The language: what programs print.
#include "shell/run_source.h"

namespace velsh::test {

TEST(Language, ValuesAreShownUnlessASemicolonEndsTheStatement) {
    expectSeen({
        {"assignment", "x = 5", "x = 5\n"},
        {"hidden", "x = 5;", ""},
        {"several on a line", "x = 1, y = 2; z = 3", "x = 1\nz = 3\n"},
        {"an expression is ans", "1 + 1", "ans = 2\n"},
        {"a variable keeps its name", "x = 3; x", "x = 3\n"},
        {"text", "t = 'it''s'", "t = it's\n"},
        {"empty text", "t = ''", "t = ''\n"},
        {"comment and continuation", "x = 1 + ... the rest\n 2 % end", "x = 3\n"},
        {"nothing from a statement without value", "fprintf('a\\n')", "a\n"},
    });
}

TEST(Language, ArithmeticFollowsPrecedenceAndClasses) {
    expectSeen({
        {"precedence", "disp(-2^2 + 3*2)", "2\n"},
        {"signed exponent", "disp(2^-1)", "0.5\n"},
        {"not binds closer than equality", "disp(num2str(~1 == 0))", "1\n"},
        {"a range takes sums", "disp(num2str(1:1+2))", "1  2  3\n"},
        {"numbers", "disp(num2str([1e3 .5 0x1F 1.]))", "1000  0.5  31  1\n"},
        {"scalar expansion", "disp(num2str([1 2 3] * 2 - 1))", "1  3  5\n"},
        {"element by element", "disp(num2str([1 2 3] .* [4 5 6] ./ 2))", "2  5  9\n"},
        {"integers saturate", "disp(num2str([int8(100) + 100, -int8(-128), uint8(3) - 5]))",
         "127  127  0\n"},
        {"halves round away from zero", "disp(num2str([int32(2.5), int32(-2.5), int32(7) / 2]))",
         "3  -3  4\n"},
        {"64 bits are exact", "disp(num2str(int64(9007199254740993) + int64(2)))",
         "9007199254740994\n"},
        {"single stays single", "disp(class(single(1) + 1))", "single\n"},
        {"text counts as numbers", "disp(num2str('a' + 1))", "98\n"},
        {"strings join", "disp(\"n = \" + 5)", "n = 5\n"},
        {"division by zero", "disp(num2str([1 -1 0] / 0))", "Inf  -Inf  NaN\n"},
        {"comparison", "disp(num2str([1 2 3] >= 2))", "0  1  1\n"},
        {"strings compare as text", "disp(num2str(\"b\" == ['b' \"c\"]))", "1  0\n"},
        {"logic", "disp(num2str([1 0 1] & [1 1 0] | 0))", "1  0  0\n"},
        {"the right side isn't evaluated in vain", "disp(num2str(false && unknown))", "0\n"},
        {"ranges", "disp(num2str(5:-2:1)); disp(num2str(numel(0:0.1:1))); disp(num2str(size(3:1)))",
         "5  3  1\n11\n1  0\n"},
    });
}

TEST(Language, BlanksSeparateElementsWhereTheyShould) {
    expectSeen({
        {"minus of its own", "disp(num2str([1 -2]))", "1  -2\n"},
        {"minus between", "disp(num2str([1 - 2]))", "-1\n"},
        {"minus without blanks", "disp(num2str([1-2]))", "-1\n"},
        {"commas and calls", "disp(num2str([numel([1 2]), (1) -1]))", "2  1  -1\n"},
        {"no blank before an index", "x = [4 5]; disp(num2str([x(2) x (1)]))", "5  4  5  1\n"},
        {"lines are rows", "disp(num2str(size([1 2\n 3 4\n])))", "2  2\n"},
        {"a continued row", "disp(num2str([1, ...\n 2]))", "1  2\n"},
        {"functions in a cell", "c = {@(x) x+1, 2}; disp(num2str(c{1}(4)))", "5\n"},
        {"parentheses end the rule", "disp(num2str([(1 -2)]))", "-1\n"},
    });
}

TEST(Language, ArraysAreJoined) {
    expectSeen({
        {"columns", "disp(num2str([1 2; 3 4]))", "1  2\n3  4\n"},
        {"blocks", "a = [1; 2]; disp(num2str([a a+2; 9 9]))", "1  3\n2  4\n9  9\n"},
        {"text with numbers", "disp(['a' 66 'c'])", "aBc\n"},
        {"text with empties", "disp(['' 'x' []])", "x\n"},
        {"strings", "s = ['a' \"b\"]; disp(class(s)), disp(numel(s))", "string\n2\n"},
        {"integers win", "disp(class([1 int8(2) single(3)]))", "int8\n"},
        {"cells take others in", "c = [{1} 'ab' {2; 3}'];",
         "1:21: Transposing with ' isn't part "
         "of the language.\n"},
        {"cells", "c = [{1}, 'ab']; disp(numel(c)), disp(c{2})", "2\nab\n"},
        {"structs", "s = [struct('a', 1), struct('a', 2)]; disp(numel(s)), disp(s(2).a)", "2\n2\n"},
        {"nested cells", "c = {1, {2, 3}; 'a', []}; disp(num2str(size(c))), disp(c{1, 2}{2})",
         "2  2\n3\n"},
    });
}

TEST(Language, PartsAreReadByIndex) {
    expectSeen({
        {"single index", "x = [4 5 6]; disp(num2str(x([1 end])))", "4  6\n"},
        {"rows and columns", "x = [1 2; 3 4]; disp(num2str(x(2, :))), disp(num2str(x(end)))",
         "3  4\n4\n"},
        {"all as a column", "x = [1 2; 3 4]; disp(num2str(size(x(:))))", "4  1\n"},
        {"mask", "x = [4 5 6]; disp(num2str(x(x > 4)))", "5  6\n"},
        {"end of a function's argument", "x = [4 5 6]; disp(x(min1(end)))",
         "\"min1\" is neither a variable nor a function. (VELMAR:UndefinedFunction)\n"},
        {"nested end", "x = [1 2 3]; y = [1 2]; disp(x(y(end) + 1))", "3\n"},
        {"text", "t = 'hello'; disp(t([1 end]))", "ho\n"},
        {"list of a cell", "c = {1, 2, 3}; disp(num2str([c{2:3}]))", "2  3\n"},
        {"list of a struct array", "s(2).a = 5; s(1).a = 4; disp(num2str([s.a]))", "4  5\n"},
        {"string", "s = [\"ab\" \"cd\"]; disp(s(2))", "cd\n"},
        {"dynamic field", "s.abc = 7; f = 'abc'; disp(s.(f))", "7\n"},
    });
}

TEST(Language, PartsAreAssigned) {
    expectSeen({
        {"grow", "x(3) = 5; disp(num2str(x))", "0  0  5\n"},
        {"matrix", "x = [1 2]; x(2, 3) = 9; disp(num2str(x))", "1  2  0\n0  0  9\n"},
        {"rows", "x = zeros(2); x(:, 1) = [1; 2]; x(2, :) = 7; disp(num2str(x))", "1  0\n7  7\n"},
        {"a copy is its own", "x = [1 2]; y = x; y(1) = 9; disp(num2str(x))", "1  2\n"},
        {"class of the array stays", "x = int8([1 2]); x(1) = 300; disp(num2str(x))", "127  2\n"},
        {"cell", "c = {}; c{3} = 'x'; disp(numel(c)), disp(isempty(c{1}))", "3\n1\n"},
        {"nested", "s.a.b(2).c = {1, 2}; s.a.b(2).c{2} = 5; disp(s.a.b(2).c{2})", "5\n"},
        {"struct from nothing", "s = []; s.x = 1; disp(class(s))", "struct\n"},
        {"several targets", "[r, c] = size([1 2 3]); disp(num2str([r c]))", "1  3\n"},
        {"targets not wanted", "[~, c] = size(zeros(2, 5)); disp(c)", "5\n"},
        {"target in a part", "[s.a, x(2)] = size(zeros(2, 5)); disp(s.a), disp(num2str(x))",
         "2\n0  5\n"},
        {"list to targets", "c = {7, 8}; [a, b] = c{:}; disp(b)", "8\n"},
        {"a failed assignment changes nothing",
         "x = [1 2]; try, x(0) = int8(1); catch, end, disp(class(x))", "double\n"},
    });
}

TEST(Language, StatementsControlTheFlow) {
    expectSeen({
        {"if", "x = 2; if x == 1, disp('one'), elseif x == 2, disp('two'), else, disp('?'), end",
         "two\n"},
        {"an empty condition is false", "if [], disp('yes'), else, disp('no'), end", "no\n"},
        {"all must be true", "if [1 0], disp('yes'), else, disp('no'), end", "no\n"},
        {"for over columns", "for c = [1 2; 3 4], disp(num2str(sum2(c)))\nend",
         "\"sum2\" is neither a variable nor a function. (VELMAR:UndefinedFunction)\n"},
        {"columns", "for c = [1 2; 3 4]\n disp(c(2))\nend", "3\n4\n"},
        {"for over a cell", "for c = {1, 'a'}, disp(class(c)), end", "cell\ncell\n"},
        {"nothing to go over", "for i = [], disp('never'), end", ""},
        {"break and continue",
         "for i = 1:9\n if i == 2, continue, end\n if i == 4, break; end\n disp(i)\nend", "1\n3\n"},
        {"while", "i = 0; while i < 3, i = i + 1; end, disp(i)", "3\n"},
        {"try without error", "try, disp('a'), catch, disp('b'), end", "a\n"},
        {"catch",
         "try\n error('A:b', 'No %d', 5)\ncatch e\n disp(e.message), disp(e.identifier)\n"
         "end",
         "No 5\nA:b\n"},
        {"catch on one line", "try, error('x'); catch e, disp(e.message), end", "x\n"},
        {"rethrow", "try, error('A:b', 'x'), catch e, rethrow(e), end", "x (A:b)\n"},
    });
}

TEST(Language, FunctionsAreValues) {
    expectSeen({
        {"anonymous", "f = @(a, b) a + 2*b; disp(f(1, 2))", "5\n"},
        {"variables are captured as they were", "k = 1; f = @(x) x + k; k = 5; disp(f(1))", "2\n"},
        {"named", "f = @numel; disp(f([1 2 3]))", "3\n"},
        {"shown as written", "f = @(x)  x+1; disp(f)", "@(x)  x+1\n"},
        {"inputs left out", "f = @(a, b) a; disp(f(1))", "1\n"},
        {"several outputs", "f = @(x) size(x); [r, c] = f([1 2]); disp(c)", "2\n"},
        {"nested", "k = 3; f = @(x) @(y) x + y + k; g = f(1); disp(g(1))", "5\n"},
        {"unused input", "f = @(~, e) e; disp(f(1, 2))", "2\n"},
    });
}

TEST(Language, FunctionsAnswer) {
    expectSeen({
        {"num2str",
         "disp(num2str(pi)), disp(num2str(pi, 8)), disp(num2str(1.5e10)), "
         "disp(num2str(1234.5678)), disp(num2str(true))",
         "3.1416\n3.1415927\n15000000000\n1234.5678\n1\n"},
        {"sprintf", "disp(sprintf('%d|%5.2f|%-4s|%x|%g|%%', 3, pi, 'ab', 255, 0.5))",
         "3| 3.14|ab  |ff|0.5|%\n"},
        {"sprintf repeats", "disp(sprintf('%d,', [1 2 3]))", "1,2,3,\n"},
        {"sprintf of what is no integer", "disp(sprintf('%d %d', 1.5, Inf))", "1.500000e+00 Inf\n"},
        {"fprintf", "fprintf('%s: %g\\n', 'a', 1, 'b', 2)", "a: 1\nb: 2\n"},
        {"sizes", "x = zeros(2, 3); disp(num2str([size(x) numel(x) length(x) size(x, 2)]))",
         "2  3  6  3  3\n"},
        {"conversion",
         "disp(num2str(double(\"12.5\"))), disp(char([72 105])), "
         "disp(class(string(5)))",
         "12.5\nHi\nstring\n"},
        {"strcmp", "disp(num2str([strcmp('a', \"a\"), strcmp({'a', 'b'}, 'b'), strcmp(1, '1')]))",
         "1  0  1  0\n"},
        {"isequal",
         "disp(num2str([isequal({1, 'a'}, {1, \"a\"}), isequal(1, int8(1), true), "
         "isequal(NaN, NaN), isequal(struct('a', 1), struct('a', 2))]))",
         "1  1  0  0\n"},
        {"tests",
         "disp(num2str([ischar('a') ischar(\"a\") iscell({}) isstruct(struct()) "
         "isnumeric(true) isempty('') isa(int8(1), 'numeric') isvalid(1)]))",
         "1  0  1  1  0  1  1  0\n"},
        {"fieldnames", "n = fieldnames(struct('b', 1, 'a', 2)); disp(n{1})", "b\n"},
        {"toc", "tic; t = toc; disp(num2str(t >= 0 && t < 60))", "1\n"},
    });
}

} // namespace velsh::test
