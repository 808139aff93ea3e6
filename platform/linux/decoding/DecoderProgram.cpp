#include "platform/linux/decoding/DecoderProgram.h"

#include <unistd.h>

#include <filesystem>

namespace tessel {

namespace {

std::string ownProgram(const char* name)
{
    std::error_code ignored;
    const auto folder = std::filesystem::read_symlink("/proc/self/exe", ignored).parent_path();
    const auto beside = folder / name;
    return ::access(beside.c_str(), X_OK) == 0 ? beside : folder.parent_path() / "libexec/tesseldrive" / name;
}

} // namespace

std::string decoderProgram()
{
    return ownProgram("tesseldrive-decoder");
}

std::string playerProgram()
{
    return ownProgram("tesseldrive-player");
}

} // namespace tessel
