// What is alive at a moment.
#pragma once

#include "host/array.h"
#include "host/embedding.h"
#include "servers/kit/live_objects.h"

#include <string>

namespace axlink2::test {

struct Living {
    int comObjects = kit::liveObjects();
    std::size_t hostObjects = velmar::liveObjectCount();
    std::size_t hostArrays = hxLiveArrayCount();

    // How the present differs, in words; empty when it doesn't.
    std::string newcomers() const {
        const Living present;
        std::string words;
        const auto compare = [&](const char* what, auto before, auto after) {
            if (before == after) return;
            words += std::to_string(after) + " " + what + " after " + std::to_string(before) + "; ";
        };
        compare("COM objects", comObjects, present.comObjects);
        compare("host objects", hostObjects, present.hostObjects);
        compare("host arrays", hostArrays, present.hostArrays);
        if (!words.empty())
            for (const std::string& name : kit::liveObjectNames())
                words += name + " ";
        return words;
    }
};

} // namespace axlink2::test
