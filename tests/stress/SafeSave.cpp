#include "tests/stress/SafeSave.h"

#include "platform/linux/cloud/Placeholder.h"
#include "platform/linux/files/FileDescriptor.h"
#include "platform/linux/files/RenameWithoutReplacing.h"
#include "platform/linux/files/WriteAll.h"
#include "tests/stress/Content.h"
#include "tests/stress/Ledger.h"
#include "tests/stress/Stage.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <system_error>
#include <vector>

namespace tessel {

namespace {

constexpr int kAttempts = 8;

std::string failure()
{
    return "errno " + std::to_string(errno);
}

bool exchange(const URL& one, const URL& other)
{
    return ::renameat2(AT_FDCWD, one.path().c_str(), AT_FDCWD, other.path().c_str(), RENAME_EXCHANGE) == 0;
}

} // namespace

// Its date is the very moment and not the kernel's last tick, so that no two saves have the same one: by its date a
// deletion knows the document.
bool writeNewFile(const URL& url, const std::string& bytes)
{
    const FileDescriptor file(::open(url.path().c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0644));
    timespec times[2] = {};
    ::clock_gettime(CLOCK_REALTIME, &times[0]);
    times[1] = times[0];
    return file.isOpen() && writeAll(file.get(), bytes) && ::futimens(file.get(), times) == 0 &&
           ::fsync(file.get()) == 0;
}

URL SafeSave::hiddenBeside(const URL& document) const
{
    return document.deletingLastPathComponent().appending(prefixOf(owner_) + identifier_ + '-' + base_);
}

std::string SafeSave::save(const URL& document, std::size_t length, const URL& store)
{
    const auto hidden = hiddenBeside(document);
    auto outcome =
        writeNewFile(hidden, makeContent(identifier_, length)) ? putInPlace(hidden, document, store) : failure();
    if (outcome != "done")
        ::unlink(hidden.path().c_str());
    return outcome;
}

// The document may have gone meanwhile, and come back.
std::string SafeSave::putInPlace(const URL& hidden, const URL& document, const URL& store)
{
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        if (exchange(hidden, document)) {
            settleDisplaced(hidden);
            return "done";
        }
        if (errno != ENOENT)
            break;
        tellOfShadow(document, store);
        if (renameWithoutReplacing(hidden, document)) {
            tellOfShadow(document, store);
            return "done";
        }
        if (errno != EEXIST)
            break;
    }
    return failure();
}

void SafeSave::settleDisplaced(const URL& hidden)
{
    const auto displaced = readContent(hidden).identifier;
    if (displaced)
        pen_.fact({"displaced", *displaced, identifier_});
    if (displaced == base_) {
        ::unlink(hidden.path().c_str());
        return;
    }
    const auto aside = hidden.deletingLastPathComponent().appending("Displaced by " + identifier_ + ".txt");
    pen_.fact({"aside", aside.path()});
    (void)renameWithoutReplacing(hidden, aside);
}

// Where the document was sent to the cloud meanwhile, or another one came from there, the new file counts. Of documents
// in the cloud an editor sees nothing: what was there is in the store still.
void SafeSave::tellOfShadow(const URL& document, const URL& store)
{
    const auto record = readPlaceholder(placeholderURL(document));
    const auto shadowed = record ? readContent(store.appending(record->identifier)).identifier : std::nullopt;
    if (shadowed)
        pen_.fact({"shadowed", *shadowed});
}

void SafeSave::recoverAll(LedgerPen& pen, const std::string& owner, const Stage& stage)
{
    namespace fs = std::filesystem;
    std::vector<URL> hidden;
    std::error_code ended;
    for (const auto& place : stage.places()) // of which one lies in another
        for (fs::recursive_directory_iterator entry(place.path(), ended);
             !ended && entry != fs::recursive_directory_iterator(); entry.increment(ended))
            if (entry->path().filename().native().starts_with(prefixOf(owner)))
                hidden.push_back(URL::file(entry->path().native()));
    for (const auto& file : hidden)
        recover(pen, owner, file);
}

void SafeSave::recover(LedgerPen& pen, const std::string& owner, const URL& hidden)
{
    const std::string name(hidden.lastPathComponent());
    const auto prefix = prefixOf(owner);
    const auto dash = name.rfind('-');
    if (!name.starts_with(prefix) || dash <= prefix.size())
        return;
    const auto identifier = name.substr(prefix.size(), dash - prefix.size());
    SafeSave save(pen, owner, identifier, name.substr(dash + 1));
    const auto reading = readContent(hidden);
    if (!reading.isThere || !reading.identifier || reading.identifier == identifier)
        ::unlink(hidden.path().c_str()); // the new content, which came nowhere
    else
        save.settleDisplaced(hidden);
}

} // namespace tessel
