#pragma once

#include "platform/documents/DocumentReader.h"
#include "platform/linux/preview/LinuxTextContent.h"
#include "platform/run/OperationQueue.h"
#include "platform/run/SerialQueue.h"

#include <atomic>
#include <memory>
#include <string_view>

namespace tessel {

class FileCoordinationService;
class ResourceValues;
class TypeRegistry;

struct DocumentReaderServices {
    MainQueue& mainQueue;
    FileCoordinationService& coordination;
    const ResourceValues& resources;
    const TypeRegistry& types;
};

/// Opens documents on workers: several at a time, since one may wait for another program.
class LinuxDocumentReader final : public DocumentReader {
public:
    explicit LinuxDocumentReader(const DocumentReaderServices& services) : services_(services) {}
    /// Ends what is under way.
    ~LinuxDocumentReader() override { isStopping_ = true; }

    [[nodiscard]] std::shared_ptr<Opening> open(const URL&, Handlers) override;

private:
    /// What a worker has found; it becomes the document on the main queue.
    struct Found {
        std::optional<LinuxTextContent::Beginning> text;
        bool isEmpty = false;
        std::optional<Error> failure;
    };
    class Job;
    class Work;

    void run(const Work&);
    [[nodiscard]] Result<DocumentDescription> describe(const URL&) const;
    [[nodiscard]] Found read(const Work&, const std::string& type);
    [[nodiscard]] Found readFile(const URL&, bool mayBeText) const;
    [[nodiscard]] bool mayBeText(std::string_view type) const;
    [[nodiscard]] OpenedDocument documentOf(Found&&);

    const DocumentReaderServices services_;
    std::atomic<bool> isStopping_ = false;
    SerialQueue finding_{"orvane.TesselDriveApp.textRows", QualityOfService::Utility};
    SerialQueue reading_{"orvane.TesselDriveApp.textReading"};
    OperationQueue openings_{"orvane.TesselDriveApp.opening", QualityOfService::UserInitiated, 4};
};

} // namespace tessel
