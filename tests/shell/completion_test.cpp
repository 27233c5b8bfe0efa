// What a half-written word can become, and when an entry needs more lines.
#include "shell/completion.h"
#include "shell/console.h"
#include "shell/run_source.h"
#include "shell/widget_class.h"

#include <gmock/gmock.h>

namespace velsh::test {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Completion, OffersNamesAndMembers) {
    defineWidgets();
    SourceRunner runner;
    runner.run("number1 = 1; s.alpha = 1; s.beta.gamma = 2; h = widget('a'); "
               "h.Child = widget('b'); ended = widget('c'); ended.delete()");
    const auto completed = [&](const char* word) {
        return complete(runner.session().variables(), "x = ", word);
    };
    EXPECT_THAT(completed("nu"), ElementsAre("num2str", "number1", "numel"));
    EXPECT_THAT(completed("whi"), ElementsAre("while"));
    EXPECT_THAT(completed("s."), ElementsAre("s.alpha", "s.beta"));
    EXPECT_THAT(completed("s.beta.g"), ElementsAre("s.beta.gamma"));
    EXPECT_THAT(completed("h.delete."), IsEmpty());
    EXPECT_THAT(completed("h.Na"), ElementsAre("h.Name"));
    EXPECT_THAT(completed("h.Child.S"), ElementsAre("h.Child.Size", "h.Child.Split"));
    for (const char* word : {"nothing.", "number1.", "ended.", "h.Size."})
        EXPECT_THAT(completed(word), IsEmpty()) << word;
}

TEST(Completion, OffersInQuotesWhatBelongsThere) {
    defineWidgets();
    SourceRunner runner;
    runner.run("h = widget('a'); h.Child = widget('b');");
    const auto completed = [&](const char* before, const char* word) {
        return complete(runner.session().variables(), before, word);
    };
    EXPECT_THAT(completed("h.Finish = '", ""), ElementsAre("glossy", "matt"));
    EXPECT_THAT(completed("x = 1; h.Child.Finish = \"", "ma"), ElementsAre("matt"));
    EXPECT_THAT(completed("set(h, 'Finish', '", "g"), ElementsAre("glossy"));
    EXPECT_THAT(completed("disp(get(h.Child, '", "S"), ElementsAre("Size"));
    EXPECT_THAT(completed("invoke( h , '", "S"), ElementsAre("Split"));
    EXPECT_THAT(completed("l = addlistener(h, \"", ""), ElementsAre("Ticked"));
    EXPECT_THAT(completed("h.Name = '", "whi"), ElementsAre("while"));
    EXPECT_THAT(completed("get(nothing, '", "whi"), ElementsAre("while"));
}

TEST(Console, KnowsWhichEntriesNeedMoreLines) {
    for (const char* open :
         {"if 1", "x = [1 2", "for i = 1:3\n disp(i)", "try\n x\ncatch e", "x ="})
        EXPECT_TRUE(isIncomplete(open)) << open;
    for (const char* closed : {"x = 1", "x = )", "if 1, end", "'abc", ""})
        EXPECT_FALSE(isIncomplete(closed)) << closed;
}

// Lines of a test in place of a person's.
class Lines : public LineReader {
  public:
    Lines(std::vector<std::string> lines, bool interactive)
        : lines_(std::move(lines)), interactive_(interactive) {}
    bool isInteractive() const override { return interactive_; }
    std::optional<std::string> read(const std::string&) override {
        if (next_ == lines_.size()) return std::nullopt;
        return lines_[next_++];
    }
    void remember(const std::string& entry) override { remembered.push_back(entry); }

    std::vector<std::string> remembered;

  private:
    std::vector<std::string> lines_;
    bool interactive_;
    std::size_t next_ = 0;
};

TEST(Console, GoesOnAfterAnErrorForAPersonOnly) {
    for (bool interactive : {true, false}) {
        SourceRunner runner;
        Lines lines({"x = 1;", "if x", "unknown", "end", "", "y = 2;", "exit", "z = 3;"},
                    interactive);
        testing::internal::CaptureStderr();
        EXPECT_EQ(runConsole(runner.session(), lines), interactive);
        EXPECT_NE(testing::internal::GetCapturedStderr().find("unknown"), std::string::npos);
        EXPECT_EQ(runner.session().variables().count("y"), interactive ? 1u : 0u);
        EXPECT_EQ(runner.session().variables().count("z"), 0u);
        EXPECT_EQ(lines.remembered.at(1), "if x\nunknown\nend");
    }
}

} // namespace velsh::test
