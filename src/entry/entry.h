// The three functions through which the host enters the module.
#pragma once

#include "host/array.h"
#include "platform/export.h"

// Makes the module known to the object system: its namespaces, its data type, its converters. Only
// the first call does anything, unless it failed: then the next one starts over.
extern "C" AXLINK2_EXPORT void RegisterAxlink2();

namespace COM2 {

using ArrayHandle = std::unique_ptr<hxArray, harray::detail::hxDestroy_deleter>;

// `actxserver(progid)`, `(progid, machine)`, `(progid, name, value, ...)`: starts a server and
// stores a 1-by-1 object array in `plhs[0]`, also for `nlhs` 0.
AXLINK2_EXPORT void actxserver(int nlhs, ArrayHandle* plhs, int nrhs, const hxArray* const* prhs);

// `actxGetRunningServer(progid)`: the same for a server that is running already.
AXLINK2_EXPORT void actxGetRunningServer(int nlhs, ArrayHandle* plhs, int nrhs,
                                         const hxArray* const* prhs);

} // namespace COM2
