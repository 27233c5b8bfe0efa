// What is wrong with a program is said in one clear line, and nothing crashes.
#include "shell/run_source.h"

namespace velsh::test {

TEST(SyntaxErrors, NameTheirPlace) {
    expectSeen({
        {"missing value", "x = ", "1:5: Expected a value, found the end of the program.\n"},
        {"second line", "x = 1;\ny = [1 2",
         "2:9: Expected a value, found the end of the program.\n"},
        {"open text", "disp('abc", "1:6: The text isn't ended on its line.\n"},
        {"missing end", "if 1\n disp(1)",
         "2:9: Expected 'end' of the 'if' in line 1, found the end of the program.\n"},
        {"too many ends", "x = 1; end", "1:8: 'end' has no block that it belongs to.\n"},
        {"two values", "x = 1 2", "1:7: Expected the end of the statement, found \"2\".\n"},
        {"no target", "1 = 2", "1:1: Only a variable, or a part of one, can be assigned to.\n"},
        {"unknown character", "x = 1 # 2", "1:7: The character # has no meaning here.\n"},
        {"bad number", "x = 1e", "1:5: The exponent of the number is missing.\n"},
        {"number and letter", "x = 12ab", "1:5: A number can't be followed by a letter.\n"},
        {"a larger language", "function f", "1:1: 'function' isn't part of the language.\n"},
        {"a jump without loop", "break", "1:1: 'break' has no loop that it belongs to.\n"},
        {"a newline in a call", "f(1,\n2)", "1:5: Expected a value, found the end of the line.\n"},
    });
}

TEST(RuntimeErrors, SayWhatWasWrongAndTheirIdentifier) {
    expectSeen({
        {"unknown name", "nothing",
         "\"nothing\" is neither a variable nor a function. (VELMAR:UndefinedFunction)\n"},
        {"sizes", "[1 2] + [1 2 3]",
         "'+' needs arrays of the same size or a scalar: 1x2 and 1x3. "
         "(VELMAR:dimagree)\n"},
        {"matrix product", "[1 2] * [3 4]",
         "'*' of matrices isn't part of the language; '.*' goes "
         "element by element. (VELMAR:notsupported)\n"},
        {"beyond the end", "x = [1 2]; x(3)",
         "The index, 3, lies beyond the end, 2. (VELMAR:badsubscript)\n"},
        {"beyond a column", "x = [1 2]; x(1, 5)",
         "Subscript 2, 5, lies beyond the end, 2. (VELMAR:badsubscript)\n"},
        {"index 0", "x = 1; x(0)",
         "A subscript must be a whole number from 1 on, not 0. (VELMAR:badsubscript)\n"},
        {"integer classes", "int8(1) + int16(1)",
         "'+' can't join the integer classes int8 and "
         "int16. (VELMAR:wrongtype)\n"},
        {"field", "s.a = 1; s.b", "The struct has no field \"b\". (VELMAR:nosuchfield)\n"},
        {"field of a number", "x = 1; x.a",
         "\".a\" needs a struct or an object before it, not a 1x1 double. (VELMAR:wrongtype)\n"},
        {"rows", "[1 2; 3]",
         "Rows must have the same number of columns: 2 and 1. (VELMAR:dimagree)\n"},
        {"too large", "zeros(1e6, 1e6)", "The array would be too large. (VELMAR:toolarge)\n"},
        {"a range without end", "1:Inf",
         "The range would have too many elements. (VELMAR:toolarge)\n"},
        {"no value", "x = fprintf('');",
         "\"fprintf\" gives fewer outputs than are asked for. (VELMAR:maxlhs)\n"},
        {"too many inputs", "pi(1)", "\"pi\" takes fewer inputs. (VELMAR:maxrhs)\n"},
        {"list where one value is needed", "c = {1, 2}; x = c{:};",
         "One value is needed here, and the list gives 2. (VELMAR:manyvalues)\n"},
        {"empty list", "c = {}; x = c{:};", "The expression gives no value. (VELMAR:novalue)\n"},
        {"condition", "if 'a' == {1}, end",
         "'==' needs real, full numbers on both sides, not a 1x1 cell. (VELMAR:wrongtype)\n"},
        {"count", "x = 1:3; x(1:2) = [1 2 3];",
         "2 elements are assigned to, but 3 are given. (VELMAR:dimagree)\n"},
    });
}

TEST(RuntimeErrors, NameFileAndLineInAScript) {
    SourceRunner runner;
    EXPECT_EQ(runner.run("x = 1;\nif x\n  y = x +...\n   nothing;\nend", "a.vel"),
              "a.vel:3: \"nothing\" is neither a variable nor a function. "
              "(VELMAR:UndefinedFunction)\n");
    EXPECT_EQ(runner.run("x = (", "a.vel"),
              "a.vel:1:6: Expected a value, found the end of the program.\n");
}

std::string repeated(const std::string& text, int times) {
    std::string all;
    for (int i = 0; i < times; ++i)
        all += text;
    return all;
}

TEST(Limits, ProgramsThatNestTooDeeplyAreRefused) {
    const int many = 100000;
    const std::string programs[] = {
        "x = " + repeated("(", many),
        "x = " + repeated("-", many) + "1",
        "x = 1" + repeated("+1", many),
        "x = " + repeated("[", many),
        "x = 2" + repeated("^2", many),
        "x = " + repeated("{", many),
        repeated("if 1\n", many),
        "x = 1" + repeated("(1)", many),
        "f = " + repeated("@() ", many) + "1",
        "x = 1" + repeated(" || 1", many),
    };
    for (const std::string& program : programs) {
        SourceRunner runner;
        const std::string seen = runner.run(program);
        EXPECT_NE(seen.find("nested too deeply"), std::string::npos)
            << program.substr(0, 12) << ": " << seen;
    }
}

TEST(Limits, FunctionsThatCallThemselvesWithoutEndAreStopped) {
    SourceRunner runner;
    EXPECT_EQ(runner.run("f = @(g) g(g); f(f)"),
              "The functions call each other, or are nested, too deeply. (VELMAR:toodeep)\n");
    EXPECT_EQ(runner.run("disp('alive')"), "alive\n");
}

TEST(Limits, NothingOutlivesAProgramThatFails) {
    // What the first one makes for good is no leak.
    { SourceRunner().run("error('x')"); }
    const std::size_t arrays = hxLiveArrayCount();
    {
        SourceRunner runner;
        runner.run("c = {1, 'a', struct('x', {{2}})}; f = @(x) c{x}; y = {c, f(2), unknown}");
        runner.run("s.a = c; s.a{1}(3) = 'x' + {1}");
    }
    EXPECT_EQ(hxLiveArrayCount(), arrays);
}

} // namespace velsh::test
