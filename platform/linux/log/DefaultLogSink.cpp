#include "platform/linux/log/DefaultLogSink.h"

#include "platform/linux/log/JournalSink.h"
#include "platform/linux/log/RotatedFileSink.h"

namespace tessel {

std::shared_ptr<LogSink> makeDefaultLogSink(const std::string& stateFolder)
{
    std::shared_ptr<LogSink> sink = JournalSink::make();
    if (!sink)
        sink = std::make_shared<RotatedFileSink>(stateFolder + "/tesseldrive.log");
    sink->minimumLevel = LogLevel::Info;
    return sink;
}

} // namespace tessel
