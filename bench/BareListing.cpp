#include "bench/BareListing.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <chrono>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unicode/coll.h>
#include <unistd.h>
#include <vector>

namespace tessel {

BareListing listBarely(const URL& url)
{
    struct Item {
        std::string name, key;
        struct statx status;
    };
    UErrorCode error = U_ZERO_ERROR;
    const std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance("en_GB", error));
    collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, error);

    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    const int folder = ::open(url.path().c_str(), O_RDONLY | O_DIRECTORY);
    std::vector<char> buffer(256 * 1024);
    std::vector<Item> items;
    for (long length; (length = ::syscall(SYS_getdents64, folder, buffer.data(), buffer.size())) > 0;)
        for (long offset = 0; offset < length;) {
            const auto* entry = reinterpret_cast<const dirent64*>(buffer.data() + offset);
            offset += entry->d_reclen;
            if (entry->d_name[0] == '.')
                continue;
            auto& item = items.emplace_back();
            item.name = entry->d_name;
            ::statx(folder, entry->d_name, AT_SYMLINK_NOFOLLOW, STATX_TYPE | STATX_SIZE | STATX_MTIME, &item.status);
            std::uint8_t key[1024];
            const auto size = collator->getSortKey(icu::UnicodeString::fromUTF8(item.name), key, sizeof key);
            item.key.assign(reinterpret_cast<const char*>(key), static_cast<std::size_t>(size));
        }
    std::vector<const Item*> sorted;
    for (const auto& item : items)
        sorted.push_back(&item);
    std::sort(sorted.begin(), sorted.end(), [](const Item* left, const Item* right) { return left->key < right->key; });
    benchmark::DoNotOptimize(sorted.data());
    ::close(folder);
    const std::chrono::duration<double> taken = Clock::now() - start;
    return {taken.count(), static_cast<double>(sorted.size())};
}

BareListing listBarelyInChild(const URL& folder)
{
    int ends[2];
    BareListing measured;
    if (::pipe(ends) != 0)
        return measured;
    const auto child = ::fork();
    if (child == 0) {
        measured = listBarely(folder);
        const auto written = ::write(ends[1], &measured, sizeof measured);
        ::_exit(written == sizeof measured ? 0 : 1);
    }
    ::close(ends[1]);
    if (::read(ends[0], &measured, sizeof measured) != sizeof measured)
        measured = {};
    ::close(ends[0]);
    ::waitpid(child, nullptr, 0);
    return measured;
}

} // namespace tessel
