#pragma once

#include "platform/linux/apps/ChildWatcher.h"
#include "platform/linux/apps/DesktopFolders.h"
#include "platform/ui/Sharing.h"

#include <string>
#include <vector>

namespace tessel {

class DesktopApplications;
class UnifiedLog;

/// Gives what is in the drive to other programs, by the commands that a desktop has for it: xdg-email, where an
/// application writes mail, and wl-copy or xclip, where there is a screen to paste on. Main thread only.
class DesktopSharing {
public:
    /// @param applications, log outlive it
    DesktopSharing(DesktopFolders, const DesktopApplications& applications, UnifiedLog& log);

    /// What this desktop can do; outlived by this.
    [[nodiscard]] Sharing sharing();

private:
    void sendByMail(const URL&);
    void copy(const std::string& content, const char* type);
    [[nodiscard]] std::vector<std::string> copyCommand(const char* type) const;
    void run(std::vector<std::string> command, int input);

    const DesktopFolders folders_;
    const DesktopApplications& applications_;
    UnifiedLog& log_;
    ChildWatcher watcher_;
};

} // namespace tessel
