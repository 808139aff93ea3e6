#include "platform/log/StreamSink.h"

#include <ostream>
#include <string>

namespace tessel {

void StreamSink::write(const Date&, LogLevel, std::string_view line)
{
    // Whole, because an unbuffered stream writes out each piece for itself.
    stream_ << std::string(line).append(1, '\n') << std::flush;
}

} // namespace tessel
