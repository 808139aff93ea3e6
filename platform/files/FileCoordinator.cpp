#include "platform/files/FileCoordinator.h"

#include "platform/base/Platform.h"
#include "platform/files/FileCoordinationService.h"

namespace tessel {

namespace {

FileCoordinationService& service()
{
    return platform::installed().coordination;
}

} // namespace

std::optional<Error> FileCoordinator::coordinateReading(const URL& url, ReadingOptions options,
                                                        const Accessor& accessor, const Progress& progress)
{
    if (options == ReadingOptions::None)
        return service().read(url, progress, presenter_, [&] { accessor(url); });
    accessor(url);
    return std::nullopt;
}

std::optional<Error> FileCoordinator::coordinateWriting(const URL& url, WritingOptions options,
                                                        const Accessor& accessor)
{
    const WriteIntent intents[] = {{url, options}};
    return service().write(intents, presenter_, [&] { accessor(url); });
}

std::optional<Error> FileCoordinator::coordinateWriting(const URL& first, WritingOptions firstOptions,
                                                        const URL& second, WritingOptions secondOptions,
                                                        const PairAccessor& accessor)
{
    const WriteIntent intents[] = {{first, firstOptions}, {second, secondOptions}};
    return service().write(intents, presenter_, [&] { accessor(first, second); });
}

void FileCoordinator::itemWillMove(const URL& from, const URL& to)
{
    service().itemWillMove(from, to);
}

void FileCoordinator::itemDidMove(const URL& from, const URL& to)
{
    service().itemDidMove(from, to, presenter_);
}

void FileCoordinator::addFilePresenter(FilePresenter& presenter)
{
    service().addPresenter(presenter);
}

void FileCoordinator::removeFilePresenter(const FilePresenter& presenter)
{
    service().removePresenter(presenter);
}

} // namespace tessel
