#include "platform/linux/files/DeepNames.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include <memory>
#include <string_view>
#include <vector>

namespace tessel {

namespace {

struct CloseFolder {
    void operator()(DIR* stream) const { ::closedir(stream); }
};

// Some file systems do not tell in the entry.
bool isFolder(DIR* stream, const dirent& entry)
{
    struct stat status = {};
    if (entry.d_type != DT_UNKNOWN)
        return entry.d_type == DT_DIR;
    return ::fstatat(::dirfd(stream), entry.d_name, &status, AT_SYMLINK_NOFOLLOW) == 0 && S_ISDIR(status.st_mode);
}

} // namespace

void visitDeepNames(const URL& folder, const std::function<bool(const URL&, std::uint64_t inode)>& visit)
{
    std::vector<URL> pending = {folder};
    while (!pending.empty()) {
        const auto parent = std::move(pending.back());
        pending.pop_back();
        const std::unique_ptr<DIR, CloseFolder> stream(::opendir(parent.path().c_str()));
        while (const auto* entry = stream ? ::readdir(stream.get()) : nullptr) {
            const std::string_view name = entry->d_name;
            if (name == "." || name == "..")
                continue;
            const auto url = parent.appending(name);
            if (!visit(url, entry->d_ino))
                return;
            if (isFolder(stream.get(), *entry))
                pending.push_back(url);
        }
    }
}

} // namespace tessel
