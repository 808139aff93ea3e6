// What libFuzzer calls: TESSEL_FUZZ_TARGET names the reader.
#include "tests/fuzz/Targets.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace {

const tessel::fuzz::Target& target()
{
    static const auto* const found = [] {
        const auto* name = std::getenv("TESSEL_FUZZ_TARGET");
        const auto* named = tessel::fuzz::targetNamed(name ? name : "");
        if (!named) {
            std::fprintf(stderr, "TESSEL_FUZZ_TARGET names no target\n");
            std::exit(2);
        }
        return named;
    }();
    return *found;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t count)
{
    target().read({reinterpret_cast<const char*>(bytes), count});
    return 0;
}
