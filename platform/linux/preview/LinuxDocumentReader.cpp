#include "platform/linux/preview/LinuxDocumentReader.h"

#include "platform/files/FileCoordinationService.h"
#include "platform/files/ResourceValues.h"
#include "platform/files/TypeRegistry.h"
#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/files/Uninterrupted.h"
#include "platform/run/MainQueue.h"

#include <algorithm>
#include <array>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>

namespace tessel {

namespace {

constexpr std::size_t kBeginning = std::size_t{64} * 1024;

/// What is no text, or is rather shown as something else.
constexpr std::string_view kOtherTypes[] = {"public.image", "public.audiovisual-content", "com.adobe.pdf",
                                            "public.archive", "public.font"};

template <typename T>
std::optional<T> valueOf(const ResourceValues::Values& values, ResourceKey key)
{
    const auto found = values.find(key);
    const auto* value = found == values.end() ? nullptr : found->second.get<T>();
    return value ? std::optional(*value) : std::nullopt;
}

std::string beginningOf(int file)
{
    std::string bytes(kBeginning, 0);
    const auto count = uninterrupted([&] { return ::pread(file, bytes.data(), bytes.size(), 0); });
    bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return bytes;
}

/// None for what is no text.
std::optional<LinuxTextContent::Beginning> beginningOfText(FileDescriptor file, std::uint64_t size)
{
    const auto bytes = beginningOf(file.get());
    const auto encoding = encodingOfText(bytes, bytes.size() >= size);
    if (!encoding)
        return std::nullopt;
    auto text = std::make_shared<TextFile>(std::move(file), size, *encoding);
    const auto extent = text->findMore();
    auto rows = text->readBlock(0);
    return LinuxTextContent::Beginning{std::move(text), extent, std::move(rows)};
}

} // namespace

/// What the asker holds: handlers are called while it is there. Main thread only.
class LinuxDocumentReader::Job final : public Opening {
public:
    explicit Job(Handlers handlers) : handlers(std::move(handlers)) {}
    ~Job() override { *isWanted = false; }

    const Handlers handlers;
    const std::shared_ptr<std::atomic<bool>> isWanted = std::make_shared<std::atomic<bool>>(true);
    double fraction = -1; ///< the last that was told
};

/// What the worker holds.
class LinuxDocumentReader::Work {
public:
    Work(URL document, const std::shared_ptr<Job>& job, MainQueue& mainQueue)
        : url(std::move(document)), job_(job), isWanted_(job->isWanted), mainQueue_(mainQueue)
    {
    }

    const URL url;

    [[nodiscard]] bool isWanted() const { return *isWanted_; }
    /// Calls back on the main queue, with the job, if it is still there.
    template <typename Call>
    void tell(Call call) const
    {
        mainQueue_.async([job = job_, call = std::move(call)] {
            if (const auto there = job.lock())
                call(*there);
        });
    }

private:
    const std::weak_ptr<Job> job_;
    const std::shared_ptr<const std::atomic<bool>> isWanted_;
    MainQueue& mainQueue_;
};

std::shared_ptr<DocumentReader::Opening> LinuxDocumentReader::open(const URL& url, Handlers handlers)
{
    auto job = std::make_shared<Job>(std::move(handlers));
    openings_.addOperation([this, work = Work(url, job, services_.mainQueue)] {
        if (work.isWanted())
            run(work);
    });
    return job;
}

void LinuxDocumentReader::run(const Work& work)
{
    auto found = std::make_shared<Found>();
    if (const auto description = describe(work.url)) {
        work.tell([described = *description](const Job& job) { job.handlers.described(described); });
        if (description->isFolder)
            return;
        *found = read(work, description->typeIdentifier);
    } else {
        found->failure = description.error();
    }
    work.tell([this, found](const Job& job) { job.handlers.opened(documentOf(std::move(*found))); });
}

Result<DocumentDescription> LinuxDocumentReader::describe(const URL& url) const
{
    static constexpr std::array kKeys = {ResourceKey::TypeIdentifier, ResourceKey::LocalizedTypeDescription,
                                         ResourceKey::FileSize, ResourceKey::IsDirectory,
                                         ResourceKey::DownloadingStatus};
    const auto values = services_.resources.values(kKeys, url, ValueVariant::Promised);
    if (!values)
        return values.error();
    DocumentDescription description;
    description.typeIdentifier = valueOf<std::string>(*values, ResourceKey::TypeIdentifier).value_or("");
    description.typeDescription = valueOf<std::string>(*values, ResourceKey::LocalizedTypeDescription).value_or("");
    if (const auto size = valueOf<std::int64_t>(*values, ResourceKey::FileSize); size && *size >= 0)
        description.size = static_cast<std::uint64_t>(*size);
    description.isFolder = valueOf<bool>(*values, ResourceKey::IsDirectory).value_or(false);
    description.isOnDevice =
        valueOf<std::string>(*values, ResourceKey::DownloadingStatus) != DownloadingStatus::kNotDownloaded;
    return description;
}

LinuxDocumentReader::Found LinuxDocumentReader::read(const Work& work, const std::string& type)
{
    const auto progress = [&](std::uint64_t done, std::uint64_t total) {
        const auto fraction = total > 0 ? std::min(1.0, static_cast<double>(done) / static_cast<double>(total)) : 0;
        work.tell([fraction](Job& job) {
            if (std::exchange(job.fraction, fraction) != fraction)
                job.handlers.downloaded(fraction);
        });
        return isStopping_ || !work.isWanted() ? OnProgress::Cancel : OnProgress::Continue;
    };
    Found found;
    auto failure =
        services_.coordination.read(work.url, progress, nullptr, [&] { found = readFile(work.url, mayBeText(type)); });
    if (failure)
        found.failure = std::move(failure);
    return found;
}

/// What is no file, such as a pipe, is never waited for.
LinuxDocumentReader::Found LinuxDocumentReader::readFile(const URL& url, bool mayBeText) const
{
    Found found;
    FileDescriptor file(
        uninterrupted([&] { return ::open(url.path().c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY); }));
    struct stat status {};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0)
        found.failure = errnoError(errno, url);
    else if (!S_ISREG(status.st_mode))
        found.failure = errnoError(EINVAL, url);
    else if (status.st_size == 0)
        found.isEmpty = true;
    else if (mayBeText)
        found.text = beginningOfText(std::move(file), static_cast<std::uint64_t>(status.st_size));
    return found;
}

bool LinuxDocumentReader::mayBeText(std::string_view type) const
{
    return std::none_of(std::begin(kOtherTypes), std::end(kOtherTypes),
                        [&](std::string_view other) { return services_.types.conforms(type, other); });
}

OpenedDocument LinuxDocumentReader::documentOf(Found&& found)
{
    OpenedDocument document{nullptr, found.isEmpty, std::move(found.failure)};
    if (!found.text)
        return document;
    const auto text =
        std::make_shared<LinuxTextContent>(std::move(*found.text), TextQueues{services_.mainQueue, finding_, reading_});
    text->findRows();
    document.text = text;
    return document;
}

} // namespace tessel
