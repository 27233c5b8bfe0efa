// What the host's tests share: a leak check, arrays in short, and classes made of lambdas.
#pragma once

#include "host/array.h"
#include "host/class.h"
#include "host/embedding.h"
#include "host/object_array.h"
#include "host/text.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

namespace host_test {

using harray::unique_array;

// After each test as many arrays and objects exist as before; warnings are collected.
class HostTest : public testing::Test {
  protected:
    HostTest();
    ~HostTest() override;

    std::vector<std::string> warnings; // "identifier: text"

  private:
    std::size_t arrays_;
    std::size_t objects_;
};

inline hos::id name(const char* text) { return hos::internal::makeInterned(text); }

unique_array number(double value, hxClassID type = hxDOUBLE_CLASS);
unique_array row(const std::vector<double>& values);
unique_array text(const char* utf8);
unique_array string(const char16_t* content);
unique_array zeros(std::size_t rows, std::size_t columns, hxClassID type = hxDOUBLE_CLASS);
std::string textOf(const hxArray* array);

// Runs `action` and gives the identifier of the error that leaves it; empty without one.
std::string errorOf(const std::function<void()>& action);

// What a test's method does: the values of its inputs in, outputs out.
using Body = std::function<void(std::uint32_t& outputCount, hos::HOSValue* outputs,
                                std::int32_t inputCount, hos::HOSValue* inputs)>;

struct MethodSpec {
    std::string name;                     // "own name" stands for the class's bare name
    std::vector<const char*> inputs = {}; // "class" stands for the class itself
    std::vector<const char*> outputs = {};
    Body body = {};
    std::size_t optional = 0;
    bool variableInput = false;
    bool variableOutput = false;
    int access = 0;
};

struct PropertySpec {
    std::string name = {};
    const char* type = "any";
    std::function<hos::HOSValue()> get = {};
    std::function<void(hos::HOSValue)> set = {};
};

// What a test's class is made of, and what happened to it.
struct ClassSpec {
    std::vector<MethodSpec> methods = {};
    std::vector<PropertySpec> properties = {};
    std::vector<std::string> events = {};
    std::vector<const char*> superclasses = {};
    std::function<void()> onConnect = {}; // at the first listener of an event
    std::function<void(hos::HOSInterfacePtr)> onDisconnect = {};
    std::vector<std::string> log = {}; // populate, create, connect, disconnect, destroy
};

// A new class of the package "Test" under a name of its own.
class TestClass {
  public:
    explicit TestClass(ClassSpec spec);

    hos::HOSClass& live() const { return *live_; }
    hos::id id() const;
    std::vector<std::string>& log() { return spec_->log; }
    hos::HOSInterfacePtr makeObject() const;
    // A row of `count` new objects.
    unique_array makeArray(std::size_t count = 1) const;

  private:
    std::shared_ptr<ClassSpec> spec_;
    hos::HOSClass* live_;
};

} // namespace host_test
