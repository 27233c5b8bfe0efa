// Objects in programs: member chains, assignment to members, listeners.
#include "shell/run_source.h"
#include "shell/widget_class.h"

namespace velsh::test {

namespace {

class Objects : public testing::Test {
  protected:
    void SetUp() override { defineWidgets(); }
    void TearDown() override { EXPECT_EQ(velmar::liveObjectCount(), 0u); }

    template <std::size_t count>
    static void expectSeenBehindPrologue(const Case (&cases)[count]) {
        expectSeen(cases, "h = widget('a'); h.Child = widget('b');\n");
    }
};

} // namespace

TEST_F(Objects, MembersAreReadAndCalledInChains) {
    expectSeenBehindPrologue({
        {"disp(h.Name)", "a\n"},
        {"disp(h.Add(1, 2))", "3\n"},
        {"disp(Add(h, 1, 2))", "3\n"},
        {"[w, r] = h.Split(2.5); disp(w), disp(r)", "2\n0.5\n"},
        {"disp(h.Child.Item(2).Name)", "b\n"},
        {"disp(h.Size(2)), disp(h.Name(end))", "4\na\n"},
        {"m = 'Add'; disp(h.(m)(1, 1))", "2\n"},
        {"disp(class(h)), disp(isvalid(h)), disp(isequal(h, h.Child))", "Test.Widget\n1\n0\n"},
        {"a = [h h.Child]; disp(a(2).Name), disp(numel(a))", "b\n2\n"},
        {"Test.Widget('x')", "The class Test.Widget can't be called as a function: it has no "
                             "constructor. (VELMAR:class:NoConstructor)\n"},
        {"Test.Other(1)", "There is no class \"Test.Other\" yet: actxserver makes the class of a "
                          "server. (VELMAR:UndefinedFunction)\n"},
        {"h.Nothing", "The class Test.Widget has no method or property named 'Nothing'. "
                      "(VELMAR:UndefinedFunction)\n"},
    });
}

TEST_F(Objects, NamedAloneShowWhatTheyHave) {
    const char* overview = "h = Test.Widget object\n"
                           "\nProperties\n"
                           "  Name    'a'                any\n"
                           "  Child   [1x1 Test.Widget]  any\n"
                           "  delete  []                 any\n"
                           "  Size    [3 4]              any     read only\n"
                           "  Finish  <It is wet.>       Finish  read only\n"
                           "\nMethods\n"
                           "  Add     Split   Item    Fire    delete\n"
                           "\nEvents\n"
                           "  Ticked\n"
                           "\nmethods(h) shows how they are called.\n";
    expectSeenBehindPrologue({
        {"h", overview},
        {"m = methods(h); disp(m{1})", "Add\n"},
        {"h.Child\nx = h", "ans = Test.Widget object\nx = Test.Widget object\n"},
        {"v = [h h.Child];\nv", "v = 1x2 Test.Widget array\n"},
        {"delete(h)\nh", "h = handle to a deleted Test.Widget object\n"},
    });
}

TEST_F(Objects, ClassesAreShownWithoutASystemsDescription) {
    SourceRunner runner;
    const std::string seen = runner.run("methods(widget('a'))");
    for (const char* part :
         {"Test.Widget\n\nMethods\n  any = Add(double scalar, double scalar)\n  [any, any] = "
          "Split(",
          "\nProperties\n  Name    any     read-write\n", "\nEvents\n  EventID   Ticked\n",
          "\nEnumerations\n  Finish  glossy  0\n          matt    1\n"})
        EXPECT_NE(seen.find(part), std::string::npos) << part << seen;
}

TEST_F(Objects, MembersAreAssigned) {
    expectSeenBehindPrologue({
        {"h.Name = 'x'; disp(h.Name)", "x\n"},
        {"h.Child.Name = 'x'; disp(h.Child.Name)", "x\n"},
        {"h.Item(3).Name = 'x'; disp(h.Name)", "a\n"},
        {"h.Name(3) = 'z'; disp(double(h.Name(2))), disp(h.Name(3))", "0\nz\n"},
        {"a = [h h.Child]; a(2).Name = 'x'; disp(h.Child.Name)", "x\n"},
        {"s.w = h; s.w.Name = 'x'; disp(h.Name)", "x\n"},
        {"h.Item(3) = 'x'",
         "\"Item\" is a method of Test.Widget; what it gives can't be assigned to. set(object, "
         "'Item', ...) writes a property with arguments. (VELMAR:notassignable)\n"},
        {"try, h.Size = 1; catch e, disp(e.identifier), end", "VELMAR:class:ReadOnlyProperty\n"},
    });
}

TEST_F(Objects, ListenersRunUntilTheyAreDeleted) {
    expectSeenBehindPrologue({
        {"addlistener(h, 'Ticked', @(src, event) fprintf('%s %d\\n', src.Name, "
         "event.Count));\nh.Fire(7)",
         "a 7\n"},
        {"l = addlistener(h, 'Ticked', @(s, e) disp(e.Count)); l = 1; h.Fire(1)", "1\n"},
        {"l = addlistener(h, 'Ticked', @(s, e) disp(e.Count)); h.Fire(1); delete(l); h.Fire(2); "
         "disp(isvalid(l))",
         "1\n0\n"},
        {"l = addlistener(h, 'Ticked', @(s, e) disp(e.Count)); l.Enabled = false; h.Fire(1); "
         "disp(l.Enabled), l.Enabled = 1; h.Fire(2); delete(h); disp(l.Enabled)",
         "0\n2\n0\n"},
        {"l = addlistener(h, 'Ticked', @disp); l.Enabled = 'no';",
         "A value that is 1-by-2 char can't be converted to logical scalar. "
         "(VELMAR:array:WrongConversion)\n"},
        {"addlistener(h, 'Ticked', @(s, e) unknown); addlistener(h, 'Ticked', @(s, e) disp('on'));"
         "h.Fire(1)",
         "warning VELMAR:class:ListenerFailed\non\n"},
        {"try, addlistener(h, 'X', @disp); catch e, disp(e.identifier), end",
         "VELMAR:class:UndefinedEvent\n"},
        {"addlistener(h, 'Ticked', @(s, e) disp(h.Name)); h.Fire(1)", "a\n"},
        {"addlistener(h, 'Ticked', @(s, e) s.Fire(1)); try, h.Fire(1), catch e, end, disp('ok')",
         "warning VELMAR:class:ListenerFailed\nok\n"},
        {"delete(h); disp(isvalid(h)), try, h.Name, catch e, disp(e.identifier), end",
         "0\nVELMAR:class:InvalidHandle\n"},
    });
}

} // namespace velsh::test
