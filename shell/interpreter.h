// Running the statements of a program.
#pragma once

#include "platform/floating_point.h"
#include "shell/ast.h"
#include "shell/evaluator.h"

namespace velsh {

class Interpreter {
  public:
    // Runs a program; what fails is raised, and `position` says where. What each of its statements
    // printed is written out when it has run; that it can't be is an error of the statement.
    void run(const Block& program);

    Variables& variables() { return variables_; }
    // Of the statement that ran last.
    Position position() const { return position_; }

  private:
    enum class Flow { Next, Break, Continue };

    Flow runBlock(const Block& block);
    Flow runStatement(const Statement& statement);
    Flow runNode(const Evaluate& node);
    Flow runNode(const Assign& node);
    Flow runNode(const If& node);
    Flow runNode(const While& node);
    Flow runNode(const For& node);
    Flow runNode(const Try& node);
    Flow runNode(const Break&) { return Flow::Break; }
    Flow runNode(const Continue&) { return Flow::Continue; }
    bool test(const Expression& condition);

    Variables variables_;
    Evaluator evaluator_{variables_};
    Position position_;
    const platform::FloatingPointState numbers_;
};

// Prints "name = value", or the name and the lines of the value.
void show(const std::string& name, const hxArray* value);
// Prints text through the host.
void print(const std::string& text);

} // namespace velsh
