#include "platform/linux/text/Formatters.h"

namespace tessel {

std::string NumberTexts::text(std::int64_t number) const
{
    std::call_once(opened_,
                   [this] { formatter_ = icu::number::NumberFormatter::withLocale(icu::Locale(locale_.c_str())); });
    UErrorCode status = U_ZERO_ERROR;
    std::string text;
    formatter_.formatInt(number, status).toString(status).toUTF8String(text);
    return U_SUCCESS(status) ? text : std::to_string(number);
}

} // namespace tessel
