// VARIANTs from a hostile server to the host, what became of them back, and host arrays to COM.
#include "conversion/host_to_variant.h"
#include "conversion/variant_to_host.h"
#include "fuzz/fuzz_target.h"
#include "fuzz/scripted_server.h"
#include "host/axlink.h"
#include "host/embedding.h"

using namespace fuzz;

namespace {

// The contents of a VARIANT are the world's or its own; one that the conversion has replaced is
// ours in any case.
harray::unique_array toHost(VARIANT& v, bool warn) {
    hxArray* array = nullptr;
    const axlink2::VariantConversionContext context{.warn = warn};
    attempt([&] { axlink2::variantToHost(&v, &array, context); });
    harray::unique_array result(array);
    if (!result) fail("a value that didn't become an array");
    velmar::displayText(result.get());
    return result;
}

void toVariantAndBack(const hxArray* array, unsigned options) {
    axlink2::ReferenceHolders holders;
    platform::ScopedVariant v;
    attempt([&] {
        axlink2::hostToVariant(v.inOut(), array, options & 1, 0, 0, 0, options & 2, &holders);
        toHost(*v.inOut(), options & 4);
    });
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    prepare();
    const NothingLeft check;
    Script script(ByteSource({data, size}));
    const unsigned options = script.answers.byte();
    axlink::setSafeArraySingleDim(options & 8);
    axlink::setPassSafeArrayByRef(options & 16);
    if (options & 32) {
        const auto array = hostValue(script.answers, [&script] { return script.makeServer(); });
        toVariantAndBack(array.get(), options);
    } else if (options & 64) {
        VARIANT v = script.values.hostile();
        const auto array = toHost(v, options & 4);
        toVariantAndBack(array.get(), options);
    } else {
        platform::ScopedVariant v;
        script.values.fill(*v.inOut());
        const auto array = toHost(*v.inOut(), options & 4);
        toVariantAndBack(array.get(), options);
    }
    return 0;
}
