// Reads documents for the program that started it, which gives it each of them as an open file. A process of its own,
// for documents may be damaged, or made to do damage.
#include "platform/linux/decoding/DecoderChannel.h"
#include "platform/qt/decoder/Answering.h"
#include "platform/qt/decoder/Confinement.h"
#include "platform/qt/decoder/Plugins.h"
#include "platform/qt/decoder/Sanitizers.h"

#include <QDir>
#include <QImageReader>
#include <QLibraryInfo>
#include <QMimeDatabase>
#include <QStandardPaths>

#include <fcntl.h>
#include <malloc.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <csignal>
#include <new>
#include <string>
#include <vector>

namespace {

using namespace tessel;

constexpr int kMostMegabytes = 512; // for the pixels of one picture

/// What the user's own settings and a document's mistakes would otherwise change, or write to a terminal.
void becomeQuiet()
{
    ::unsetenv("QT_QPA_GENERIC_PLUGINS");
    ::unsetenv("QT_QPA_PLATFORMTHEME");
    ::unsetenv("QT_LOGGING_RULES");
    ::setenv("QT_QPA_PLATFORM", "offscreen", 1);
    qInstallMessageHandler([](QtMsgType, const QMessageLogContext&, const QString&) {});
    const FileDescriptor nowhere(::open("/dev/null", O_WRONLY | O_CLOEXEC));
    if (!qt::kIsSanitized && nowhere.isOpen())
        ::dup2(nowhere.get(), STDERR_FILENO);
}

/// Where fonts and the types of documents are found, beside the system's own folders.
std::vector<std::string> folders()
{
    QStringList result = {QLibraryInfo::path(QLibraryInfo::PluginsPath),
                          QLibraryInfo::path(QLibraryInfo::LibrariesPath), QDir::homePath() + "/.fonts",
                          QDir::homePath() + "/.cache/fontconfig"};
    result << QCoreApplication::libraryPaths();
    for (const auto& folder : QStandardPaths::standardLocations(QStandardPaths::GenericDataLocation))
        result << folder + "/fonts" << folder + "/mime";
    std::vector<std::string> paths;
    for (const auto& folder : result)
        paths.push_back(QFile::encodeName(folder).toStdString());
    return paths;
}

} // namespace

int main()
{
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    ::mallopt(M_ARENA_MAX, 1);
    std::set_new_handler([] { ::_exit(kDecoderIsOutOfMemory); });
    becomeQuiet();
    qt::findCommonPluginsOnly();
    QImageReader::setAllocationLimit(kMostMegabytes);
    static_cast<void>(QMimeDatabase().mimeTypeForName("text/plain")); // reads the database
    if (!qt::confine(folders()) || !send(kDecoderSocket, DecoderAnswer()))
        return 1;
    qt::Answering(kDecoderSocket).run();
    return 0;
}
