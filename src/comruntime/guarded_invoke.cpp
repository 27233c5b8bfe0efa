// References that end while a call is under way.
#include "comruntime/guarded_invoke.h"

#include "comruntime/server_call.h"

namespace axlink2 {

void releaseServer(IDispatch* server) {
    if (!CallInFlight::takeOver(server)) guardedRelease(server);
}

} // namespace axlink2
