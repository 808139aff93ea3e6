#include "tests/support/Program.h"
#include "tests/support/TemporaryDrive.h"

#include <gmock/gmock.h>

namespace tessel {
namespace {

using testing::ElementsAre;
using testing::IsSupersetOf;

// The account holds 1000 bytes; the drive takes 400 of them, and the cloud offers more.
TEST(BlackBoxQuotaTest, TellsWhatIsFreeAndWhatIsOffered)
{
    const TemporaryDrive folder;
    folder.file("drive/Plan.txt", std::string(400, 'x'));
    folder.file("home/quota.json", R"({"accountSize": 1000})");
    folder.file("home/offers.json", R"({"currentOffer": {"level": 2, "title": "More room", "message": "Nearly\nfull.",
                                                         "showsButton": true, "link": {"action": 3}}})");
    Program program(
        {"--console", "--log", "off", "--home", folder.url("home").path(), "--drive", folder.url("drive").path()});

    EXPECT_EQ(program.send("settle").answer, "ok");
    EXPECT_THAT(program.send("screen").lines,
                IsSupersetOf({"status: 1 item, 600 bytes available", "offer: Upgrade Storage"}));
    EXPECT_EQ(program.send("tap \"Upgrade Storage\"").answer, "ok");
    EXPECT_THAT(program.send("screen").lines,
                ElementsAre("title: Upgrade Storage", "right: Done", "message: More room | Nearly full."));
    EXPECT_EQ(program.send("tap Done").answer, "ok");
    EXPECT_EQ(program.send("tap Plan.txt").answer, "ok");
    program.finish();
}

} // namespace
} // namespace tessel
