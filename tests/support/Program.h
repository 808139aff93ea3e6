#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace tessel {

/// The built program, running beside the test with its console on pipes. Whatever does not answer within 30 seconds is
/// killed, and the call throws.
class Program {
public:
    /// What a command answered.
    struct Reply {
        std::vector<std::string> lines; ///< before the answer
        std::string answer;             ///< "ok", or "error: " and a reason
    };
    struct Result {
        int status = 0; ///< the exit status; 128 and the number of the signal that ended it
        std::string output;
        std::string error;
    };

    /// @param user runs it as this user and group; needs root
    /// @param environment more variables for it, as NAME=VALUE
    explicit Program(const std::vector<std::string>& arguments, std::optional<uid_t> user = std::nullopt,
                     const std::vector<std::string>& environment = {});
    /// Kills it when it still runs.
    ~Program();
    Program(const Program&) = delete;
    Program& operator=(const Program&) = delete;

    Reply send(std::string_view command);
    /// Writes raw bytes and waits for nothing.
    void write(std::string_view bytes) const;
    void closeOutput();
    /// Sends it a signal.
    void signal(int number) const;
    /// Ends the input and waits for the end. The output is what no `send` has read.
    Result finish();

    /// The screen, but for how much room there is, which is the machine's.
    [[nodiscard]] std::vector<std::string> screen();

    /// Runs it from start to end with this input.
    static Result run(const std::vector<std::string>& arguments, std::string_view input = {});

private:
    [[nodiscard]] bool readMore();
    std::string readLine();

    pid_t child_ = -1;
    int input_ = -1;
    int output_ = -1;
    int error_ = -1; ///< a file in memory, so that nobody need read it in time
    std::string unread_;
};

} // namespace tessel
