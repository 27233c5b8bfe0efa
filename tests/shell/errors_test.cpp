// What is wrong with a program is said in one clear line, and nothing crashes.
#include "shell/run_source.h"

namespace velsh::test {

TEST(SyntaxErrors, NameTheirPlace) {
    expectSeen({
        {"x = ", "1:5: Expected a value, found the end of the program.\n"},
        {"x = 1;\ny = [1 2", "2:9: Expected a value, found the end of the program.\n"},
        {"disp('abc", "1:6: The text isn't ended on its line.\n"},
        {"if 1\n disp(1)",
         "2:9: Expected 'end' of the 'if' in line 1, found the end of the program.\n"},
        {"x = 1; end", "1:8: 'end' has no block that it belongs to.\n"},
        {"x = 1 2", "1:7: Expected the end of the statement, found \"2\".\n"},
        {"1 = 2", "1:1: Only a variable, or a part of one, can be assigned to.\n"},
        {"x = 1 # 2", "1:7: The character # has no meaning here.\n"},
        {"x = 1e", "1:5: The exponent of the number is missing.\n"},
        {"x = 12ab", "1:5: A number can't be followed by a letter.\n"},
        {"function f", "1:1: 'function' isn't part of the language.\n"},
        {"break", "1:1: 'break' has no loop that it belongs to.\n"},
        {"f(1,\n2)", "1:5: Expected a value, found the end of the line.\n"},
    });
}

TEST(RuntimeErrors, SayWhatWasWrongAndTheirIdentifier) {
    expectSeen({
        {"nothing",
         "\"nothing\" is neither a variable nor a function. (VELMAR:UndefinedFunction)\n"},
        {"[1 2] + [1 2 3]",
         "'+' needs arrays of the same size or a scalar: 1x2 and 1x3. (VELMAR:dimagree)\n"},
        {"[1 2] * [3 4]", "'*' of matrices isn't part of the language; '.*' goes element by "
                          "element. (VELMAR:notsupported)\n"},
        {"x = [1 2]; x(3)", "The index, 3, lies beyond the end, 2. (VELMAR:badsubscript)\n"},
        {"x = [1 2]; x(1, 5)", "Subscript 2, 5, lies beyond the end, 2. (VELMAR:badsubscript)\n"},
        {"x = 1; x(0)",
         "A subscript must be a whole number from 1 on, not 0. (VELMAR:badsubscript)\n"},
        {"int8(1) + int16(1)",
         "'+' can't join the integer classes int8 and int16. (VELMAR:wrongtype)\n"},
        {"s.a = 1; s.b", "The struct has no field \"b\". (VELMAR:nosuchfield)\n"},
        {"x = 1; x.a",
         "\".a\" needs a struct or an object before it, not a 1x1 double. (VELMAR:wrongtype)\n"},
        {"[1 2; 3]", "Rows must have the same number of columns: 2 and 1. (VELMAR:dimagree)\n"},
        {"zeros(1e6, 1e6)", "The array would be too large. (VELMAR:toolarge)\n"},
        {"1:Inf", "The range would have too many elements. (VELMAR:toolarge)\n"},
        {"x = fprintf('');",
         "\"fprintf\" gives fewer outputs than are asked for. (VELMAR:maxlhs)\n"},
        {"pi(1)", "\"pi\" takes fewer inputs. (VELMAR:maxrhs)\n"},
        {"c = {1, 2}; x = c{:};",
         "One value is needed here, and the list gives 2. (VELMAR:manyvalues)\n"},
        {"c = {}; x = c{:};", "The expression gives no value. (VELMAR:novalue)\n"},
        {"if 'a' == {1}, end",
         "'==' needs real, full numbers on both sides, not a 1x1 cell. (VELMAR:wrongtype)\n"},
        {"x = 1:3; x(1:2) = [1 2 3];",
         "2 elements are assigned to, but 3 are given. (VELMAR:dimagree)\n"},
    });
}

TEST(RuntimeErrors, NameFileAndLineInAScript) {
    SourceRunner runner;
    EXPECT_EQ(
        runner.run("x = 1;\nif x\n  y = x +...\n   nothing;\nend", "a.vel"),
        "a.vel:3: \"nothing\" is neither a variable nor a function. (VELMAR:UndefinedFunction)\n");
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
