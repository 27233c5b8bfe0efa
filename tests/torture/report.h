// The short tables that a run ends with.
#pragma once

#include <string>
#include <vector>

namespace torture {

// One kind of work: prints its table and gives what failed, a line each. `isLong` asks for the
// thorough form, minutes instead of seconds.
using Problems = std::vector<std::string>;
Problems runFailures(bool isLong);
Problems runFaults(bool isLong);
Problems runSoak(bool isLong);

// One point of one program in this very process, for a debugger; gives what went wrong. Raises
// std::out_of_range for a program or a pass that isn't there.
Problems runPoint(const std::string& program, const std::string& pass, int point);

} // namespace torture
