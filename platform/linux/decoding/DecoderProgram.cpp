#include "platform/linux/decoding/DecoderProgram.h"

#include <unistd.h>

#include <filesystem>

namespace tessel {

std::string decoderProgram()
{
    constexpr const char* kName = "tesseldrive-decoder";
    std::error_code ignored;
    const auto folder = std::filesystem::read_symlink("/proc/self/exe", ignored).parent_path();
    const auto beside = folder / kName;
    return ::access(beside.c_str(), X_OK) == 0 ? beside : folder.parent_path() / "libexec/tesseldrive" / kName;
}

} // namespace tessel
