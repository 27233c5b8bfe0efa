// One class for each message key of the module, `VELMAR::COM::numargs` and so on. A constructor
// takes the arguments in catalogue order and stores copies.
#pragma once

#include "host/message.h"
#include "host/message_table.h"

#include <cstdint>
#include <string>

namespace VELMAR::argument {

using Integer = std::int64_t;
using Narrow = std::string;
using Wide = std::u16string;

} // namespace VELMAR::argument

#define VELMAR_NONE(space, component, name)                                                        \
    namespace VELMAR::space {                                                                      \
    struct name final : hmsgcore::BaseMsgID {                                                      \
        name() : BaseMsgID(component, #name) {}                                                    \
    };                                                                                             \
    }
#define VELMAR_ONE(space, component, name, A)                                                      \
    namespace VELMAR::space {                                                                      \
    struct name final : hmsgcore::BaseMsgID {                                                      \
        explicit name(const argument::A& a) : BaseMsgID(component, #name, {a}) {}                  \
    };                                                                                             \
    }
#define VELMAR_TWO(space, component, name, A, B)                                                   \
    namespace VELMAR::space {                                                                      \
    struct name final : hmsgcore::BaseMsgID {                                                      \
        name(const argument::A& a, const argument::B& b) : BaseMsgID(component, #name, {a, b}) {}  \
    };                                                                                             \
    }
#define VELMAR_EITHER(space, component, name, A, B)                                                \
    namespace VELMAR::space {                                                                      \
    struct name final : hmsgcore::BaseMsgID {                                                      \
        explicit name(const argument::A& a) : BaseMsgID(component, #name, {a}) {}                  \
        explicit name(const argument::B& b) : BaseMsgID(component, #name, {b}) {}                  \
    };                                                                                             \
    }

VELMAR_MESSAGES(VELMAR_NONE, VELMAR_ONE, VELMAR_TWO, VELMAR_EITHER)

#undef VELMAR_NONE
#undef VELMAR_ONE
#undef VELMAR_TWO
#undef VELMAR_EITHER
