#pragma once

#include "tests/support/TemporaryDrive.h"

#include <cstdint>
#include <fcntl.h>
#include <string>
#include <sys/stat.h>
#include <unistd.h>

namespace tessel {

/// A folder "Big" of empty files in a temporary one that has room for others beside it.
class BigFolder {
public:
    explicit BigFolder(std::int64_t files) : files_(files)
    {
        const int folder = ::open(drive.folder("Big").path().c_str(), O_RDONLY | O_DIRECTORY);
        for (std::int64_t number = 0; number < files_; ++number)
            ::mknodat(folder, name(number).c_str(), S_IFREG | 0600, 0);
        ::close(folder);
    }

    [[nodiscard]] double nameBytes() const
    {
        double bytes = 0;
        for (std::int64_t number = 0; number < files_; ++number)
            bytes += static_cast<double>(name(number).size());
        return bytes / static_cast<double>(files_);
    }

    TemporaryDrive drive;

private:
    // Numbers in no order, as those of pictures that came from several devices.
    static std::string name(std::int64_t number)
    {
        return "IMG_" + std::to_string(number * 7919 % 10'000'019) + (number % 3 ? ".jpg" : " (edited).jpg");
    }

    const std::int64_t files_;
};

} // namespace tessel
