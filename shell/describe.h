// What the class of a server looks like, in tables.
#pragma once

#include <string>

namespace velsh {

// Starts the server, reads its class and gives the tables: methods, properties, events,
// enumerations, built-in methods. Raises what starting the server raises.
std::string describeServer(const std::string& progId);

} // namespace velsh
