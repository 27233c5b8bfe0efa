// Running programs, and counting what is alive.
#include "torture/program.h"

#include "host/embedding.h"
#include "platform/guarded_call.h"
#include "platform/shared_library.h"
#include "servers/sample/documents.h"
#include "servers/sample/server.h"
#include "shell/function_handles.h"
#include "shell/functions.h"
#include "shell/parser.h"
#include "support/faulty/server.h"

#include <utility>

namespace torture {
namespace {

// A registration that fails, each time at a later allocation, is tried again.
void registerAtLast() {
    platform::SharedLibrary library(AXLINK2_MODULE);
    auto* const registerModule = library.find<void()>("RegisterAxlink2");
    library.keep();
    bool isRegistered = false;
    for (anyMemory.failingCall = 0; !isRegistered; ++anyMemory.failingCall) {
        anyMemory.calls = 0;
        anyMemory.counting = true;
        try {
            registerModule();
            isRegistered = true;
        } catch (const std::bad_alloc&) {
        }
        anyMemory.counting = false;
    }
    anyMemory.failingCall = -1;
}

} // namespace

Environment::Environment() {
    // A thread's first guarded call and its apartment register the end of the thread, for which the
    // system's library must have memory.
    platform::guarded([] {});
    CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED);
    registerAtLast();
    velmar::loadModule(AXLINK2_MODULE);
    velsh::defineFunctions();
    const auto serveSample = [this]<class Server>(const char* progId, std::type_identity<Server>) {
        serve(progId, Server::definition().parts().coclass.clsid,
              [] { return kit::createDispatch<Server>(); });
    };
    serveSample("Sample.Server.1", std::type_identity<sample::Server>());
    serveSample("Sample.FileDocument.1", std::type_identity<sample::FileDocument>());
    serveSample("Sample.StorageDocument.1", std::type_identity<sample::StorageDocument>());
    serveSample("Sample.StreamInitDocument.1", std::type_identity<sample::StreamInitDocument>());
    serveSample("Sample.StreamDocument.1", std::type_identity<sample::StreamDocument>());
    serveSample("Torture.Control.1", std::type_identity<sample::Child>());
    std::filesystem::create_directory(folder_);
    std::filesystem::current_path(folder_);
}

Environment::~Environment() {
    std::error_code ignored;
    std::filesystem::current_path(std::filesystem::temp_directory_path(), ignored);
    std::filesystem::remove_all(folder_, ignored);
}

void Environment::serve(const char* progId, const CLSID& clsid, kit::Maker make) {
    kit::registerProgId(progId, clsid);
    registrations_.emplace_back(clsid, [make] {
        const Uncounted ours;
        return axlink2::test::faultyServer(make().get(), serverCalls);
    });
}

Workspace::Workspace() {
    velmar::setOutput([this](std::string_view text) {
        const Uncounted ours;
        printed_ += text;
    });
    velmar::setWarningWriter([this](const std::string& identifier, const std::u16string&) {
        const Uncounted ours;
        printed_ += "warning " + identifier + "\n";
    });
}

Workspace::~Workspace() {
    velsh::removeAllListeners();
    interpreter_.variables().clear();
    velmar::setOutput({});
    velmar::setWarningWriter({});
}

Outcome Workspace::run(const std::string& source, const std::function<void()>& armed,
                       const std::function<void()>& disarmed) {
    const velsh::Block program = velsh::parse(source);
    Outcome outcome;
    printed_.clear();
    if (armed) armed();
    std::exception_ptr error;
    try {
        interpreter_.run(program);
    } catch (...) {
        error = std::current_exception();
    }
    if (disarmed) disarmed();
    if (error) {
        const velmar::ErrorText described = velmar::describeError(error);
        outcome.identifier = described.identifier;
        outcome.text = described.text;
    }
    outcome.printed = std::exchange(printed_, {});
    return outcome;
}

std::string Living::newcomers() const {
    const bool isEven = serverCalls.outstanding == descriptions;
    return (isEven ? "" : "descriptions; ") + axlink2::test::Living::newcomers();
}

} // namespace torture
