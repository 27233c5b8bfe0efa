// What tests of the host share: a leak check, arrays in short, and classes made of lambdas.
#pragma once

#include "host/class.h"
#include "host/object_array.h"
#include "host/text.h"
#include "support/alive_check.h"
#include "support/errors.h"

#include <functional>
#include <map>
#include <string>
#include <vector>

namespace host_test {

using axlink2::test::errorOf;
using harray::unique_array;

// Warnings are collected.
class HostTest : public axlink2::test::AliveCheck {
  protected:
    HostTest();
    ~HostTest() override;

    std::vector<std::string> warnings; // "identifier: text"
};

inline hos::id name(const char* text) { return hos::internal::makeInterned(text); }

unique_array number(double value, hxClassID type = hxDOUBLE_CLASS);
unique_array row(const std::vector<double>& values);
unique_array text(const char* utf8);
unique_array string(const char16_t* content);
unique_array zeros(std::size_t rows, std::size_t columns, hxClassID type = hxDOUBLE_CLASS);
std::string textOf(const hxArray* array);

// A call of a test's method.
struct Call {
    std::uint32_t& outputCount;
    hos::HOSValue* outputs;
    std::int32_t inputCount;
    hos::HOSValue* inputs;

    // Sets all outputs, which are of type "any" or pointers as well.
    template <class... Pointers>
    void give(Pointers*... values) {
        outputCount = 0;
        ((outputs[outputCount++] = hos::HOSValue::ofPointer(values)), ...);
    }
};

struct MethodSpec {
    std::string name;                     // "own name" stands for the class's bare name
    std::vector<const char*> inputs = {}; // "class" stands for the class itself
    std::vector<const char*> outputs = {};
    std::function<void(Call)> body = {};
    std::size_t optional = 0;
    bool variableInput = false;
    bool variableOutput = false;
    int access = 0;
};

struct PropertySpec {
    std::string name;
    const char* type = "any";
    std::function<hos::HOSValue()> get = {};
    std::function<void(hos::HOSValue)> set = {};
    bool stored = false; // an array of each object's own
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

// A new class of the package "Test", under a name of its own unless one is given.
class TestClass {
  public:
    explicit TestClass(ClassSpec spec, std::string className = {});

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

// What an object of a test's class stores, by the property's name.
std::map<std::string, unique_array>& storedBy(hos::HOSInterface* object);

// Sends an event to the object's listeners, as a module does; `data` stays the caller's.
void send(const hos::HOSInterfacePtr& object, const char* event, hxArray* data);

} // namespace host_test
