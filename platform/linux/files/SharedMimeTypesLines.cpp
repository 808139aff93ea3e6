#include "platform/linux/files/SharedMimeTypesLines.h"

#include <filesystem>
#include <fstream>

namespace fs = std::filesystem;

namespace tessel {

std::string readDatabaseFile(const std::string& path)
{
    constexpr std::uintmax_t kLargestFile = 16 << 20;
    std::error_code error;
    if (!fs::is_regular_file(path, error))
        return {};
    const auto size = fs::file_size(path, error);
    if (error || size > kLargestFile)
        return {};
    std::string text(size, '\0');
    std::ifstream file(path, std::ios::binary);
    file.read(text.data(), static_cast<std::streamsize>(size));
    text.resize(static_cast<std::size_t>(file.gcount()));
    return text;
}

} // namespace tessel
