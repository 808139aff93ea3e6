#include "platform/linux/files/UnfinishedWork.h"

#include "platform/linux/files/CompareItems.h"
#include "platform/linux/files/RemoveTree.h"
#include "platform/linux/files/RenameWithoutReplacing.h"
#include "platform/linux/files/TreeEnumeration.h"
#include "platform/linux/files/Uninterrupted.h"
#include "platform/linux/files/WithdrawnItem.h"
#include "platform/linux/files/WriteAll.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cinttypes>
#include <cstdio>
#include <filesystem>
#include <map>
#include <random>
#include <string_view>
#include <vector>

namespace tessel {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view kHiddenPrefix = ".tsd-temporary-";
constexpr std::size_t kMaximumSize = 64 * 1024;
// How long another process may take between making a note and locking it.
constexpr auto kLongestBeginning = std::chrono::minutes(1);

std::string randomName()
{
    std::random_device random;
    std::array<char, 33> digits{};
    std::snprintf(digits.data(), digits.size(), "%08x%08x%08x%08x", random(), random(), random(), random());
    return digits.data();
}

// A note is a list of keys and values, each ended by a null byte, which no path holds.
void add(std::string& text, std::string_view key, std::string_view value)
{
    text.append(key).push_back('\0');
    text.append(value).push_back('\0');
}

void add(std::string& text, std::string_view key, const std::optional<URL>& url)
{
    if (url)
        add(text, key, std::string_view(url->path()));
}

void add(std::string& text, std::string_view key, const std::optional<ItemStamp>& stamp)
{
    if (!stamp)
        return;
    std::array<char, 128> numbers{};
    std::snprintf(numbers.data(), numbers.size(), "%" PRIu64 " %" PRIu64 " %" PRIu32 " %" PRIu64 " %" PRId64,
                  stamp->device, stamp->inode, stamp->mode, stamp->size, stamp->modified);
    add(text, key, std::string_view(numbers.data()));
}

std::string textOf(const UnfinishedChange& change)
{
    std::string text;
    add(text, "hidden", change.hidden);
    add(text, "place", change.place);
    add(text, "stamp", change.stamp);
    add(text, "equalTo", change.equalTo);
    if (const auto& copying = change.copying) {
        add(text, "from", std::optional(copying->from));
        add(text, "source", std::optional(copying->source));
        add(text, "to", std::optional(copying->to));
        add(text, "copy", std::optional(copying->copy));
    }
    return text;
}

using Fields = std::map<std::string, std::string, std::less<>>;

// None for a note that is damaged or only begun.
std::optional<Fields> fieldsOf(std::string_view text)
{
    Fields fields;
    while (!text.empty()) {
        const auto keyEnd = text.find('\0');
        const auto valueEnd = keyEnd == std::string_view::npos ? keyEnd : text.find('\0', keyEnd + 1);
        if (valueEnd == std::string_view::npos)
            return std::nullopt;
        fields.emplace(text.substr(0, keyEnd), text.substr(keyEnd + 1, valueEnd - keyEnd - 1));
        text.remove_prefix(valueEnd + 1);
    }
    return fields;
}

std::optional<URL> urlIn(const Fields& fields, std::string_view key)
{
    const auto field = fields.find(key);
    return field == fields.end() || !field->second.starts_with('/') ? std::nullopt
                                                                    : std::optional(URL::file(field->second));
}

std::optional<ItemStamp> stampIn(const Fields& fields, std::string_view key)
{
    const auto field = fields.find(key);
    ItemStamp stamp;
    const bool isRead = field != fields.end() &&
                        std::sscanf(field->second.c_str(), "%" SCNu64 " %" SCNu64 " %" SCNu32 " %" SCNu64 " %" SCNd64,
                                    &stamp.device, &stamp.inode, &stamp.mode, &stamp.size, &stamp.modified) == 5;
    return isRead ? std::optional(stamp) : std::nullopt;
}

UnfinishedChange changeIn(const Fields& fields)
{
    UnfinishedChange change{urlIn(fields, "hidden"), urlIn(fields, "place"), stampIn(fields, "stamp"),
                            urlIn(fields, "equalTo"), std::nullopt};
    const auto from = urlIn(fields, "from");
    const auto to = urlIn(fields, "to");
    const auto source = stampIn(fields, "source");
    const auto copy = stampIn(fields, "copy");
    if (from && to && source && copy)
        change.copying = UnfinishedChange::Copying{*from, *source, *to, *copy};
    return change;
}

bool isToBeRemoved(const UnfinishedChange& change)
{
    if (!change.place)
        return true;
    return change.stamp ? stampOf(*change.hidden) == change.stamp
                        : change.equalTo && areEqualItems(*change.hidden, *change.equalTo);
}

// Also whether there was nothing to clear up.
bool clearUpHidden(const UnfinishedChange& change)
{
    // A damaged note must not cost the user an item of theirs.
    if (!change.hidden || !change.hidden->lastPathComponent().starts_with(kHiddenPrefix) || !stampOf(*change.hidden))
        return true;
    if (isToBeRemoved(change))
        return !removeTree(*change.hidden, Protection::Override, *change.hidden);
    return renameToFreeNameLike(*change.hidden, *change.place);
}

bool isCopied(const UnfinishedChange::Copying& copying)
{
    const auto source = stampOf(copying.from);
    const auto copy = stampOf(copying.to);
    return source && copy && source->isSameItem(copying.source) && copy->isSameItem(copying.copy);
}

// Removes of an item what is the same in its copy. What somebody has changed of either since stays in both.
void removeWhatIsCopied(const URL& item, const URL& copy)
{
    std::vector<std::string> paths = {{}}; // folders before what is in them
    enumerateTree(
        item, [&](const URL& url, const FileAttributes&) { paths.push_back(url.path().substr(item.path().size())); },
        [](const URL&, const Error&) { return OnEnumerationError::Continue; });
    for (auto path = paths.rbegin(); path != paths.rend(); ++path) {
        const auto original = URL::file(item.path() + *path);
        const auto* name = original.path().c_str();
        if (uninterrupted([&] { return ::rmdir(name); }) != 0 && errno == ENOTDIR &&
            areEqualItems(original, URL::file(copy.path() + *path)))
            uninterrupted([&] { return ::unlink(name); });
    }
}

// Out of everybody's reach, for others are at work.
bool clearUpCopying(const UnfinishedChange::Copying& copying, const UnfinishedWork& unfinished)
{
    if (!isCopied(copying))
        return true;
    UnfinishedChange should;
    should.equalTo = copying.to;
    auto source = WithdrawnItem::withdraw(copying.from, copying.from, unfinished, std::move(should));
    if (!source)
        return false;
    removeWhatIsCopied(source->location(), copying.to);
    return stampOf(source->location()) || !source.value().remove();
}

std::string contentOf(int descriptor)
{
    std::string content(kMaximumSize, '\0');
    const auto length = uninterrupted([&] { return ::pread(descriptor, content.data(), content.size(), 0); });
    content.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
    return content;
}

bool isJustBegun(const fs::path& note)
{
    std::error_code ignored;
    const auto written = fs::last_write_time(note, ignored);
    return !ignored && written > fs::file_time_type::clock::now() - kLongestBeginning;
}

FileDescriptor newNote(const std::string& path, int flags)
{
    return FileDescriptor(uninterrupted([&] { return ::open(path.c_str(), O_RDWR | O_CLOEXEC | flags, 0600); }));
}

bool giveName(int file, const std::string& path)
{
    const auto self = "/proc/self/fd/" + std::to_string(file);
    return uninterrupted([&] { return ::linkat(AT_FDCWD, self.c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW); }) ==
           0;
}

void clearUpAfter(const fs::path& note, const UnfinishedWork& unfinished)
{
    const FileDescriptor file(::open(note.c_str(), O_RDWR | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK));
    if (!file.isOpen() || ::flock(file.get(), LOCK_EX | LOCK_NB) != 0)
        return;
    const auto fields = fieldsOf(contentOf(file.get()));
    if (!fields || fields->empty()) {
        if (!isJustBegun(note))
            ::unlink(note.c_str());
        return;
    }
    const auto change = changeIn(*fields);
    if (clearUpHidden(change) && (!change.copying || clearUpCopying(*change.copying, unfinished)))
        ::unlink(note.c_str());
}

} // namespace

