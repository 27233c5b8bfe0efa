// A program that saves and loads, and a folder for its files.
#pragma once

#include "builtins/builtin_fixture.h"
#include "servers/sample/documents.h"
#include "support/temporary_folder.h"

#include <functional>

namespace axlink2::test {

inline const char* const serializationError = "VELMAR:COM:serializationerror";

class SaveLoadTest : public BuiltinTest {
  protected:
    // The identifier of the error; empty for success.
    std::string save(const Array& h, const std::string& name = "a.bin") const {
        return errorIn(h, "save", text(folder.narrowPath(name)));
    }
    std::string load(const Array& h, const std::string& name = "a.bin") const {
        return errorIn(h, "load", text(folder.narrowPath(name)));
    }
    static void setText(const Array& h, const std::string& value) {
        ask(0, h, "set", text("Text"), text(value));
    }
    static std::string textOf(const Array& h) { return get(h, text("Text")); }

    // Runs the test with a document of each interface; the name helps a failing one.
    void forEachDocument(const std::function<void(const Array&)>& test) {
        const std::pair<const char*, Array> documents[] = {
            {"file", start<sample::FileDocument>("Sample.FileDocument.1")},
            {"storage", start<sample::StorageDocument>("Sample.StorageDocument.1")},
            {"stream with a beginning",
             start<sample::StreamInitDocument>("Sample.StreamInitDocument.1")},
            {"stream", start<sample::StreamDocument>("Sample.StreamDocument.1")}};
        for (const auto& [name, document] : documents) {
            SCOPED_TRACE(name);
            std::filesystem::remove_all(folder.file("a.bin"));
            test(document);
        }
    }

    const TemporaryFolder folder;
};

} // namespace axlink2::test
