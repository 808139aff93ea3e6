#include "platform/linux/decoding/HelperProgram.h"

#include "platform/linux/apps/StartProgram.h"
#include "platform/linux/files/Uninterrupted.h"

#include <sys/socket.h>
#include <sys/wait.h>

#include <csignal>
#include <utility>

namespace tessel {

std::optional<HelperProgram> startHelper(const std::string& program)
{
    int ends[2];
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends) != 0)
        return std::nullopt;
    HelperProgram helper;
    helper.socket = FileDescriptor(ends[0]);
    const FileDescriptor theirs(ends[1]); // closed here, so that its end is seen
    ProgramStart start = {.path = program, .arguments = {program}, .workingFolder = "/", .activationToken = {}};
    start.channel = theirs.get();
    if (startProgram(start, helper.process) != 0)
        return std::nullopt;
    return helper;
}

int endHelper(pid_t process)
{
    int status = 0;
    ::kill(process, SIGKILL);
    (void)uninterrupted([&] { return ::waitpid(process, &status, 0); });
    return status;
}

} // namespace tessel
