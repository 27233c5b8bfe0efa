// Long work: memory and time stay at their level.
#include "host/embedding.h"
#include "torture/program.h"
#include "torture/report.h"
#include "torture/resources.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <numeric>

namespace torture {
namespace {

using harray::unique_array;

// One kind of work, done in equal slices.
struct Work {
    const char* name;
    int count; // operations of the long form
    std::function<void(int operations)> run;
};

constexpr int slices = 20;

struct Level {
    double time; // for each operation, in microseconds
    std::ptrdiff_t heap;
    std::ptrdiff_t resident;
};

// The slices' middle time, of a part of them.
double middleTime(std::vector<Level>::const_iterator first,
                  std::vector<Level>::const_iterator last) {
    std::vector<double> times;
    for (auto level = first; level != last; ++level)
        times.push_back(level->time);
    std::ranges::nth_element(times, times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2));
    return times[times.size() / 2];
}

class SoakTable {
  public:
    explicit SoakTable(bool isLong) : isLong_(isLong) {
        std::printf("Long work: at a tenth of the way and at the end\n"
                    "%-34s %9s %17s %21s %19s\n",
                    "", "count", "us each", "heap, KiB", "in memory, MiB");
    }

    void run(const Work& work) {
        const int operations = std::max(work.count / (isLong_ ? 1 : 50) / slices, 1);
        std::vector<Level> levels;
        for (int slice = 0; slice < slices; ++slice) {
            const double start = processorTime();
            work.run(operations);
            levels.push_back(
                {(processorTime() - start) / operations * 1e6, heapInUse(), residentMemory()});
        }
        // The first slices fill what is kept for later.
        judge(work.name, operations * slices, levels[slices / 10 - 1], levels.back(),
              middleTime(levels.begin() + 1, levels.begin() + 6),
              middleTime(levels.end() - 5, levels.end()));
    }
    const Problems& problems() const { return problems_; }

  private:
    void judge(const char* name, int count, const Level& early, const Level& late, double earlyTime,
               double lateTime) {
        constexpr double kib = 1024;
        constexpr double mib = 1024 * 1024;
        std::printf("%-34s %9d %8.2f %8.2f %10.1f %10.1f %9.1f %9.1f\n", name, count, earlyTime,
                    lateTime, static_cast<double>(early.heap) / kib,
                    static_cast<double>(late.heap) / kib, static_cast<double>(early.resident) / mib,
                    static_cast<double>(late.resident) / mib);
        // A table may still grow by a step; what grows with the work grows by more.
        constexpr std::ptrdiff_t heapStep = std::ptrdiff_t{16} * 1024;
        if (late.heap - early.heap > heapStep)
            problems_.push_back(std::string(name) + ": memory in use grows");
#ifndef __SANITIZE_ADDRESS__ // which keeps what was freed
        if (late.resident - early.resident > std::ptrdiff_t{4} * 1024 * 1024)
            problems_.push_back(std::string(name) + ": memory grows");
#endif
        // Short slices say little about time.
        if (isLong_ && lateTime > 1.5 * earlyTime)
            problems_.push_back(std::string(name) + ": each operation gets slower");
    }

    bool isLong_;
    Problems problems_;
};

// A server and calls of its members, without the language around them.
class Owner {
  public:
    Owner() {
        const unique_array progId(hxCreateString("Sample.Server.1"));
        object_ = std::move(velmar::call("actxserver", 1, {progId.get()})[0]);
    }
    unique_array child() {
        return std::move(velmar::callMember(object_.get(), "NewChild", 1, {})[0]);
    }

