#pragma once

#include "platform/base/URL.h"

#include <functional>
#include <string>
#include <vector>

namespace tessel {

/// Posted on the main thread after a change of the devices that documents can be sent to.
inline constexpr const char* kPairedDevicesChangedNotification = "PairedDevicesChanged";

/// Another device of the user's, which can be reached now.
struct PairedDevice {
    std::string identifier;
    std::string name; ///< as the user calls it; not empty

    bool operator==(const PairedDevice&) const = default;
};

/// How what is in the drive gets to other programs, besides being opened by them. Each is empty where the device cannot
/// do it. Main thread only.
struct Sharing {
    std::function<bool()> canSendByMail;                   ///< asked each time that it could be offered
    std::function<void(const std::string& text)> copyText; ///< to where other programs paste from; UTF-8
    std::function<void(const URL& document)> copyDocument; ///< likewise; pasted as a file
    std::function<void(const URL& document)> sendByMail;   ///< begins a letter that the document is attached to

    std::vector<PairedDevice> pairedDevices; ///< by name; those of the last look
    std::function<void()> lookForDevices;    ///< begins another look, and waits for nothing
    /// Sends the document of a file. @param ended told later whether it is on its way
    std::function<void(const PairedDevice&, const URL& document, std::function<void(bool isSent)> ended)> sendToDevice;
};

} // namespace tessel
