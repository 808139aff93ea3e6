#pragma once

#include "tests/support/TemporaryDrive.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace tessel {

/// Writes applications into the desktop of an installed platform (`InstalledPlatform::desktop`).
class DesktopOfTest {
public:
    explicit DesktopOfTest(const TemporaryDrive& folder) : folder_(folder) {}

    /// @param keys further lines of the entry: "MimeType=text/plain;"
    void entry(std::string_view identifier, std::string_view exec, std::string_view keys = {}) const
    {
        entryAt("data/applications/" + std::string(identifier) + ".desktop", std::string(identifier), exec, keys);
    }
    void entryAt(std::string_view file, const std::string& name, std::string_view exec, std::string_view keys) const
    {
        folder_.file(file, "[Desktop Entry]\nType=Application\nName=" + name + "\nExec=" + std::string(exec) + "\n" +
                               std::string(keys) + "\n");
    }
    /// An entry of a program that is there: it takes files, and claims a list of MIME types.
    void editor(std::string_view identifier, std::string_view mimeTypes) const
    {
        script("bin/editor", "exit 0");
        entry(identifier, "editor %f", "MimeType=" + std::string(mimeTypes));
    }
    /// A program; the script's arguments are its own.
    URL script(std::string_view file, std::string_view commands) const
    {
        auto url = folder_.file(file, "#!/bin/sh\n" + std::string(commands) + "\n");
        std::filesystem::permissions(url.path(), std::filesystem::perms::owner_all);
        return url;
    }
    void associations(std::string_view content) const { folder_.file("config/mimeapps.list", content); }

private:
    const TemporaryDrive& folder_;
};

} // namespace tessel
