#include "platform/linux/base/UTF8.h"

#include <unicode/ustring.h>

#include <cstdint>

namespace tessel {

bool isValidUTF8(std::string_view bytes)
{
    UErrorCode status = U_ZERO_ERROR;
    // Only counts: with no room to write to, what is well-formed ends as a mere overflow.
    u_strFromUTF8(nullptr, 0, nullptr, bytes.data(), static_cast<std::int32_t>(bytes.size()), &status);
    return U_SUCCESS(status) || status == U_BUFFER_OVERFLOW_ERROR;
}

} // namespace tessel
