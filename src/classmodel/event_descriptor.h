// What a generated class keeps of an event of its server.
#pragma once

#include <string>
#include <vector>

namespace axlink2 {

class ArgVarConverter;
struct COMMemberEntry;

struct COMEventDescriptor {
    // Copies what it needs from `entry`, which has a `method` signature. Defined in events/, where
    // the converters are known.
    explicit COMEventDescriptor(const COMMemberEntry& entry);

    std::string name;
    // One for each parameter. A parameter that has no name of its own, or one that the structure
    // has already, is "Arg" and its position, counted from 1.
    std::vector<std::string> parameterNames;
    std::vector<ArgVarConverter*> converters; // one for each parameter, not owned
    // The fields of the structure that a listener gets: three of every event, then the parameters.
    std::vector<const char*> fieldNames;

    COMEventDescriptor(const COMEventDescriptor&) = delete; // fieldNames points into the others
    COMEventDescriptor& operator=(const COMEventDescriptor&) = delete;
};

// Where the fields of the structure are.
enum class EventField : int { Type, Source, EventID, FirstParameter };

} // namespace axlink2
