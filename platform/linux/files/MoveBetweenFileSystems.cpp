#include "platform/linux/files/MoveBetweenFileSystems.h"

#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/files/ItemCopy.h"
#include "platform/linux/files/RemoveTree.h"
#include "platform/linux/files/Uninterrupted.h"
#include "platform/linux/files/WithdrawnItem.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace tessel {

namespace {

bool syncFolder(const URL& folder)
{
    const FileDescriptor descriptor(
        uninterrupted([&] { return ::open(folder.path().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); }));
    return descriptor.isOpen() && uninterrupted([&] { return ::fsync(descriptor.get()); }) == 0;
}

class Move {
public:
    Move(const URL& from, const URL& to, const URL& named, const UnfinishedWork& unfinished)
        : from_(from), to_(to), named_(named), unfinished_(unfinished), copy_(from, to, named, unfinished)
    {
    }

    std::optional<Error> run()
    {
        if (auto error = copy_.make())
            return error;
        if (auto error = checkSource())
            return error;
        const auto& stamp = copy_.stamp();
        if (!stamp)
            return errnoError(EIO, named_);
        const auto note =
            unfinished_.remember({{}, {}, {}, {}, UnfinishedChange::Copying{from_, copy_.source(), to_, *stamp}});
        if (!copy_.publish())
            return errnoError(errno, named_);
        auto error =
            syncFolder(to_.deletingLastPathComponent()) ? removeSource() : std::optional(errnoError(errno, named_));
        if (error && !isSourceTouched_)
            copy_.takeBack();
        return error;
    }

private:
    [[nodiscard]] std::optional<Error> checkSource() const
    {
        return S_ISDIR(copy_.source().mode) ? checkFolderCanBeRemoved(from_, named_) : std::nullopt;
    }

    std::optional<Error> removeSource()
    {
        UnfinishedChange should;
        should.equalTo = to_;
        auto source = WithdrawnItem::withdraw(from_, named_, unfinished_, std::move(should));
        if (!source)
            return source.error();
        if (!copy_.isCopyOf(source->location()))
            return errnoError(EBUSY, named_);
        copy_.continueMarks(source->location());
        auto error = source.value().remove();
        isSourceTouched_ = error && !copy_.isCopyOf(from_);
        return error;
    }

    const URL from_;
    const URL to_;
    const URL named_;
    const UnfinishedWork& unfinished_;
    ItemCopy copy_;
    bool isSourceTouched_ = false; ///< part of it may be gone
};

} // namespace

std::optional<Error> moveBetweenFileSystems(const URL& from, const URL& to, const URL& named,
                                            const UnfinishedWork& unfinished)
{
    return Move(from, to, named, unfinished).run();
}

} // namespace tessel
