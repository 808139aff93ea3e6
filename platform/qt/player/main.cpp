// Plays one document for the program that started it, which gives it that as an open file. A process of its own, for
// documents may be damaged, or made to do damage.
#include "platform/qt/decoder/Sanitizers.h"
#include "platform/qt/player/Playing.h"

#include <QGuiApplication>

#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>

namespace {

using namespace tessel;

constexpr rlim_t kMostMemory = 2048ULL * 1024 * 1024; // bytes of addresses
constexpr rlim_t kLargestFile = 256ULL * 1024 * 1024; // bytes; pictures in memory count as files
constexpr rlim_t kMostDescriptors = 256;

void becomeQuiet()
{
    ::unsetenv("QT_QPA_GENERIC_PLUGINS");
    ::unsetenv("QT_QPA_PLATFORMTHEME");
    ::unsetenv("QT_LOGGING_RULES");
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    ::setenv("QT_MEDIA_BACKEND", "ffmpeg", 1); // the other one needs plugins that may be missing
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    const FileDescriptor nowhere(::open("/dev/null", O_WRONLY | O_CLOEXEC));
    if (!qt::kIsSanitized && nowhere.isOpen())
        ::dup2(nowhere.get(), STDERR_FILENO);
}

bool limit(__rlimit_resource resource, rlim_t most)
{
    const rlimit limits = {most, most};
    return ::setrlimit(resource, &limits) == 0;
}

bool limitResources()
{
    return limit(RLIMIT_FSIZE, kLargestFile) && limit(RLIMIT_NOFILE, kMostDescriptors) && limit(RLIMIT_CORE, 0) &&
           (qt::kIsSanitized || limit(RLIMIT_AS, kMostMemory)) && ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0;
}

} // namespace

int main(int argc, char* argv[])
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    becomeQuiet();
    if (!limitResources())
        return 1;
    QGuiApplication application(argc, argv);
    const qt::Playing playing(kPlayerSocket);
    return QGuiApplication::exec();
}
