// The built program: exit status and what it writes, as a person at a command line sees it.
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace velsh::test {

namespace {

namespace fs = std::filesystem;

struct Outcome {
    int status;
    std::string seen; // both outputs
    std::size_t lines() const {
        return static_cast<std::size_t>(std::count(seen.begin(), seen.end(), '\n'));
    }
};

// An empty data directory keeps the user's own registrations out.
class Program : public testing::Test {
  protected:
    fs::path write(const std::string& name, const std::string& text) const {
        fs::create_directories(folder_.file(name).parent_path());
        folder_.write(name, text);
        return folder_.file(name);
    }
    static std::string quoted(const fs::path& path) { return "'" + path.string() + "'"; }

    Outcome run(const std::string& arguments) const {
        const std::string command = "{ XDG_DATA_HOME=" + quoted(folder_.file("data")) + " " +
                                    VELSH_PROGRAM + " " + arguments + "; } 2>&1 </dev/null";
        Outcome outcome{-1, {}};
        FILE* pipe = popen(command.c_str(), "r");
        if (!pipe) return outcome;
        for (int c; (c = std::fgetc(pipe)) != EOF;)
            outcome.seen += static_cast<char>(c);
        const int status = pclose(pipe);
        outcome.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
        return outcome;
    }
    const axlink2::test::TemporaryFolder folder_;
};

void expectOneErrorLine(const Outcome& outcome, const std::string& part) {
    EXPECT_EQ(outcome.status, 1) << outcome.seen;
    EXPECT_EQ(outcome.lines(), 1u) << outcome.seen;
    EXPECT_NE(outcome.seen.find(part), std::string::npos) << outcome.seen;
}

} // namespace

TEST_F(Program, SaysWhoItIs) {
    EXPECT_EQ(run("--help").status, 0);
    const Outcome version = run("--version");
    EXPECT_EQ(version.status, 0);
    EXPECT_TRUE(version.seen.starts_with("velsh ")) << version.seen;
}

TEST_F(Program, EndsWithOneLineWhenTheModuleIsMissing) {
    expectOneErrorLine(run("--module " + quoted(folder_.file("nothing.so")) + " -e 1"),
                       "nothing.so");
}

TEST_F(Program, EndsWithOneLineForBrokenRegistrations) {
    const fs::path broken = write("broken.reg", "REGEDIT4\n\n[HKEY_CLASSES_ROOT\\A\n");
    expectOneErrorLine(run("--classes " + quoted(broken) + " -e 1"), "broken.reg:3:");
    expectOneErrorLine(run("--classes " + quoted(folder_.file("absent.reg")) + " -e 1"),
                       "absent.reg");
    write("data/axlink2/classes/mine.reg", "REGEDIT4\n\nnonsense\n");
    expectOneErrorLine(run("-e 1"), "mine.reg:3:");
}

TEST_F(Program, RunsCodeAndFilesAndReportsTheFirstError) {
    EXPECT_EQ(run("-e 'x = 1 + 1'").seen, "x = 2\n");
    const fs::path first = write("first.vel", "x = 1;\n");
    const fs::path second = write("second.vel", "disp(x)\nunknown\n");
    const Outcome outcome = run(quoted(first) + " " + quoted(second) + " " + quoted(first));
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.seen, "1\n" + second.string() +
                                ":2: \"unknown\" is neither a variable nor a function. "
                                "(VELMAR:UndefinedFunction)\n");
    expectOneErrorLine(run("-e 'x = ('"), "1:6: ");
    expectOneErrorLine(run(quoted(folder_.file("absent.vel"))), "absent.vel");
    expectOneErrorLine(run("-e \"h = actxserver('No.Such.Server')\""), "(VELMAR:COM:");
    expectOneErrorLine(run("--describe No.Such.Server"), "(VELMAR:COM:");
}

// The registration that is built beside the program.
std::string sampleServer() {
    return "--classes '" + (fs::path(VELSH_PROGRAM).parent_path() / "sample_server.reg").string() +
           "' ";
}

TEST_F(Program, SaysWhenItsOutputIsLost) {
    for (const std::string arguments : {"-e 'disp(1)'", "--help", "--describe Sample.Server.1"}) {
        const std::string all = sampleServer() + arguments;
        EXPECT_EQ(run(all + " >/dev/full").status, 1) << all;
        EXPECT_EQ(run(all + " >&-").status, 1) << all;
    }
    EXPECT_NE(run("-e 'disp(1), 2' >/dev/full").seen.find("VELMAR:OutputLost"), std::string::npos);
    EXPECT_EQ(run("-e 'x = 2;' >/dev/full").status, 0);
}

// A server that ends the program, or faults as it ends, hides nothing of what has been printed.
TEST_F(Program, OutlivesWhatServersDoToItsEnd) {
    const auto withServer = [&](const std::string& hostility) {
        const std::string id = "{6F1C0C0E-3A52-4D0B-9A53-0102030405FF}";
        const std::string key = "\n[HKEY_CLASSES_ROOT\\";
        const fs::path file = write(hostility + ".reg",
                                    "REGEDIT4\n" + key + "Test.Hostile\\CLSID]\n@=\"" + id +
                                        "\"\n" + key + "CLSID\\" + id + "\\InprocServer32]\n@=\"" +
                                        HOSTILE_LIBRARY + hostility + ".so\"\n");
        return run("--classes " + quoted(file) +
                   " -e \"disp(1)\ntry, actxserver('Test.Hostile'); catch, end\ndisp(1/3)\"");
    };
    const Outcome left = withServer("leave");
    EXPECT_EQ(left.status, 1);
    EXPECT_EQ(left.seen, "1\nvelsh: A server ended the program.\n");
    const Outcome crashed = withServer("crashAtEnd");
    EXPECT_EQ(crashed.status, 0);
    EXPECT_EQ(crashed.seen, "1\n0.33333\n");
}

TEST_F(Program, SetsTheOptionsOfTheModule) {
    const auto runs = [&](const std::string& code) {
        return run(sampleServer() + "-e \"h = actxserver('Sample.Server.1'); " + code + "\"").seen;
    };
    EXPECT_EQ(runs("disp(h.Describe([1;2;3])), disp(axlinkoption('SafeArraySingleDim', true)), "
                   "disp(h.Describe([1;2;3])), disp(axlinkoption('SafeArraySingleDim'))"),
              "VT_ARRAY|VT_R8 3x1\n0\nVT_ARRAY|VT_R8 3\n1\n");
    // A server that takes any value sees through the reference.
    EXPECT_EQ(runs("disp(axlinkoption('PassSafeArrayByRef', 1)), "
                   "disp(axlinkoption('PassSafeArrayByRef')), disp(h.Describe({1}))"),
              "0\n1\nVT_ARRAY|VT_VARIANT 1x1\n");
    EXPECT_EQ(runs("axlinkoption('Other', true)"),
              "There is no option \"Other\". The options are \"SafeArraySingleDim\", "
              "\"PassSafeArrayByRef\". (VELMAR:axlinkoption)\n");
}

TEST_F(Program, CallsAClassToMakeAnObject) {
    const std::string code = "h = actxserver('Sample.Server.1'); "
                             "h = COM.Sample_Server_1('server', '', 'IDispatch'); "
                             "disp(h.Compute(2)), disp(COM.Sample_Server_1('server', '', "
                             "'IDispatch').Compute(2))";
    EXPECT_EQ(run(sampleServer() + "-e \"" + code + "\"").seen, "5\n5\n");
}

} // namespace velsh::test
