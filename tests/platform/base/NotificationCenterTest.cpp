#include "platform/base/NotificationCenter.h"

#include <gmock/gmock.h>

namespace tessel {
namespace {

using ::testing::ElementsAre;

// A listener may take itself or another out, take the centre down, or send again, all from inside a notice; whoever was
// taken out hears nothing more, and everybody else hears everything, in order.
TEST(NotificationCenterTest, SurvivesWhatListenersDoInsideANotice)
{
    std::vector<std::string> heard;
    const auto hear = [&heard](const char* who) { return [&heard, who] { heard.emplace_back(who); }; };

    { // removing oneself
        NotificationCenter center;
        NotificationCenter::Observation once = center.observe("notice", [&] {
            heard.emplace_back("once");
            once = {};
        });
        const auto always = center.observe("notice", hear("always"));
        center.post("notice");
        center.post("notice");
        EXPECT_THAT(std::exchange(heard, {}), ElementsAre("once", "always", "always"));
    }
    { // removing another, and adding one
        NotificationCenter center;
        NotificationCenter::Observation removed;
        std::vector<NotificationCenter::Observation> added;
        const auto remover = center.observe("notice", [&] {
            heard.emplace_back("remover");
            removed = {};
            added.push_back(center.observe("notice", hear("added")));
        });
        removed = center.observe("notice", hear("removed"));
        center.post("notice");
        EXPECT_THAT(std::exchange(heard, {}), ElementsAre("remover"));
        center.post("notice");
        EXPECT_THAT(std::exchange(heard, {}), ElementsAre("remover", "added"));
    }
    { // the centre dies; the registrations outlive it
        auto center = std::make_unique<NotificationCenter>();
        const auto killer = center->observe("notice", [&] {
            heard.emplace_back("killer");
            center.reset();
        });
        const auto survivor = center->observe("notice", hear("survivor"));
        center->post("notice");
        EXPECT_THAT(std::exchange(heard, {}), ElementsAre("killer", "survivor"));
    }
    { // a notice inside a notice
        NotificationCenter center;
        const auto sender = center.observe("outer", [&] {
            heard.emplace_back("before");
            center.post("inner");
            heard.emplace_back("after");
        });
        const auto listener = center.observe("inner", hear("inner"));
        const auto second = center.observe("outer", hear("second"));
        center.post("outer");
        EXPECT_THAT(heard, ElementsAre("before", "inner", "after", "second"));
    }
}

} // namespace
} // namespace tessel
