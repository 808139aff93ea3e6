#include "app/common/Log.h"
#include "app/common/LogTest.h"
#include "platform/log/StreamSink.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <sstream>
#include <thread>

namespace tessel {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::SizeIs;

class UnifiedLogTest : public ::testing::Test {
protected:
    UnifiedLogTest() { log.removeSink(capture); }

    /// Adds a sink as the program's command line would: private arguments hidden.
    std::shared_ptr<StreamSink> addStream(std::ostream& stream, LogLevel minimum)
    {
        auto sink = std::make_shared<StreamSink>(stream);
        sink->minimumLevel = minimum;
        log.addSink(sink);
        return sink;
    }

    InstalledPlatform platform;
    UnifiedLog& log = platform.services().log;
    std::shared_ptr<LogCapture> capture = platform.log;
};

TEST_F(UnifiedLogTest, WritesALineAtEachLevel)
{
    log.addSink(capture);

    _TesselDriveLogTest();

    EXPECT_THAT(capture->lines(), ElementsAre("(TSD)[DEBUG] _TesselDriveLogTest (*) LOG_DEBUG",
                                              "(TSD)[INFO] _TesselDriveLogTest (*) LOG_INFO",
                                              "(TSD)[WARNING] _TesselDriveLogTest (*) LOG_WARNING",
                                              "(TSD)[ERROR] _TesselDriveLogTest (*) LOG_ERR"));
}

struct Enabled {
    LogLevel minimum;
    bool debug;
    bool normal;
    bool error;
    std::size_t lines;
};

class LogLevelTest : public UnifiedLogTest, public ::testing::WithParamInterface<Enabled> {};

// A warning is of the type of an information, not of an error: a sink that takes warnings makes both asked for.
TEST_P(LogLevelTest, EnablesTheTypesAndTakesTheLevelsOfASink)
{
    capture->minimumLevel = GetParam().minimum;
    log.addSink(capture);

    EXPECT_EQ(log.isEnabled(LogType::Debug), GetParam().debug);
    EXPECT_EQ(log.isEnabled(LogType::Default), GetParam().normal);
    EXPECT_EQ(log.isEnabled(LogType::Error), GetParam().error);
    _TesselDriveLogTest();
    EXPECT_THAT(capture->lines(), SizeIs(GetParam().lines));
}

INSTANTIATE_TEST_SUITE_P(Levels, LogLevelTest,
                         ::testing::Values(Enabled{*logLevelNamed("debug"), true, true, true, 4},
                                           Enabled{*logLevelNamed("info"), false, true, true, 3},
                                           Enabled{*logLevelNamed("warning"), false, true, true, 2},
                                           Enabled{*logLevelNamed("error"), false, false, true, 1}));

TEST_F(UnifiedLogTest, EvaluatesArgumentsOnlyWhenTheTypeIsEnabled)
{
    TSD_FUNCTION("test");
    int evaluated = 0;
    const auto logAll = [&] {
        TSD_DEBUG("%d", ++evaluated);
        TSD_WARNING("%d", ++evaluated);
        TSD_ERROR("%d", ++evaluated);
    };
    logAll();
    EXPECT_EQ(evaluated, 0);

    std::ostringstream stream;
    const auto sink = addStream(stream, LogLevel::Error);
    logAll();
    EXPECT_EQ(evaluated, 1);

    log.removeSink(sink);
    logAll();
    EXPECT_EQ(evaluated, 1);
    EXPECT_FALSE(logLevelNamed("off"));
}

TEST_F(UnifiedLogTest, HidesWhatTellsAboutTheUser)
{
    TSD_FUNCTION("test");
    std::ostringstream stream;
    addStream(stream, LogLevel::Debug);
    log.addSink(capture);
    const auto url = URL::file("/home/ada/Secret.txt");

    TSD_INFO("'%@' '%{public}@' %s %s %d %u %lf %@ 100%%", url, url, std::string("Secret"), StaticText("static"), -1,
             2U, 0.5, true);

    EXPECT_THAT(stream.str(),
                ::testing::MatchesRegex(R"(\(TSD\)\[INFO\] test \([0-9]+\) '<private>' 'file:///home/ada/Secret.txt' )"
                                        "<private> static -1 2 0.500000 YES 100%\n"));
    EXPECT_THAT(capture->lines(), ElementsAre("(TSD)[INFO] test (*) 'file:///home/ada/Secret.txt' "
                                              "'file:///home/ada/Secret.txt' Secret static -1 2 0.500000 YES 100%"));
}

// A document can be named so that its log line seems to be two, or so that a terminal obeys it.
TEST_F(UnifiedLogTest, NeverLetsAnArgumentForgeALine)
{
    TSD_FUNCTION("test");
    log.addSink(capture);

    TSD_ERROR("'%s' %%d", std::string("a\n(TSD)[ERROR] main (1) \x1b[2J\r\x7f\xc2\x9b %d Übung"));

    EXPECT_THAT(capture->lines(), ElementsAre("(TSD)[ERROR] test (*) "
                                              R"('a\n(TSD)[ERROR] main (1) \x1b[2J\x0d\x7f\xc2\x9b %d Übung' %d)"));
}

// The compiler refuses a call whose format does not fit, because this is its condition.
TEST_F(UnifiedLogTest, ChecksFormatsAgainstArguments)
{
    static_assert(fitsLogFormat<StaticText, int, URL>("%s (%d) %{public}@ 100%%"));
    static_assert(fitsLogFormat<>("plain %%"));
    static_assert(!fitsLogFormat<URL>("%s"), "an object is no string");
    static_assert(!fitsLogFormat<double>("%d"));
    static_assert(!fitsLogFormat<int>("%lf"));
    static_assert(!fitsLogFormat<int>("no placeholder"));
    static_assert(!fitsLogFormat<int>("%%"));
    static_assert(!fitsLogFormat<int>("%d %d"));
    static_assert(!fitsLogFormat<>("100% sure"), "a lone percent sign is a mistake");
    static_assert(!fitsLogFormat<std::mutex>("%@"), "what has no description cannot be shown");
}

TEST_F(UnifiedLogTest, AnnouncesWhatTheUserDid)
{
    TSD_FUNCTION("-[NavController pressedMove]");
    log.addSink(capture);

    TSD_USER_ACTION("Pressed Move");

    EXPECT_EQ(log.activityLabel(), "Pressed Move");
    EXPECT_THAT(capture->lines(),
                ElementsAre("(TSD)[INFO] -[NavController pressedMove] (*) ================= Pressed Move"));
}

TEST_F(UnifiedLogTest, KeepsLinesOfManyThreadsWhole)
{
    constexpr int kThreads = 4;
    constexpr int kLines = 200;
    std::stringstream stream;
    addStream(stream, LogLevel::Debug);
    std::vector<std::thread> threads;
    for (int thread = 0; thread < kThreads; ++thread)
        threads.emplace_back([] {
            TSD_FUNCTION("thread");
            for (int line = 0; line < kLines; ++line)
                TSD_DEBUG("%{public}@", std::string(100, 'x'));
        });
    for (auto& thread : threads)
        thread.join();

    std::vector<std::string> lines;
    for (std::string line; std::getline(stream, line);)
        lines.push_back(line);
    EXPECT_THAT(lines, SizeIs(kThreads * kLines));
    EXPECT_THAT(lines, Each(::testing::MatchesRegex(R"(\(TSD\)\[DEBUG\] thread \([0-9]+\) x{100})")));
}

} // namespace
} // namespace tessel
