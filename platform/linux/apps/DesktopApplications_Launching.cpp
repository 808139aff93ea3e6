#include "platform/files/FileCoordinationService.h"
#include "platform/linux/apps/DesktopApplications.h"
#include "platform/linux/apps/StartProgram.h"
#include "platform/linux/base/ErrnoError.h"
#include "platform/log/UnifiedLog.h"
#include "platform/run/MainQueue.h"
#include "platform/text/TextServices.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

namespace tessel {

namespace {

constexpr Clock::Ticks kAtOnce = std::chrono::seconds(5);

bool canBeSeen(const URL& document)
{
    return ::access(document.path().c_str(), F_OK) == 0;
}

bool canBeEntered(const std::string& folder)
{
    return !folder.empty() && ::access(folder.c_str(), X_OK) == 0;
}

std::string workingFolderOf(const DesktopEntry& entry, const URL& document)
{
    if (canBeEntered(entry.workingFolder))
        return entry.workingFolder;
    const auto folder = document.deletingLastPathComponent().path();
    return canBeEntered(folder) ? folder : "/";
}

/// "http" or "https"; empty for a link of another scheme, and for what is no link in one word.
std::string webSchemeOf(std::string_view link)
{
    const auto isSeparator = [](char byte) { return static_cast<unsigned char>(byte) <= ' ' || byte == 0x7F; };
    if (std::any_of(link.begin(), link.end(), isSeparator))
        return {};
    for (const std::string_view scheme : {"http", "https"})
        if (link.starts_with(scheme) && link.substr(scheme.size()).starts_with("://"))
            return std::string(scheme);
    return {};
}

bool hasFailed(int status)
{
    return !WIFEXITED(status) || WEXITSTATUS(status) != 0;
}

} // namespace

std::optional<Error> DesktopApplications::openDocument(const URL& document, const ApplicationRecord& application)
{
    if (canBeSeen(document))
        return start(application.bundleIdentifier, document);
    downloadAndStart(application.bundleIdentifier, document);
    return std::nullopt;
}

std::optional<Error> DesktopApplications::openLink(const std::string& link)
{
    catalog_.refresh();
    if (const auto scheme = webSchemeOf(link); !scheme.empty())
        for (const auto* entry : ownersOfType("x-scheme-handler/" + scheme))
            if (entry->exec->takesAddress())
                return start(*entry, *programOf(*entry), URL::file("/"), link);
    const auto reason = services_.text.localized("There is no application that opens this link.");
    return Error{Domain::General, ErrorCode::kUnsupported, reason, reason};
}

bool DesktopApplications::opensLinksOf(const std::string& scheme) const
{
    catalog_.refresh();
    const auto owners = ownersOfType("x-scheme-handler/" + scheme);
    return std::any_of(owners.begin(), owners.end(), [](const auto* entry) { return entry->exec->takesAddress(); });
}

void DesktopApplications::downloadAndStart(const std::string& bundleIdentifier, const URL& document)
{
    ++awaitedDocuments_;
    downloads_.addOperation([this, bundleIdentifier, document] {
        const auto progress = [this](std::uint64_t, std::uint64_t) {
            return isStopping_ ? OnProgress::Cancel : OnProgress::Continue;
        };
        auto failure = services_.coordination.read(document, progress, nullptr, [] {});
        if (!failure && !canBeSeen(document))
            failure = errnoError(ENOENT, document);
        services_.mainQueue.async([this, bundleIdentifier, document, failure] {
            --awaitedDocuments_;
            if (const auto error = failure ? failure : start(bundleIdentifier, document))
                services_.log.write(LogLevel::Error, "Cannot open %@ in %@: %@", document, bundleIdentifier, *error);
        });
    });
}

std::optional<Error> DesktopApplications::start(const std::string& bundleIdentifier, const URL& document)
{
    catalog_.refresh();
    const auto* entry = catalog_.entry(bundleIdentifier);
    const auto program = entry ? programOf(*entry) : std::nullopt;
    if (!program || !entry->exec->takesDocument())
        return errnoError(program ? EINVAL : ENOENT, URL::file(bundleIdentifier));
    auto error = start(*entry, *program, document, {});
    if (!error && documentOpened)
        documentOpened(document);
    return error;
}

std::optional<Error> DesktopApplications::start(const DesktopEntry& entry, const std::string& program,
                                                const URL& document, const std::string& link)
{
    auto arguments = entry.exec->arguments({document, entry.localizedName, entry.icon, entry.file.path(), link});
    arguments.insert(arguments.begin(), entry.exec->program());
    if (!entry.isInTerminal)
        return start(entry, program, std::move(arguments), document);
    auto words = terminalCommand();
    if (words.empty()) {
        const auto reason = services_.text.localized("There is no terminal to run the application in.");
        return Error{Domain::General, ErrorCode::kUnsupported, reason, reason};
    }
    const auto terminal = words.front();
    words.insert(words.end(), arguments.begin(), arguments.end());
    return start(entry, terminal, std::move(words), document);
}

std::vector<std::string> DesktopApplications::terminalCommand() const
{
    if (const auto program = folders_.findProgram("xdg-terminal-exec"))
        return {*program};
    if (const auto program = folders_.findProgram("x-terminal-emulator"))
        return {*program, "-e"};
    return {};
}

std::optional<Error> DesktopApplications::start(const DesktopEntry& entry, const std::string& program,
                                                std::vector<std::string> arguments, const URL& document)
{
    const auto token = activationToken ? activationToken() : std::string();
    pid_t child = -1;
    const int failure = startProgram({program, std::move(arguments), workingFolderOf(entry, document), token}, child);
    if (failure != 0)
        return errnoError(failure, URL::file(program));
    const auto started = services_.clock.uptime();
    watcher_.watch(child, [this, name = entry.localizedName, started](int status) {
        if (hasFailed(status) && services_.clock.uptime() - started < kAtOnce)
            logEnd(name, status);
    });
    return std::nullopt;
}

// On the watcher's thread: the line is written on the main queue.
void DesktopApplications::logEnd(const std::string& name, int status) const
{
    services_.mainQueue.async([&log = services_.log, name, status] {
        if (WIFSIGNALED(status))
            log.write(LogLevel::Error, "The application %@ was ended at once by signal %d", name, WTERMSIG(status));
        else
            log.write(LogLevel::Error, "The application %@ ended at once with status %d", name, WEXITSTATUS(status));
    });
}

} // namespace tessel
