#pragma once

#include "platform/documents/TextContent.h"
#include "platform/linux/preview/TextFile.h"

#include <atomic>
#include <memory>

namespace tessel {

class DispatchQueue;
class MainQueue;

/// Where the work on texts is done.
struct TextQueues {
    MainQueue& mainQueue;
    DispatchQueue& finding; ///< of rows
    DispatchQueue& reading;
};

/// A text file's content. What works on it for longer than it lives lets go of the file as soon as it can.
class LinuxTextContent final : public TextContent, public std::enable_shared_from_this<LinuxTextContent> {
public:
    /// What an opening has read of a text: its beginning.
    struct Beginning {
        std::shared_ptr<TextFile> file;
        TextFile::Extent extent;
        Rows rows;
    };

    LinuxTextContent(Beginning, const TextQueues&);
    ~LinuxTextContent() override { *isWanted_ = false; }

    /// Finds the other rows from now on.
    void findRows();

    [[nodiscard]] std::size_t rowCount() const override { return extent_.rows; }
    [[nodiscard]] bool isComplete() const override { return extent_.isComplete; }
    [[nodiscard]] std::optional<std::uint64_t> lineCount() const override;
    [[nodiscard]] const Rows& firstRows() const override { return firstRows_; }
    void readBlock(std::size_t block, RowsHandler) override;

private:
    const TextQueues queues_;
    const std::shared_ptr<TextFile> file_;
    const Rows firstRows_;
    const std::shared_ptr<std::atomic<bool>> isWanted_ = std::make_shared<std::atomic<bool>>(true);
    TextFile::Extent extent_;
};

} // namespace tessel
