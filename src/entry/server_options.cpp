// Parsing the options of actxserver.
#include "entry/server_options.h"

#include "comruntime/text_argument.h"
#include "host/exception.h"
#include "host/message_ids.h"
#include "host/text.h"

#include <string_view>

namespace axlink2 {
namespace {

constexpr const char* unknownOption = "VELMAR:COM:unknownparam";

bool isText(const hxArray* array) { return hoststring::isNonMissingScalarText(array, 1); }

std::u16string lowerCase(std::u16string_view text) {
    using hsys::i18n::detail::transform;
    char16_t buffer[1024];
    const std::size_t length = transform(buffer, std::size(buffer), text.data(), text.size(), true);
    if (length == 0) return std::u16string(text);
    if (length <= std::size(buffer)) return std::u16string(buffer, length);
    std::u16string result(length, u'\0');
    transform(result.data(), result.size(), text.data(), text.size(), true);
    return result;
}

void readOption(const hxArray* nameArray, const hxArray* valueArray, std::int64_t position,
                ServerOptions& options) {
    if (!isText(nameArray))
        hmsgcore::raise(unknownOption, VELMAR::COM::unknownparamPosition(position));
    if (!isText(valueArray)) return;

    const std::u16string name = lowerCase(readScalarText(nameArray, true));
    const std::u16string_view value = readScalarText(valueArray, true);
    if (name == u"interface") {
        if (value != u"IDispatch") hmsgcore::raise(VELMAR::COM::unsupported64bit());
    } else if (name == u"machinename") {
        options.machine = value;
    } else {
        hxWarningMsgId(unknownOption, VELMAR::COM::unknownparamPosition(position));
    }
}

} // namespace

ServerOptions parseServerOptions(int nrhs, const hxArray* const* prhs) {
    ServerOptions options;
    if (nrhs < 2) return options;
    if (nrhs == 2) {
        if (isText(prhs[1])) options.machine = readScalarText(prhs[1], true);
        return options;
    }
    if (nrhs % 2 == 0) hmsgcore::raise(VELMAR::COM::numargs());
    // Positions count from 1 at the ProgID, so the first option's name has position 2.
    for (int i = 1; i < nrhs; i += 2)
        readOption(prhs[i], prhs[i + 1], i + 1, options);
    return options;
}

} // namespace axlink2
