// What an object of a generated class needs beside its server.
#include "bench/memory.h"

#include "bench/server.h"
#include "platform/holders.h"

#include <malloc.h>
#include <vector>

namespace axlink2::bench {
namespace {

constexpr std::size_t count = 10000;

// Bytes in use for each of `count` results of `make`, which live together.
template <class Make>
double bytesOf(Make&& make) {
    std::vector<decltype(make())> made;
    made.reserve(count + 1);
    made.push_back(make()); // whatever is made once
    const std::size_t before = mallinfo2().uordblks + mallinfo2().hblkhd;
    for (std::size_t i = 0; i < count; ++i)
        made.push_back(make());
    const std::size_t after = mallinfo2().uordblks + mallinfo2().hblkhd;
    return static_cast<double>(after - before) / count;
}

} // namespace

Memory memoryOfObjects() {
    (void)newServerObject(); // registers the class
    const double server = bytesOf([] {
        platform::ComPtr<IDispatch> made;
        CoCreateInstance(Server::definition().parts().coclass.clsid, nullptr, CLSCTX_SERVER,
                         IID_IDispatch, made.putVoid());
        return made;
    });
    const double both = bytesOf([] { return newServerObject(); });
    return {server, both - server, 1024};
}

} // namespace axlink2::bench
