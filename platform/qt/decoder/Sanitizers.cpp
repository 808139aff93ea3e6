#include "platform/qt/decoder/Sanitizers.h"

// What the address sanitizer asks its program: too large an allocation fails, as it does below a limit, and what the
// libraries leak is no fault of ours.
extern "C" const char* __asan_default_options();

const char* __asan_default_options()
{
    return "allocator_may_return_null=1:detect_leaks=0";
}
