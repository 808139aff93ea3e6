#pragma once

#include "platform/linux/decoding/DecoderMessages.h"
#include "platform/linux/files/FileDescriptor.h"
#include "platform/qt/decoder/OpenDocument.h"

#include <sys/stat.h>

#include <memory>

namespace tessel::qt {

/// Answers requests, one after the other. The last document stays open, for the next one is often about it.
class Answering {
public:
    /// @param socket stays the caller's
    explicit Answering(int socket) : socket_(socket) {}

    /// Until the other side is gone.
    void run();

private:
    void answer(const DecoderRequest&, FileDescriptor file);
    void open(const DecoderRequest&, FileDescriptor file);
    [[nodiscard]] DecoderAnswer inspected();
    [[nodiscard]] DecoderAnswer painted(const DecoderRequest&, FileDescriptor& picture);

    const int socket_;
    struct stat status_ = {};
    std::unique_ptr<OpenDocument> document_; ///< null for what nothing here reads
};

} // namespace tessel::qt
