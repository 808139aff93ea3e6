#include "platform/linux/apps/DesktopSharing.h"

#include "platform/linux/apps/DesktopApplications.h"
#include "platform/linux/apps/StartProgram.h"
#include "platform/linux/base/ErrnoError.h"
#include "platform/linux/files/FileDescriptor.h"
#include "platform/log/UnifiedLog.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace tessel {

namespace {

constexpr const char* kText = "text/plain;charset=utf-8";
constexpr const char* kFiles = "text/uri-list"; // RFC 2483

bool isSet(const char* variable)
{
    const char* const value = std::getenv(variable); // NOLINT(concurrency-mt-unsafe): nothing sets any
    return value && *value;
}

/// A file in memory with this content, to be read from its beginning; negative when there is no room.
FileDescriptor fileWith(const std::string& content)
{
    FileDescriptor file(::memfd_create("copied", MFD_CLOEXEC));
    const auto size = static_cast<ssize_t>(content.size());
    const bool isWhole = file.get() >= 0 && ::pwrite(file.get(), content.data(), content.size(), 0) == size;
    return isWhole ? std::move(file) : FileDescriptor(-1);
}

} // namespace

DesktopSharing::DesktopSharing(DesktopFolders folders, const DesktopApplications& applications, UnifiedLog& log)
    : folders_(std::move(folders)), applications_(applications), log_(log)
{
}

Sharing DesktopSharing::sharing()
{
    Sharing sharing;
    sharing.canSendByMail = [this] {
        return folders_.findProgram("xdg-email").has_value() && applications_.opensLinksOf("mailto");
    };
    sharing.sendByMail = [this](const URL& document) { sendByMail(document); };
    if (copyCommand(kText).empty())
        return sharing;
    sharing.copyText = [this](const std::string& text) { copy(text, kText); };
    sharing.copyDocument = [this](const URL& document) { copy(document.absoluteString() + "\r\n", kFiles); };
    return sharing;
}

void DesktopSharing::sendByMail(const URL& document)
{
    if (const auto program = folders_.findProgram("xdg-email"))
        run({*program, "--utf8", "--attach", document.path()}, -1);
}

void DesktopSharing::copy(const std::string& content, const char* type)
{
    const auto command = copyCommand(type);
    const auto input = fileWith(content);
    if (!command.empty() && input.get() >= 0)
        run(command, input.get());
}

/// Takes what is to be pasted from its input; empty where nothing can be.
std::vector<std::string> DesktopSharing::copyCommand(const char* type) const
{
    if (isSet("WAYLAND_DISPLAY"))
        if (const auto program = folders_.findProgram("wl-copy"))
            return {*program, "--type", type};
    if (isSet("DISPLAY"))
        if (const auto program = folders_.findProgram("xclip")) {
            const std::string target = type == kText ? "UTF8_STRING" : type;
            return {*program, "-selection", "clipboard", "-target", target};
        }
    return {};
}

void DesktopSharing::run(std::vector<std::string> command, int input)
{
    const auto program = command.front();
    pid_t child = -1;
    const int failure = startProgram(
        {.path = program, .arguments = std::move(command), .workingFolder = "/", .activationToken = {}, .input = input},
        child);
    if (failure == 0)
        watcher_.watch(child, [](int) {});
    else
        log_.write(LogLevel::Error, "Cannot run %@: %@", program, errnoError(failure, URL::file(program)));
}

} // namespace tessel
