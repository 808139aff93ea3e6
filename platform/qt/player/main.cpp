// Plays one document for the program that started it, which gives it that as an open file. A process of its own, for
// documents may be damaged, or made to do damage.
#include "platform/qt/decoder/Sanitizers.h"
#include "platform/qt/player/PlayerConfinement.h"
#include "platform/qt/player/Playing.h"

#include <QGuiApplication>

#include <fcntl.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>

namespace {

using namespace tessel;

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

} // namespace

int main(int argc, char* argv[])
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    becomeQuiet();
    if (!qt::confinePlayer())
        return 1;
    QGuiApplication application(argc, argv);
    const qt::Playing playing(kPlayerSocket);
    return QGuiApplication::exec();
}
