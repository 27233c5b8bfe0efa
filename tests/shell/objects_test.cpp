// Objects in programs: member chains, assignment to members, listeners.
#include "shell/run_source.h"
#include "shell/widget_class.h"

namespace velsh::test {

namespace {

constexpr const char* prologue = "h = widget('a'); h.Child = widget('b');\n";

class Objects : public testing::Test {
  protected:
    void SetUp() override { defineWidgets(); }
    void TearDown() override { EXPECT_EQ(velmar::liveObjectCount(), 0u); }

    template <std::size_t count>
    void expectSeenBehindPrologue(const Case (&cases)[count]) {
        for (const Case& row : cases) {
            SourceRunner runner;
            EXPECT_EQ(runner.run(prologue + std::string(row.source)), row.seen)
                << row.what << ": " << row.source;
        }
    }
};

} // namespace

TEST_F(Objects, MembersAreReadAndCalledInChains) {
    expectSeenBehindPrologue({
        {"property", "disp(h.Name)", "a\n"},
        {"method", "disp(h.Add(1, 2))", "3\n"},
        {"method as function", "disp(Add(h, 1, 2))", "3\n"},
        {"several outputs", "[w, r] = h.Split(2.5); disp(w), disp(r)", "2\n0.5\n"},
        {"chain", "disp(h.Child.Item(2).Name)", "b\n"},
        {"index behind a property", "disp(h.Size(2)), disp(h.Name(end))", "4\na\n"},
        {"name from text", "m = 'Add'; disp(h.(m)(1, 1))", "2\n"},
        {"class", "disp(class(h)), disp(isvalid(h)), disp(isequal(h, h.Child))",
         "Test.Widget\n1\n0\n"},
        {"arrays of objects", "a = [h h.Child]; disp(a(2).Name), disp(numel(a))", "b\n2\n"},
        {"no such member", "h.Nothing",
         "The class Test.Widget has no method or property named 'Nothing'. "
         "(VELMAR:UndefinedFunction)\n"},
    });
}

TEST_F(Objects, NamedAloneShowWhatTheyHave) {
    const char* overview = "h = Test.Widget object\n"
                           "\nProperties\n"
                           "  Name    'a'                any\n"
                           "  Child   [1x1 Test.Widget]  any\n"
                           "  Size    [3 4]              any     read only\n"
                           "  Finish  <It is wet.>       Finish  read only\n"
                           "\nMethods\n"
                           "  Add     Split   Item    Fire    delete\n"
                           "\nEvents\n"
                           "  Ticked\n"
                           "\nmethods(h) shows how they are called.\n";
    const char* classTables = "Test.Widget\n"
                              "\nMethods\n"
                              "  any = Add(double scalar, double scalar)\n"
                              "  [any, any] = Split(double scalar)\n"
                              "  any = Item(double scalar)\n"
                              "  Fire(double scalar)\n"
                              "  delete()\n"
                              "\nProperties\n"
                              "  Name    any     read-write\n"
                              "  Child   any     read-write\n"
                              "  Size    any     read\n"
                              "  Finish  Finish  read\n"
                              "\nEvents\n"
                              "  EventID   Ticked\n"
                              "\nEnumerations\n"
                              "  Finish  glossy  0\n"
                              "          matt    1\n";
    expectSeenBehindPrologue({
        {"an object", "h", overview},
        {"its class", "methods(h)", classTables},
        {"the names of methods", "m = methods(h); disp(m{1})", "Add\n"},
        {"other expressions", "h.Child\nx = h",
         "ans = Test.Widget object\nx = Test.Widget object\n"},
        {"several objects", "v = [h h.Child];\nv", "v = 1x2 Test.Widget array\n"},
        {"an object that has ended", "delete(h)\nh",
         "h = handle to a deleted Test.Widget object\n"},
    });
}

TEST_F(Objects, MembersAreAssigned) {
    expectSeenBehindPrologue({
        {"property", "h.Name = 'x'; disp(h.Name)", "x\n"},
        {"of a child", "h.Child.Name = 'x'; disp(h.Child.Name)", "x\n"},
        {"through a method", "h.Item(3).Name = 'x'; disp(h.Name)", "a\n"},
        {"a part of a value", "h.Name(3) = 'z'; disp(double(h.Name(2))), disp(h.Name(3))",
         "0\nz\n"},
        {"one of several", "a = [h h.Child]; a(2).Name = 'x'; disp(h.Child.Name)", "x\n"},
        {"an object in a struct", "s.w = h; s.w.Name = 'x'; disp(h.Name)", "x\n"},
        {"a method", "h.Item(3) = 'x'",
         "\"Item\" is a method of Test.Widget; what it gives can't be assigned to. set(object, "
         "'Item', ...) writes a property with arguments. (VELMAR:notassignable)\n"},
        {"read only", "try, h.Size = 1; catch e, disp(e.identifier), end",
         "VELMAR:class:ReadOnlyProperty\n"},
    });
}

TEST_F(Objects, ListenersRunUntilTheyAreDeleted) {
    expectSeenBehindPrologue({
        {"event",
         "addlistener(h, 'Ticked', @(src, event) fprintf('%s %d\\n', src.Name, "
         "event.Count));\nh.Fire(7)",
         "a 7\n"},
        {"losing the listener changes nothing",
         "l = addlistener(h, 'Ticked', @(s, e) disp(e.Count)); l = 1; h.Fire(1)", "1\n"},
        {"deleted",
         "l = addlistener(h, 'Ticked', @(s, e) disp(e.Count)); h.Fire(1); delete(l); "
         "h.Fire(2); disp(isvalid(l))",
         "1\n0\n"},
        {"enabled or not",
         "l = addlistener(h, 'Ticked', @(s, e) disp(e.Count)); l.Enabled = false; h.Fire(1); "
         "disp(l.Enabled), l.Enabled = 1; h.Fire(2); delete(h); disp(l.Enabled)",
         "0\n2\n0\n"},
        {"enabled by no number", "l = addlistener(h, 'Ticked', @disp); l.Enabled = 'no';",
         "A value that is 1-by-2 char can't be converted to logical scalar. "
         "(VELMAR:array:WrongConversion)\n"},
        {"a listener that fails is a warning",
         "addlistener(h, 'Ticked', @(s, e) unknown); addlistener(h, 'Ticked', @(s, e) disp('on'));"
         "h.Fire(1)",
         "warning VELMAR:class:ListenerFailed\non\n"},
        {"unknown event", "try, addlistener(h, 'X', @disp); catch e, disp(e.identifier), end",
         "VELMAR:class:UndefinedEvent\n"},
        {"a listener that holds its object ends with the session",
         "addlistener(h, 'Ticked', @(s, e) disp(h.Name)); h.Fire(1)", "a\n"},
        {"events within events end in an error, not in a crash",
         "addlistener(h, 'Ticked', @(s, e) s.Fire(1)); try, h.Fire(1), catch e, end, disp('ok')",
         "warning VELMAR:class:ListenerFailed\nok\n"},
        {"deleting the object",
         "delete(h); disp(isvalid(h)), try, h.Name, catch e, "
         "disp(e.identifier), end",
         "0\nVELMAR:class:InvalidHandle\n"},
    });
}

} // namespace velsh::test
