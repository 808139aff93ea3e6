#include "app/entry/AppDelegate.h"
#include "app/entry/Banner.h"
#include "app/entry/CommandLine.h"
#include "app/entry/Gallery.h"
#include "browser/ItemWork.h"
#include "files/FileUtils.h"
#include "platform/base/ControlCharacters.h"
#include "platform/base/URLComponents.h"
#include "platform/cloud/ActivityService.h"
#include "platform/cloud/CloudService.h"
#include "platform/console/ConsoleShell.h"
#include "platform/linux/LinuxPlatform.h"
#include "platform/linux/StartFolders.h"
#include "platform/linux/base/UserFolders.h"
#include "platform/linux/instance/SingleInstance.h"
#include "platform/linux/log/DefaultLogSink.h"
#include "platform/linux/run/EndSignals.h"
#include "platform/linux/run/TerminalLineSource.h"
#include "platform/linux/search/DriveSearch.h"
#include "platform/log/StreamSink.h"
#include "platform/qt/WindowShell.h"
#include "platform/run/MainQueue.h"

#include <filesystem>
#include <fstream>
#include <iostream>
#include <unistd.h>

namespace {

using namespace tessel;

constexpr int kNoWindow = 1;
constexpr int kUsageError = 2;

int fail(const Error& error)
{
    std::cerr << "tesseldrive: " << error.description << '\n';
    return kUsageError;
}

/// A path that can be opened, also when the shell found the program by its bare name.
std::string executablePath(const std::string& firstArgument)
{
    std::error_code ignored;
    return firstArgument.find('/') != std::string::npos
               ? firstArgument
               : std::filesystem::read_symlink("/proc/self/exe", ignored).string();
}

/// Where the log goes. @returns null for no log.
Result<std::shared_ptr<LogSink>> makeLogSink(const CommandLine& options)
{
    std::shared_ptr<LogSink> sink;
    if (!options.log) {
        sink = makeDefaultLogSink(userStateFolder() + "/tesseldrive");
    } else if (*options.log == "stderr") {
        sink = std::make_shared<StreamSink>(std::cerr);
    } else if (*options.log != "off") {
        static std::ofstream file;
        file.open(*options.log, std::ios::app | std::ios::binary);
        if (!file)
            return Error{Domain::General, ErrorCode::kNoSuchFile, "Cannot write the log file: " + *options.log, {}};
        sink = std::make_shared<StreamSink>(file);
    }
    if (!sink)
        return sink;
    sink->showsPrivateArguments = options.showPrivateLogArguments;
    sink->minimumLevel = options.logLevel.value_or(options.log ? LogLevel::Debug : LogLevel::Info);
    return sink;
}

ConsoleOptions consoleOptions(const CommandLine& options, const TerminalLineSource& input)
{
    const auto* terminal = std::getenv("TERM");
    const bool interactive = isatty(STDIN_FILENO) && isatty(STDOUT_FILENO);
    return {.interactive = interactive,
            .json = options.json,
            .showsPrivateLogArguments = options.showPrivateLogArguments,
            .usesEscapes = interactive && terminal && std::string_view(terminal) != "dumb",
            .columns = [&input] { return input.columns(); }};
}

/// Continues what the user does in another instance. @returns whether there is anything
bool continueFromOthers(Application& application)
{
    const auto activity = platform::installed().activities.newestOfOthers();
    if (activity)
        return application.continueActivity({activity->type, activity->userInfo});
    application.failToContinue(ContinuationActivity::kViewing, activity.error());
    return false;
}

/// What the command line asks for. What cannot be shown is told to whoever has asked.
void openDocuments(Application& application, const CommandLine& options)
{
    for (const auto& url : perform(application, {.urls = options.documents, .shortcut = {}, .activationToken = {}})) {
        const auto components = URLComponents::parse(url);
        std::cerr << "tesseldrive: Cannot show " << escapingControlCharacters(components ? components->path : url)
                  << ": the drive has no such document\n";
    }
    if (options.continuesOthers && !continueFromOthers(application))
        std::cerr << "tesseldrive: Nothing is looked at elsewhere\n";
}

void runInConsole(Application& application, const CommandLine& options)
{
    TerminalLineSource input(DispatchQueue::main(), STDIN_FILENO);
    application.launch({options.shortcut});
    openDocuments(application, options);
    ConsoleShell(application, input, std::cout, consoleOptions(options, input)).run();
}

/// The index of the drive for the desktop's search, kept in the user's own home.
std::unique_ptr<DriveSearch> makeSearch()
{
    const auto home = homeFolder({});
    if (!home)
        return nullptr;
    const auto& services = platform::installed();
    std::vector<URL> roots;
    if (const auto drive = services.cloud.defaultContainer())
        roots.push_back(drive->documentsURL);
    for (const auto& library : services.cloud.libraries())
        roots.push_back(library->documentsURL);
    const DriveSearch::Services needs = {services.mainQueue, services.log, services.types};
    return std::make_unique<DriveSearch>(home->appending("search.sqlite"), std::move(roots), needs);
}

/// @param instance takes what later starts are asked for; may be null
bool runInWindow(Application& application, const CommandLine& options, std::unique_ptr<SingleInstance> instance)
{
    const EndSignals endSignals;
    ItemWork::isDoneAside = true;
    const auto shell = std::make_shared<WindowShell>(endSignals.descriptor());
    application.launch({options.shortcut});
    openDocuments(application, options);
    if (options.runTest)
        application.runTest(*options.runTest, options.testOptions);
    if (instance)
        instance->serve([weak = std::weak_ptr(shell)](const OutsideRequest& request) {
            DispatchQueue::main().async([weak, request] {
                if (const auto running = weak.lock())
                    running->take(request);
            });
        });
    const bool ownsName = instance && options.home.empty() && !options.drive;
    const auto search = ownsName ? makeSearch() : nullptr;
    const bool ran = shell->run(application, {.ownsName = ownsName, .search = search.get()});
    instance.reset();
    return ran;
}

/// Whether to open a window; where one is wanted and cannot be opened, says why.
bool opensWindow(const CommandLine& options)
{
    if (options.console)
        return false;
    const auto problem = WindowShell::whyNoWindow();
    if (problem)
        std::cerr << "tesseldrive: No display: " << *problem << ", running in the console\n";
    return !problem;
}

/// What this start is asked for, as another one is told.
OutsideRequest requestOf(const CommandLine& options)
{
    const auto* token = std::getenv("XDG_ACTIVATION_TOKEN");
    const auto* startup = std::getenv("DESKTOP_STARTUP_ID");
    return {.urls = options.documents,
            .shortcut = options.shortcut,
            .activationToken = token     ? token
                               : startup ? startup
                                         : ""};
}

/// Paths, which count from where this program was started, become URLs of the application's own.
void makeURLs(std::vector<std::string>& documents)
{
    for (auto& document : documents) {
        std::error_code ignored;
        if (std::filesystem::exists(document, ignored) || !URLComponents::parse(document))
            document = applicationURL(std::filesystem::absolute(document, ignored).string());
    }
}

/// Claims the place of the one window of a home.
SingleInstance::Claim claimPlace(const CommandLine& options)
{
    const auto home = homeFolder(options.home);
    if (!home || options.newInstance || options.continuesOthers || options.gallery || options.runTest)
        return {};
    return SingleInstance::claim(coordinationFolder(*home), home->path() + '\n' + options.drive.value_or(std::string()),
                                 requestOf(options));
}

int runApplication(LinuxPlatform& platform, const CommandLine& options, bool inWindow,
                   std::unique_ptr<SingleInstance> instance)
{
    AppDelegate drive;
    Gallery gallery;
    Application application(options.gallery ? static_cast<ApplicationDelegate&>(gallery) : drive, platform.stateStore(),
                            &platform.sessionStore());
    if (inWindow)
        return runInWindow(application, options, std::move(instance)) ? 0 : kNoWindow;
    runInConsole(application, options);
    return 0;
}

} // namespace