URL hiddenNameBeside(const URL& item)
{
    return item.deletingLastPathComponent().appending(std::string(kHiddenPrefix) + randomName());
}

bool isOutOfSight(const URL& item)
{
    return item.path().find('/' + std::string(kHiddenPrefix)) != std::string::npos;
}

UnfinishedWork::Note::~Note()
{
    if (!path_.empty())
        uninterrupted([&] { return ::unlink(path_.c_str()); });
}

// A note has its name once it is locked and written, so that a program that is killed leaves none that is empty. Only
// where there are no files without a name it has one from the beginning.
UnfinishedWork::Note UnfinishedWork::remember(const UnfinishedChange& change) const
{
    Note note;
    auto path = folder_.appending(randomName()).path();
    note.file_ = newNote(folder_.path(), O_TMPFILE);
    if (!note.file_.isOpen() && errno == ENOENT && ::mkdir(folder_.path().c_str(), 0700) == 0)
        note.file_ = newNote(folder_.path(), O_TMPFILE);
    const bool isNamed = !note.file_.isOpen();
    if (isNamed)
        note.file_ = newNote(path, O_CREAT | O_EXCL);
    if (!note.file_.isOpen())
        return note;
    uninterrupted([&] { return ::flock(note.file_.get(), LOCK_EX); });
    const bool isWritten = writeAll(note.file_.get(), textOf(change));
    if (isNamed || (isWritten && giveName(note.file_.get(), path)))
        note.path_ = std::move(path);
    return note;
}

void UnfinishedWork::clearUp() const
{
    std::error_code ended;
    for (fs::directory_iterator note(folder_.path(), ended); !ended && note != fs::directory_iterator();
         note.increment(ended))
        clearUpAfter(note->path(), *this);
}

void UnfinishedWork::clearUpAfterOthers() const
{
    const auto before = stampOf(folder_);
    if (!before || before->modified == idleSince_)
        return;
    std::error_code unknown;
    if (fs::is_empty(folder_.path(), unknown) && !unknown)
        idleSince_ = before->modified;
    else
        clearUp();
}

} // namespace tessel
