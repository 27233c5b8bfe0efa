// What a half-written word can become, and when an entry needs more lines.
#include "shell/completion.h"
#include "shell/console.h"
#include "shell/run_source.h"
#include "shell/widget_class.h"

#include <gmock/gmock.h>

namespace velsh::test {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

TEST(Completion, OffersNamesAndMembers) {
    defineWidgets();
    SourceRunner runner;
    runner.run(
        "number1 = 1; s.alpha = 1; s.beta.gamma = 2; h = widget('a'); h.Child = widget('b');");
    const Variables& variables = runner.session().variables();
    EXPECT_THAT(complete(variables, "nu"), ElementsAre("num2str", "number1", "numel"));
    EXPECT_THAT(complete(variables, "whi"), ElementsAre("while"));
    EXPECT_THAT(complete(variables, "s."), ElementsAre("s.alpha", "s.beta"));
    EXPECT_THAT(complete(variables, "s.beta.g"), ElementsAre("s.beta.gamma"));
    EXPECT_THAT(complete(variables, "h.Na"), ElementsAre("h.Name"));
    EXPECT_THAT(complete(variables, "h.Child.S"), ElementsAre("h.Child.Size", "h.Child.Split"));
    EXPECT_THAT(complete(variables, "nothing."), IsEmpty());
    EXPECT_THAT(complete(variables, "number1."), IsEmpty());
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
