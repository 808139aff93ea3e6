#include "tests/support/DriveContent.h"

#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/cloud/TagAttribute.h"

#include <filesystem>
#include <fstream>
#include <iterator>

namespace tessel {

namespace fs = std::filesystem;

std::string contentOfItem(const URL& url)
{
    const auto status = fs::symlink_status(url.path());
    if (fs::is_symlink(status))
        return "link to " + fs::read_symlink(url.path()).string();
    const auto tags = readTagNames(url);
    const auto tag = tags && !tags->empty() ? " tagged " + tags->front() : "";
    if (isPlaceholderName(url.lastPathComponent()))
        return "in the cloud" + tag;
    if (fs::is_directory(status))
        return "folder" + tag;
    std::ifstream stream(url.path(), std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(stream), {}) + tag;
}

std::map<std::string, std::string> contentOf(const URL& folder)
{
    std::map<std::string, std::string> content;
    for (const auto& entry : fs::recursive_directory_iterator(folder.path())) {
        const auto url = URL::file(entry.path().string());
        const auto record = readPlaceholder(url);
        const auto shown = record ? url.deletingLastPathComponent().appending(record->name) : url;
        if (!record || !fs::exists(fs::symlink_status(shown.path())))
            content[shown.path().substr(folder.path().size() + 1)] = contentOfItem(url);
    }
    return content;
}

} // namespace tessel
