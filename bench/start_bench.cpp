// From starting the process to the first complete screen of 200 files, and out again, beside a process that does
// nothing. The first start makes the program's records and is not counted.
#include <benchmark/benchmark.h>

#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace fs = std::filesystem;

namespace {

class FolderOf200 {
public:
    FolderOf200()
    {
        std::string pattern = (fs::temp_directory_path() / "tesseldrive-bench-XXXXXX").string();
        root_ = ::mkdtemp(pattern.data());
        fs::create_directory(root_ / "drive");
        for (int number = 0; number < 200; ++number)
            std::ofstream(root_ / "drive" / ("Report " + std::to_string(number) + ".pdf")) << number;
    }
    ~FolderOf200() { fs::remove_all(root_); }
    FolderOf200(const FolderOf200&) = delete;
    FolderOf200& operator=(const FolderOf200&) = delete;

    [[nodiscard]] std::vector<std::string> command() const
    {
        return {TESSELDRIVE_PROGRAM,        "--console", "--home", (root_ / "home").string(), "--drive",
                (root_ / "drive").string(), "--log",     "off"};
    }

private:
    fs::path root_;
};

/// Runs a program with no input and its output thrown away. @returns seconds from its start to its end.
double secondsToRun(std::vector<std::string> command)
{
    std::vector<char*> arguments;
    for (auto& word : command)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    posix_spawn_file_actions_addopen(&actions, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);

    const auto start = std::chrono::steady_clock::now();
    pid_t child = 0;
    int status = -1;
    if (posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ) == 0)
        waitpid(child, &status, 0);
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
    posix_spawn_file_actions_destroy(&actions);
    return status == 0 ? taken.count() : -1;
}

void StartToFirstScreen(benchmark::State& state)
{
    const FolderOf200 folder;
    secondsToRun(folder.command());
    double program = 0;
    double nothing = 0;
    for (auto _ : state) {
        const auto seconds = secondsToRun(folder.command());
        if (seconds < 0) {
            state.SkipWithError("the program failed");
            return;
        }
        state.SetIterationTime(seconds);
        program += seconds;
        nothing += secondsToRun({"true"});
    }
    state.counters["ratio_to_true"] = program / nothing;
}
BENCHMARK(StartToFirstScreen)->UseManualTime()->Unit(benchmark::kMillisecond);

} // namespace
