// What a program that embeds the host uses: functions, members, listeners, output and modules.
#pragma once

#include "host/array.h"
#include "host/class.h"
#include "host/interface.h"
#include "host/interned.h"
#include "host/message.h"

#include <boost/container/small_vector.hpp>

#include <cstddef>
#include <exception>
#include <filesystem>
#include <functional>
#include <initializer_list>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>

namespace velmar {

// A call has few inputs and outputs; those allocate nothing.
using Arrays = boost::container::small_vector<harray::unique_array, 2>;

// The inputs of a call: arrays that stay the caller's, named in braces or in any container.
class Inputs : public std::span<const hxArray* const> {
  public:
    using span::span;
    Inputs(std::initializer_list<const hxArray*> listed) : span(listed.begin(), listed.size()) {}
    template <class Container>
    requires requires(const Container& container) { container.data(); }
    Inputs(const Container& container) : span(container.data(), container.size()) {}
};

// A function of the host: the same form as a module's builtin function.
using Function = std::function<void(int outputCount, harray::unique_array* outputs, int inputCount,
                                    const hxArray* const* inputs)>;
void defineFunction(const std::string& name, Function function);
bool hasFunction(const std::string& name);
// Whether there is a package or a class of that full name; a class can be called like a function
// when it has a constructor.
bool hasPackage(const std::string& name);
bool hasClass(const std::string& name);

// Loads a module from its shared library and calls its registration function; its builtin functions
// `actxserver` and `actxGetRunningServer` become host functions. Raises `std::runtime_error` with a
// clear text when the library or one of its functions isn't there. A second call does nothing more.
void loadModule(const std::filesystem::path& library);

// Calls a function, or the member of that name when an input is an object. Gives at least the
// outputs asked for; an output that was not set is a 0-by-0 double.
Arrays call(const std::string& name, int outputCount, Inputs inputs);

// The name of a member: text, or the id of one that is used again and again.
struct MemberName {
    MemberName(hos::id interned) : id(interned) {}
    MemberName(std::string text) : id(hos::internal::makeInterned(std::move(text))) {}
    MemberName(const char* text) : MemberName(std::string(text)) {}

    hos::id id;
};

// `object.name(inputs...)`: a method; or a property, then `inputs` must be empty. `outputCount` 0
// gives one output when the member produces one.
Arrays callMember(const hxArray* object, MemberName name, int outputCount, Inputs inputs);
bool hasMethod(const hxArray* object, MemberName name);
bool hasProperty(const hxArray* object, MemberName name);
void setMember(hxArray* object, MemberName name, const hxArray* value);

// A listener of one event of one object.
class Listener {
  public:
    virtual ~Listener() = default;
    virtual void setEnabled(bool enabled) = 0;
    virtual bool isEnabled() const = 0;
    virtual void remove() = 0; // may be called again, and after the object has gone
};

// What a listener runs: the object array of the source, and the event's structure. Both stay the
// host's. An exception that leaves it is reported as a warning.
using Callback = std::function<void(const hxArray* source, const hxArray* event)>;

// Raises when the object's class has no such event, and what connecting raises. Dropping the
// pointer doesn't remove the listener: it lives as long as its object.
std::shared_ptr<Listener> addListener(const hos::HOSInterfacePtr& object, const std::string& event,
                                      Callback callback);

// Function handles hold a callable of the embedding program, and its text.
harray::unique_array createFunctionHandle(std::string text, Function function);
const Function* functionOfHandle(const hxArray* array); // null for anything else
const std::string& textOfHandle(const hxArray* array);

// Writes out what has been printed to standard output. Raises "VELMAR:OutputLost" when not all of
// it arrived.
void flushOutput();

// Where `hrtPuts` and `disp` write, and where warnings go; by default standard output and error.
void setOutput(std::function<void(std::string_view)> writer);
void setWarningWriter(
    std::function<void(const std::string& identifier, const std::u16string& text)> writer);

// Warnings go nowhere while one of these lives.
class QuietWarnings {
  public:
    QuietWarnings();
    QuietWarnings(const QuietWarnings&) = delete;
    QuietWarnings& operator=(const QuietWarnings&) = delete;
    ~QuietWarnings();
};

// Any array as a person reads it, one or more lines, each ended: what `disp` prints.
std::string displayText(const hxArray* array);
// A value on one line: 5, 'text', [1 2 3], {1, 'a'}; what is longer by its shape: [3x4 double].
std::string fieldText(const hxArray* array);

// How `methods(object)` shows an object's class when no output is wanted, written with `hrtPuts`;
// by default as a list of its methods.
void setClassDisplay(std::function<std::string(const hxArray* object)> display);

// An error of the embedding program or the language, with an identifier of its own.
[[noreturn]] void raiseError(const std::string& identifier, const std::string& text);

// The identifier and text of any exception. Errors of the host and the module have their own;
// a COM support error is "VELMAR:COM:E" and its code, a lack of memory "VELMAR:nomem", anything
// else "VELMAR:internal".
struct ErrorText {
    std::string identifier;
    std::string text;
};
ErrorText describeError(std::exception_ptr error);

// Objects that are alive now; for the check that nothing outlives its use.
std::size_t liveObjectCount();

// The member signature as text, "[double,int32] = Name(COM.X, double)", for a description.
std::string signatureText(const hos::HOSMethodInfo& method);

// The same with the names of inputs and outputs behind their types, for people alone.
std::string labelledSignatureText(const hos::HOSMethodInfo& method);

} // namespace velmar
