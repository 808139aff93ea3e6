// Stands in for the program that reads documents, after a document has taken it over: what it does is the name of the
// document.
#include "platform/linux/decoding/DecoderChannel.h"

#include "platform/linux/decoding/DecoderMessages.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/socket.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>
#include <limits>
#include <string_view>

namespace {

using namespace tessel;

FileDescriptor memory(off_t bytes, int seals)
{
    FileDescriptor file(::memfd_create("picture", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    (void)::ftruncate(file.get(), bytes);
    (void)::fcntl(file.get(), F_ADD_SEALS, seals);
    return file;
}

DecoderAnswer pictureOf(int width, int height)
{
    DecoderAnswer answer;
    answer.width = width;
    answer.height = height;
    return answer;
}

void answerWith(const DecoderAnswer& answer, const FileDescriptor& picture = {})
{
    (void)send(kDecoderSocket, answer, picture.get());
}

void misbehave(std::string_view how)
{
    constexpr int kAllSeals = F_SEAL_SHRINK | F_SEAL_GROW | F_SEAL_WRITE;
    if (how == "good")
        answerWith(pictureOf(2, 2), memory(16, kAllSeals));
    else if (how == "crash")
        std::abort();
    else if (how == "hang")
        ::pause();
    else if (how == "too large for its file")
        answerWith(pictureOf(1000, 1000), memory(4096, kAllSeals));
    else if (how == "too large")
        answerWith(pictureOf(std::numeric_limits<int>::max(), std::numeric_limits<int>::max()), memory(16, kAllSeals));
    else if (how == "negative")
        answerWith(pictureOf(-2, -2), memory(16, kAllSeals));
    else if (how == "not sealed")
        answerWith(pictureOf(2, 2), memory(16, 0));
    else if (how == "no file")
        answerWith(pictureOf(2, 2));
    else if (how == "no file in memory")
        answerWith(pictureOf(2, 2), FileDescriptor(::open("/proc/self/exe", O_RDONLY | O_CLOEXEC)));
    else if (how == "half an answer")
        (void)sendMessage(kDecoderSocket, "half", 4, -1);
    else if (how == "facts") {
        DecoderAnswer answer;
        answer.kind = static_cast<ContentKind>(77);
        answer.problem = 1234;
        answer.size = {std::numeric_limits<double>::quiet_NaN(), -1e300};
        answer.count = std::numeric_limits<int>::min();
        answerWith(answer);
    }
}

} // namespace

int main()
{
    FileDescriptor document;
    answerWith({});
    while (const auto request = receive<DecoderRequest>(kDecoderSocket, document))
        misbehave(request->name.data());
    return 0;
}
