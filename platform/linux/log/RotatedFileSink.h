#pragma once

#include "platform/linux/files/FileDescriptor.h"
#include "platform/log/UnifiedLog.h"

#include <cstddef>
#include <string>

namespace tessel {

/// Appends lines, each after its date and time, to a file for the user alone. The file and its folder are made by the
/// first line. Before it would grow beyond 4 MiB it becomes "<path>.1", in place of the one before.
///
/// Several programs may write the same file: lines stay whole, and one of them rotates. A line that the disk does not
/// take is lost, and nothing else happens.
class RotatedFileSink final : public LogSink {
public:
    static constexpr std::size_t kRotationSize = std::size_t{4} << 20U; // bytes

    explicit RotatedFileSink(std::string path) : path_(std::move(path)) {}

    void write(const Date&, LogLevel, std::string_view line) override;

private:
    void open();
    void openAnewIfNeeded(std::size_t additionalSize);
    void rotate() const;

    const std::string path_;
    FileDescriptor file_;
};

} // namespace tessel
