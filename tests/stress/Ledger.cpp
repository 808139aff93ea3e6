#include "tests/stress/Ledger.h"

#include "platform/linux/files/Uninterrupted.h"

#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <sstream>
#include <stdexcept>

namespace tessel {

namespace {

constexpr std::size_t kLongestLine = 128 * 1024;

} // namespace

std::string LedgerLine::text() const
{
    std::string text(1, static_cast<char>(kind));
    for (const int number : {process, generation, operation})
        text += '\t' + std::to_string(number);
    for (const auto& word : words)
        text += '\t' + word;
    return text;
}

std::optional<LedgerLine> LedgerLine::parsed(const std::string& text)
{
    std::istringstream stream(text);
    LedgerLine line;
    char kind = 0;
    if (!(stream >> kind >> line.process >> line.generation >> line.operation))
        return std::nullopt;
    line.kind = static_cast<Kind>(kind);
    stream.get();
    for (std::string word; std::getline(stream, word, '\t');)
        line.words.push_back(word);
    return line;
}

// A process without a ledger must not touch the drive any more.
void LedgerPen::write(LedgerLine::Kind kind, std::vector<std::string> words)
{
    const auto text = LedgerLine{kind, process_, generation_, operation_, std::move(words)}.text();
    const auto send = [&] { return ::send(socket_, text.data(), text.size(), MSG_NOSIGNAL); };
    if (uninterrupted(send) != static_cast<ssize_t>(text.size()))
        ::_exit(EXIT_FAILURE);
}

Ledger::Ledger()
{
    int sockets[2] = {-1, -1};
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, sockets) != 0)
        throw std::runtime_error("no sockets");
    own_ = FileDescriptor(sockets[0]);
    forPens_ = FileDescriptor(sockets[1]);
}

const LedgerLine* Ledger::receive(int milliseconds)
{
    pollfd line = {own_.get(), POLLIN, 0};
    if (::poll(&line, 1, milliseconds) <= 0)
        return nullptr;
    std::string text(kLongestLine, '\0');
    const auto length = uninterrupted([&] { return ::recv(own_.get(), text.data(), text.size(), 0); });
    text.resize(length < 0 ? 0 : static_cast<std::size_t>(length));
    auto parsed = LedgerLine::parsed(text);
    if (!parsed)
        throw std::runtime_error("the ledger has a line that cannot be read");
    lines_.push_back(*std::move(parsed));
    return &lines_.back();
}

void Ledger::writeTo(const URL& file) const
{
    std::ofstream stream(file.path());
    for (const auto& line : lines_)
        stream << line.text() << '\n';
}

} // namespace tessel
