// Servers that crash: every kind of fault at every place where a client enters a server, over and
// over. The program goes on, nothing is left, and the host is whole.
#include "servers/sample/faults.h"

#include "torture/points.h"
#include "torture/program.h"
#include "torture/report.h"
#include "torture/resources.h"

#include <cstdio>

namespace torture {
namespace {

struct Fault {
    const char* name;
    void (*happen)();
    int share; // of so many rounds one is made
};

// Down to the end of the stack. No frame is the last one, which the compiler can't know.
volatile int deepest = 0;
[[gnu::noinline, gnu::no_sanitize("address,undefined")]] int descend(int depth) {
    volatile char frame[512];
    frame[0] = static_cast<char>(depth);
    if (depth < deepest) return frame[0];
    return descend(depth + 1) + frame[0];
}

void exhaustStack() { deepest = descend(1); }

constexpr Fault faults[] = {
    {"null write", sample::writeThroughNull, 1},
    {"bad call", sample::callBadPointer, 1},
    {"division", sample::divideByZero, 1},
    {"exception", sample::throwException, 1},
    {"stack", exhaustStack, 20},
};

// Where a server faults: in which of its calls, and what brings a client there.
struct Place {
    const char* name;
    const char* call;
    const char* source;
};

constexpr Place places[] = {
    {"method", "Invoke", "h.Compute(2);"},
    {"property read", "Invoke", "h.Width;"},
    {"property write", "Invoke", "h.Width = 2;"},
    {"member by name", "GetIDsOfNames", "invoke(b, 'Twice', 2);"},
    {"type information", "GetTypeInfo", "interfaces(h);"},
    {"type attributes", "GetTypeAttr", "interfaces(h);"},
    {"type library", "GetContainingTypeLib", "interfaces(h);"},
    {"names of types", "GetDocumentation", "interfaces(h);"},
    {"wrapping", "GetTypeInfoCount", "h.NewChild();"},
    {"interfaces", "QueryInterface", "propedit(h);"},
    {"event source", "FindConnectionPoint", "addlistener(h, 'Tick', @(s, e) 0);"},
    {"connecting", "Advise", "addlistener(h, 'Tick', @(s, e) 0);"},
    {"disconnecting", "Unadvise", "l = addlistener(h, 'Tick', @(s, e) 0); delete(l);"},
    {"saving", "Save", "d.Text = 'x'; save(d, 'f.tmp');"},
    {"class to save", "GetClassID", "save(d, 'f.tmp');"},
    {"end of saving", "SaveCompleted", "save(d, 'f.tmp');"},
    {"loading", "Load", "load(d, 'whole.tmp');"},
    {"release", "Release", "c = h.NewChild(); release(c);"},
    {"object as input", "AddRef", "h.CountOf(h);"},
    {"object as VARIANT", "AddRef", "h.Describe({h, {h}});"},
    {"object in VARIANT", "Release", "h.MakeValue('object'); ans = 0;"},
    {"object in arrays", "Release", "h.AllItems(); h.Mixed();"},
};

void (*happening)() = nullptr;

void crash(const char*) { happening(); }

// Runs the place's program that often, with each call faulting; gives how many faults there were.
int fault(Workspace& workspace, const Place& place, const Fault& kind, int rounds,
          Problems& problems) {
    happening = kind.happen;
    serverCalls.calls = 0;
    serverCalls.only = place.call;
    serverCalls.always = true;
    serverCalls.onFailure = crash;
    const std::string source = "for i = 1:" + std::to_string(rounds) + ", try, " + place.source +
                               " catch e, if strcmp(e.identifier, 'VELMAR:internal'), "
                               "rethrow(e), end, end, end";
    const Outcome outcome = workspace.run(
        source, [] { serverCalls.counting = true; }, [] { serverCalls.counting = false; });
    serverCalls.only = nullptr;
    serverCalls.always = false;
    if (!outcome.identifier.empty())
        problems.push_back(std::string(place.name) + ", " + kind.name + ": " + outcome.identifier +
                           " " + outcome.text);
    if (serverCalls.calls < rounds)
        problems.push_back(std::string(place.name) + ", " + kind.name + ": only " +
                           std::to_string(serverCalls.calls) + " faults");
    return serverCalls.calls;
}

} // namespace

Problems runFaults(bool isLong) {
    Problems problems;
    const int rounds = isLong ? 1800 : 40;
    const Living before;
    int count = 0;
    std::printf("Contained faults, by place and by kind\n%-17s", "");
    for (const Fault& kind : faults)
        std::printf(" %10s", kind.name);
    std::printf("\n");
    {
        Workspace workspace;
        const std::string body = "disp(h.Compute(2)), disp(invoke(b, 'Twice', 2))\n"
                                 "n = interfaces(h); disp(n{1})\n"
                                 "l = addlistener(h, 'Tick', @(s, e) disp(e.Count)); h.FireTick(3);"
                                 "delete(l), disp(h.NewChild().Name)\n"
                                 "d.Text = 'y'; save(d, 'f.tmp'); load(d, 'f.tmp'); disp(d.Text)";
        workspace.run("h = actxserver('Sample.Server.1'); b = h.NewBare();"
                      "d = actxserver('Sample.StorageDocument.1'); save(d, 'whole.tmp');");
        const Outcome healthy = workspace.run(body);
        const std::ptrdiff_t level = heapInUse();
        for (const Place& place : places) {
            std::printf("%-17s", place.name);
            for (const Fault& kind : faults) {
                const int made = fault(workspace, place, kind, rounds / kind.share, problems);
                std::printf(" %10d", made);
                count += made;
            }
            std::printf("\n");
        }
        const Outcome afterwards = workspace.run(body);
        if (afterwards.printed != healthy.printed || !afterwards.identifier.empty())
            problems.push_back("the host isn't whole: printed " + afterwards.printed + " " +
                               afterwards.identifier);
        const std::ptrdiff_t growth = heapInUse() - level;
        std::printf("%d faults; memory in use grew by %td bytes\n", count, growth);
        // Classes that were met for the first time, whatever the number of faults.
        if (growth > std::ptrdiff_t{64} * 1024) problems.push_back("memory in use grows");
    }
    if (const std::string left = before.newcomers(); !left.empty())
        problems.push_back("left alive: " + left);
    return problems;
}

} // namespace torture
