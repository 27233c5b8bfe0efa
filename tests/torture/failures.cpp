// Every call fails once: each program runs again and again, each time with the next point failing,
// in a process of its own.
#include "servers/sample/faults.h"
#include "torture/points.h"
#include "torture/program.h"
#include "torture/report.h"
#include "torture/scripts.h"

#include <boost/algorithm/string/replace.hpp>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <map>
#include <sstream>
#include <stdexcept>
#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#ifdef __SANITIZE_ADDRESS__
#include <sanitizer/lsan_interface.h>
#endif

namespace torture {
namespace {

// A way to fail. Of `every` points one is tried in the short form.
struct Pass {
    const char* name;
    FaultPlan& plan;
    FaultPlan::Kind kind;
    bool crashes;
    int every;
};

const Pass passes[] = {
    {"function", functionCalls, FaultPlan::Fail, false, 7},
    {"server", serverCalls, FaultPlan::Fail, false, 7},
    {"garbage", serverCalls, FaultPlan::Garbage, false, 11},
    {"nothing", serverCalls, FaultPlan::EmptySuccess, false, 11},
    {"fault", serverCalls, FaultPlan::Fail, true, 7},
    {"COM memory", comMemory, FaultPlan::Fail, false, 7},
    {"memory", anyMemory, FaultPlan::Fail, false, 97},
};

// What a run leaves in memory that both processes see.
struct Record {
    std::array<char, 64> failed; // the call that failed; empty for a run without a failure
    std::array<char, 2048> problem;
    std::array<char, 64> identifier;
    std::array<char, 16384> printed;
    int points;
};

Record& record() {
    static auto* const shared = static_cast<Record*>(
        mmap(nullptr, sizeof(Record), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0));
    return *shared;
}

template <std::size_t size>
void store(std::array<char, size>& place, const std::string& text) {
    const std::size_t length = std::min(text.size(), size - 1);
    std::memcpy(place.data(), text.data(), length);
    place[length] = 0;
}

void noteFailure(const char* call) { std::strncpy(record().failed.data(), call, 63); }

// In turn in every way.
void crash(const char* call) {
    constexpr void (*ways[])() = {sample::writeThroughNull, sample::divideByZero,
                                  sample::callBadPointer, sample::throwException};
    noteFailure(call);
    ways[static_cast<std::size_t>(serverCalls.failingCall) % std::size(ways)]();
}

std::vector<std::string> linesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    return lines;
}

bool isDocumented(const std::string& identifier) {
    return identifier.starts_with("VELMAR:") && identifier != "VELMAR:internal";
}

// Whether `part` is `whole` with lines missing or cut short, or a NaN, a warning or an identifier
// in their place.
bool isSmaller(const std::string& part, const std::string& whole, const std::string& less) {
    const std::vector<std::string> stopgaps = linesOf(less);
    const std::vector<std::string> lines = linesOf(whole);
    auto next = lines.begin();
    for (const std::string& line : linesOf(part)) {
        if (line == "NaN" || line.starts_with("warning VELMAR:") || isDocumented(line) ||
            std::ranges::count(stopgaps, line))
            continue;
        next = std::find_if(next, lines.end(), [&](const std::string& whole) {
            return line.size() > 5 ? whole.starts_with(line) : whole == line;
        });
        if (next == lines.end()) return false;
        ++next;
    }
    return true;
}

std::string inWords(const Outcome& outcome) {
    constexpr std::size_t most = 200;
    const std::string& all = outcome.printed;
    const std::string end = all.size() > most ? "..." + all.substr(all.size() - most) : all;
    std::string words = "printed \"" + boost::algorithm::replace_all_copy(end, "\n", " ") + "\"";
    if (!outcome.identifier.empty())
        words += " and ended with " + outcome.identifier + " (" + outcome.text + ")";
    return words;
}

bool isRight(const Outcome& outcome, const std::string& printed) {
    return outcome.identifier.empty() && outcome.printed == printed;
}

// Errors of a program that misses a member or meets a NaN.
bool comesFromLess(const std::string& identifier) {
    return identifier == "VELMAR:UndefinedFunction" || identifier == "VELMAR:badsubscript" ||
           identifier == "VELMAR:wrongtype";
}

// What is wrong with a run and the one behind it; empty when nothing is.
std::string judge(const Outcome& armed, const Outcome& again, const Script& script,
                  const std::string& printed) {
    const bool isError = !armed.identifier.empty() && !comesFromLess(armed.identifier);
    if (isError && !isDocumented(armed.identifier)) return "undocumented: " + inWords(armed);
    // What a server gives that does nothing and says that it is done is its own affair.
    const bool isMeasured = serverCalls.kind != FaultPlan::EmptySuccess;
    if (isMeasured && !isSmaller(armed.printed, printed, script.less))
        return "neither right nor smaller: " + inWords(armed);
    if (isRight(again, printed)) return {};
    // A class that was made from less stays smaller; what failed altogether can be tried again.
    const bool maySmaller = script.prologue.empty() && !isError && !isRight(armed, printed);
    if (maySmaller && isSmaller(again.printed, printed, script.less)) return {};
    return "not whole afterwards: " + inWords(again) + " after " + inWords(armed);
}

std::string leaks() {
#ifdef __SANITIZE_ADDRESS__
    if (__lsan_do_recoverable_leak_check() != 0) return "leaked memory";
#endif
    return {};
}

// The child's part. `printed` is what is right; null in the run that finds it out.
std::string runOne(const Script& script, const Pass& pass, int point, const char* printed) {
    const Living before;
    std::string problem;
    {
        Workspace workspace;
        if (!script.prologue.empty()) {
            workspace.run(script.prologue);
            workspace.run(script.body); // makes the classes of what members return
        }
        pass.plan.kind = pass.kind;
        pass.plan.failingCall = point;
        pass.plan.calls = 0;
        pass.plan.onFailure = pass.crashes ? crash : noteFailure;
        const Outcome armed = workspace.run(
            script.body, [&] { pass.plan.counting = true; }, [&] { pass.plan.counting = false; });
        store(record().identifier, armed.identifier);
        record().points = pass.plan.calls;
        if (!printed) {
            store(record().printed, armed.printed);
            if (!armed.identifier.empty()) problem = inWords(armed);
        } else {
            problem = judge(armed, workspace.run(script.body), script, printed);
        }
        const Outcome control = workspace.run("c = actxserver('Torture.Control.1');"
                                              "disp(c.Increment(2))");
        if (problem.empty() && !isRight(control, "2\n"))
            problem = "another server failed afterwards: " + inWords(control);
    }
    if (problem.empty()) {
        const std::string left = before.newcomers();
        if (!left.empty()) problem = "left alive: " + left;
    }
    return problem.empty() ? leaks() : problem;
}

// Runs the program once with that point failing; gives what went wrong.
std::string runApart(const Script& script, const Pass& pass, int point, const char* printed) {
    record() = {};
    std::fflush(stdout);
    const pid_t child = fork();
    if (child == 0) {
        alarm(60); // a run that hangs ends
        store(record().problem, runOne(script, pass, point, printed));
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    if (WIFSIGNALED(status)) return "ended by signal " + std::to_string(WTERMSIG(status));
    if (WEXITSTATUS(status) != 0) return "exit status " + std::to_string(WEXITSTATUS(status));
    return record().problem.data();
}

class FailureTable {
  public:
    FailureTable(bool isLong) : isLong_(isLong) {}

    void tryScript(const Script& script) {
        std::printf("%-15s", script.name);
        const Pass& first = passes[0];
        std::string problem = runApart(script, first, -1, nullptr);
        const std::string printed = record().printed.data();
        if (problem.empty() && script.printed && printed != script.printed)
            problem = "printed \"" + printed + "\"";
        if (!problem.empty()) problems_.push_back(std::string(script.name) + ": " + problem);
        for (const Pass& pass : passes)
            std::printf(" %10d", problem.empty() ? tryPass(script, pass, printed) : 0);
        std::printf("\n");
    }
    int tried() const { return tried_; }
    const Problems& problems() const { return problems_; }
    const std::map<std::string, int>& identifiers() const { return identifiers_; }

  private:
    // Gives how many points were tried.
    int tryPass(const Script& script, const Pass& pass, const std::string& printed) {
        int count = 0;
        for (int point = 0;; point += isLong_ ? 1 : pass.every) {
            const std::string problem = runApart(script, pass, point, printed.c_str());
            const std::string failed = record().failed.data();
            if (failed.empty() && problem.empty()) break;
            ++count;
            ++identifiers_[record().identifier.data()];
            if (problem.empty()) continue;
            problems_.push_back(std::string(script.name) + ", " + pass.name + " " +
                                std::to_string(point) + " (" + failed + "): " + problem);
            if (failed.empty()) break;
        }
        tried_ += count;
        return count;
    }

    bool isLong_;
    int tried_ = 0;
    Problems problems_;
    std::map<std::string, int> identifiers_;
};

} // namespace

Problems runFailures(bool isLong) {
    FailureTable table(isLong);
    std::printf("Points that failed once, by program and by what failed\n%-15s", "");
    for (const Pass& pass : passes)
        std::printf(" %10s", pass.name);
    std::printf("\n");
    for (const Script& script : scripts())
        table.tryScript(script);
    std::printf("%d points. How the runs ended:\n", table.tried());
    for (const auto& [identifier, count] : table.identifiers())
        std::printf("%8d %s\n", count,
                    identifier.empty() ? "without an error" : identifier.c_str());
    return table.problems();
}

Problems runPoint(const std::string& program, const std::string& pass, int point) {
    const auto script = std::ranges::find(scripts(), program, &Script::name);
    const auto way = std::ranges::find(passes, pass, &Pass::name);
    if (script == scripts().end() || way == std::end(passes)) throw std::out_of_range(program);
    std::string problem = runApart(*script, *way, -1, nullptr);
    const std::string printed = record().printed.data();
    if (problem.empty()) problem = runOne(*script, *way, point, printed.c_str());
    return problem.empty() ? Problems() : Problems{problem};
}

} // namespace torture