int main(int argc, char* argv[])
{
    const std::vector<const char*> arguments(argv + 1, argv + std::max(argc, 1));
    auto parsed = CommandLine::parse(arguments);
    if (!parsed)
        return fail(parsed.error());
    makeURLs(parsed.value().documents);
    const auto& options = parsed;
    if (options->showHelp || options->showVersion) {
        std::cout << (options->showHelp ? CommandLine::help() : "tesseldrive " TESSELDRIVE_VERSION "\n");
        return 0;
    }
    const bool inWindow = opensWindow(*options);
    auto claim = inWindow ? claimPlace(*options) : SingleInstance::Claim();
    if (claim.wasHandedOver)
        return 0;
    LinuxPlatformOptions platformOptions;
    platformOptions.home = options->home;
    platformOptions.drive = options->drive;
    platformOptions.keepsRecents = options->home.empty() && !options->drive;
    const auto platform = LinuxPlatform::create(platformOptions);
    if (!platform)
        return fail(platform.error());
    const platform::Scope scope((*platform)->services());
    const auto sink = makeLogSink(*options);
    if (!sink)
        return fail(sink.error());
    if (*sink)
        (*platform)->services().log.addSink(*sink);

    logBanner(argv[0]);
    FileUtils::logFileAttributes(executablePath(argv[0]));
    return runApplication(**platform, *options, inWindow, std::move(claim.instance));
}
