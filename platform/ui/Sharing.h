#pragma once

#include "platform/base/URL.h"

#include <functional>
#include <string>

namespace tessel {

/// How what is in the drive gets to other programs, besides being opened by them. Each is empty where the device cannot
/// do it. Main thread only.
struct Sharing {
    std::function<bool()> canSendByMail;                   ///< asked each time that it could be offered
    std::function<void(const std::string& text)> copyText; ///< to where other programs paste from; UTF-8
    std::function<void(const URL& document)> copyDocument; ///< likewise; pasted as a file
    std::function<void(const URL& document)> sendByMail;   ///< begins a letter that the document is attached to
};

} // namespace tessel
