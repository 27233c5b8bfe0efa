// What an object of a generated class needs beside its server.
#pragma once

namespace axlink2::bench {

// Bytes of the heap, for each.
struct Memory {
    double server; // alone
    double object; // what its host object adds
    double limit;  // for that
};

// The mean over many servers and their objects.
Memory memoryOfObjects();

} // namespace axlink2::bench