  private:
    unique_array object_;
};

enum class Order { OldestFirst, NewestFirst, Mixed };

// Makes so many objects under one owner, then ends them one by one.
void makeAndDrop(int count, Order order) {
    Owner owner;
    std::vector<unique_array> children;
    for (int i = 0; i < count; ++i)
        children.push_back(owner.child());
    std::vector<std::size_t> sequence(children.size());
    std::iota(sequence.begin(), sequence.end(), std::size_t{0});
    if (order == Order::NewestFirst) std::ranges::reverse(sequence);
    if (order == Order::Mixed)
        for (std::size_t i = 0; i < sequence.size(); ++i)
            std::swap(sequence[i], sequence[i * 7919 % sequence.size()]);
    for (const std::size_t i : sequence)
        children[i].reset();
}

// The same number under one owner must not cost more each than a few do.
void compareOwners(bool isLong, Problems& problems) {
    const int many = isLong ? 100000 : 4000;
    const int few = many / 10;
    constexpr std::pair<const char*, Order> orders[] = {{"oldest first", Order::OldestFirst},
                                                        {"newest first", Order::NewestFirst},
                                                        {"mixed", Order::Mixed}};
    std::printf("Objects made and dropped under one owner, us each\n%-34s %9s %8d %8d\n", "", "",
                few, many);
    for (const auto& [name, order] : orders) {
        const auto measure = [&, order = order](int count, int rounds) {
            makeAndDrop(count, order);
            const double start = processorTime();
            for (int round = 0; round < rounds; ++round)
                makeAndDrop(count, order);
            return (processorTime() - start) / count / rounds * 1e6;
        };
        const double alone = measure(few, 10);
        const double together = measure(many, 1);
        std::printf("%-34s %9s %8.2f %8.2f\n", name, "", alone, together);
        // Ten times as many are less near to the processor, and no more than that.
        if (together > 3 * alone)
            problems.push_back(std::string("objects under one owner, ") + name +
                               ": each gets slower with their number");
    }
}

} // namespace

Problems runSoak(bool isLong) {
    const Living before;
    Problems problems;
    {
        Workspace workspace;
        const auto program = [&](const std::string& statement) {
            return [&workspace, &problems, statement](int operations) {
                const Outcome outcome = workspace.run("for i = 1:" + std::to_string(operations) +
                                                      ", " + statement + " end");
                if (!outcome.identifier.empty())
                    problems.push_back(statement + ": " + outcome.identifier);
            };
        };
        workspace.run("h = actxserver('Sample.Server.1'); v = 1:100; c = {1, 'a', true};");
        Owner owner;
        SoakTable table(isLong);
        const Work works[] = {
            {"calls", 1000000, program("h.Compute(2);")},
            {"calls with text", 100000, program("h.Concat('Auto', 'mation');")},
            {"calls with outputs", 100000, program("[m, s, l] = h.MinMax(1, 2, 3);")},
            {"calls that fail", 100000, program("try, h.Divide(1, 0); catch, end,")},
            {"properties written and read", 100000, program("h.Width = 7; h.Width;")},
            {"arrays there and back", 100000, program("h.Echo(v);")},
            {"cells there and back", 100000, program("h.Echo(c);")},
            {"objects under one owner", 100000,
             [&](int operations) {
                 for (int i = 0; i < operations; ++i)
                     owner.child();
             }},
            {"objects in collections", 100000, program("h.Items.Item(2).Name;")},
            {"servers", 20000, program("k = actxserver('Sample.Server.1');")},
            {"connections made and closed", 10000,
             program("l = addlistener(h, 'Done', @(s, e) 0); delete(l);")},
        };
        for (const Work& work : works)
            table.run(work);
        workspace.run("l = addlistener(h, 'Tick', @(s, e) e.Count);");
        table.run({"events", 100000, [&](int operations) {
                       workspace.run("h.FireMany(" + std::to_string(operations) + ");");
                   }});
        problems.insert(problems.end(), table.problems().begin(), table.problems().end());
    }
    compareOwners(isLong, problems);
    if (const std::string left = before.newcomers(); !left.empty())
        problems.push_back("left alive: " + left);
    return problems;
}

} // namespace torture
