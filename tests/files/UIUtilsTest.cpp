#include "files/UIUtils.h"

#include "platform/base/Platform.h"
#include "platform/linux/text/EmbeddedStringTables.h"
#include "platform/linux/text/IcuTextServices.h"
#include "platform/ui/BarButtonItem.h"
#include "platform/ui/Device.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace tessel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class Screen final : public ViewController {
public:
    [[nodiscard]] std::string className() const override { return "Screen"; }
};

class UIUtilsTest : public testing::Test {
protected:
    [[nodiscard]] std::shared_ptr<AlertController> alert() const
    {
        return std::dynamic_pointer_cast<AlertController>(screen->presentedViewController());
    }
    /// "title|message|button", of the alert on screen.
    [[nodiscard]] std::string shown() const
    {
        if (!alert())
            return "nothing";
        auto text = alert()->title() + "|" + alert()->message();
        for (const auto& action : alert()->actions())
            text += "|" + action->title();
        return text;
    }
    static Error general(int code, const std::string& description = {}, const std::string& reason = {})
    {
        return {Domain::General, code, description, reason, {}};
    }
    static std::string deleteMessage(const char* locale, const std::vector<URL>& urls)
    {
        IcuTextServices text(locale, embeddedStringTables());
        const platform::Scope scope(servicesWith(text));
        return UIUtils::messageForDeletePrompt(urls).value_or("none");
    }

    InstalledPlatform platform{{"orvane.Lookbook", "Lookbook"}};
    const TemporaryDrive& drive = platform.drive;
    const std::string root = "orvane~Quillbox/";
    std::shared_ptr<Screen> screen = std::make_shared<Screen>();
};

TEST_F(UIUtilsTest, KeepsTheExtension)
{
    const char* const cases[][3] = {
        {"Report.doc", "Budget", "Budget.doc"},     {"Report.doc", "Budget.doc", "Budget.doc"},
        {"Report.doc", "Budget.DOC", "Budget.DOC"}, {"Report.doc", "Budget.txt", "Budget.txt.doc"},
        {"Folder", "New.Folder", "New.Folder"},     {"archive.tar.gz", "b", "b.gz"},
        {"Report.doc", "Budget.", "Budget..doc"},   {"Report.dóc", "Budget.DÓC", "Budget.DÓC"},
        {"Report.doc", "a.doc.doc", "a.doc.doc"},   {".profile", "profile", "profile"},
    };
    for (const auto& [old, typed, expected] : cases)
        EXPECT_EQ(UIUtils::computeNewURL(drive.url(old), typed), drive.url(expected)) << old << " to " << typed;
}

TEST_F(UIUtilsTest, RenamesAndLogsIt)
{
    const auto report = drive.file(root + "Report.doc", "four");
    const auto start = std::string("(TSD)[DEBUG] +[UIUtils renameItemAtURL:toName:] (*) ");

    EXPECT_EQ(UIUtils::renameItemAtURL(report, "")->code, ErrorCode::kInvalidFileName);
    EXPECT_EQ(UIUtils::renameItemAtURL(report, ".a")->code, ErrorCode::kInvalidFileName);
    EXPECT_EQ(UIUtils::renameItemAtURL(report, "Report"), std::nullopt);
    const auto at = report.absoluteString();
    EXPECT_THAT(platform.log->lines(),
                ElementsAre(start + "Rename: empty, reverting", start + "Name is invalid: .a",
                            start + "Name is valid: Report",
                            start + "Rename: Old and new URLs are the same: " + at + " - " + at));
    EXPECT_EQ(UIUtils::renameItemAtURL(report, "Budget"), std::nullopt);
    EXPECT_EQ(drive.read(root + "Budget.doc"), "four");
}

TEST_F(UIUtilsTest, RenamesTheDocumentOfAReference)
{
    const auto plan = drive.file(root + "Plan.txt", "four");
    const auto reference = drive.file(root + "Elsewhere.tesselref", "{\"path\": \"orvane~Quillbox/Plan.txt\"}");
    EXPECT_EQ(UIUtils::renameItemAtURL(reference, "Trip"), std::nullopt);
    EXPECT_EQ(drive.read(root + "Trip.txt"), "four");
    EXPECT_THAT(platform.log->lines(),
                testing::Contains("(TSD)[DEBUG] +[UIUtils renameItemAtURL:toName:] (*) Renaming bookmark " +
                                  reference.absoluteString() + " (" + plan.absoluteString() + ")"));
}

TEST_F(UIUtilsTest, TellsErrorsInFriendlyWords)
{
    auto taken = general(516, "raw");
    taken.userInformation[ErrorKey::kDestinationFilePath] = "/drive/There/Plan.v2.txt";
    UIUtils::showFriendlyMoveError(taken, screen);
    EXPECT_EQ(shown(), "An item named “Plan.v2.txt” already exists in the new location.||OK");
    UIUtils::showFriendlyRenameError(taken, "Plan.v2.txt", screen);
    EXPECT_EQ(shown(), "The name “Plan.v2” with extension “.txt” is already taken.|Choose a different name.|OK");
    UIUtils::showFriendlyRenameError(taken, "Plan\nB", screen);
    EXPECT_EQ(shown(), "The name “Plan␊B” is already taken.|Choose a different name.|OK");
    UIUtils::showFriendlyMoveError(general(514), screen);
    EXPECT_EQ(shown(), "|The name “” can’t be used. Try using a name with fewer characters, or with no punctuation "
                       "marks.|OK");
    UIUtils::showFriendlyRenameError(general(255, "In use.", "raw"), "Plan", screen);
    EXPECT_EQ(shown(), "In use.||OK");
    UIUtils::showFriendlyRenameError({Domain::System, 516, "Odd.", "", {}}, "Plan", screen);
    EXPECT_EQ(shown(), "Odd.||OK") << "another domain's code means something else";

    EXPECT_TRUE(alert()->choose(alert()->actions().front()));
    EXPECT_EQ(shown(), "nothing");
    UIUtils::showError(general(1, "", "No reason."), screen);
    EXPECT_EQ(shown(), "No reason.||OK");
    UIUtils::showError(std::nullopt, screen);
    EXPECT_EQ(shown(), "Error exception||OK");
    UIUtils::showUnsupportedError(screen);
    EXPECT_EQ(shown(), "This can’t be done with the item.||OK");
}

TEST_F(UIUtilsTest, FindsTheBestMessageForAPrompt)
{
    EXPECT_EQ(UIUtils::bestMessage(std::nullopt), "");
    EXPECT_EQ(UIUtils::bestMessage(general(516, "raw")), "Name is already taken");
    EXPECT_EQ(UIUtils::bestMessage(general(514, "raw")), "Character not allowed in filename");
    EXPECT_EQ(UIUtils::bestMessage(general(257, "No permission.", "raw")), "No permission.");
    EXPECT_EQ(UIUtils::bestMessage(general(257, "", "No permission")), "No permission");
    EXPECT_EQ(UIUtils::bestMessage(general(257)), "Error exception");
}

TEST_F(UIUtilsTest, AsksBeforeADeletionInFourWordings)
{
    const auto plan = drive.file(root + "Plan.txt");
    const auto library = drive.url("orvane~Lookbook/Documents");
    const auto tail = std::string(" will be permanently deleted from Tessel Drive on all your devices. This action "
                                  "cannot be undone.");
    EXPECT_EQ(deleteMessage("en", {plan}), "\"Plan.txt\"" + tail);
    EXPECT_EQ(deleteMessage("en", {library}), "The Lookbook app library, and all its documents," + tail);
    EXPECT_EQ(deleteMessage("en", {plan, plan}), "2 items" + tail);
    EXPECT_EQ(deleteMessage("en", {}), "0 items" + tail);
    EXPECT_EQ(deleteMessage("en", {drive.url("Gone")}), "none");

    EXPECT_THAT(deleteMessage("ar", {plan}), HasSubstr("\"Plan.txt\""));
    EXPECT_THAT(deleteMessage("ar", {library}), HasSubstr("مكتبة تطبيق Lookbook"));
    EXPECT_THAT(deleteMessage("ar", {plan, plan}), HasSubstr(": عنصران."));
    EXPECT_THAT(deleteMessage("ar", {plan, plan, plan}), HasSubstr(": ٣ عناصر."));
    EXPECT_THAT(deleteMessage("ar_EG", std::vector(11, plan)), HasSubstr(": ١١ عنصرًا."));
    EXPECT_THAT(deleteMessage("ar", std::vector(100, plan)), HasSubstr(": ١٠٠ عنصر."));
    EXPECT_THAT(deleteMessage("ja_JP", {plan}), HasSubstr("“Plan.txt”は"));
    EXPECT_THAT(deleteMessage("ja_JP", {library}), HasSubstr("Lookbookのアプリライブラリ"));
    EXPECT_THAT(deleteMessage("ja_JP", {plan, plan}), HasSubstr("2項目が"));
    EXPECT_THAT(deleteMessage("de_DE", {plan, plan}), HasSubstr(": 2 Objekte."));
    EXPECT_THAT(deleteMessage("fr_FR", std::vector(2, plan)), HasSubstr("de 2 éléments de"));
}

TEST_F(UIUtilsTest, PointsTheSheetAtWhereItWasAskedFor)
{
    const auto plan = drive.file(root + "Plan.txt");
    const auto row = std::make_shared<View>(Rect{5, 100, 300, 44});
    const auto button = BarButtonItem::flexibleSpace();
    std::vector<std::string> answers;
    const auto note = [&](const std::shared_ptr<AlertAction>& action, bool cancelled) {
        answers.push_back((action ? action->title() : "nobody") + (cancelled ? " cancelled" : " agreed"));
    };
    UIUtils::showDeleteWarningAlert({}, false, screen, row, button, note);
    UIUtils::showDeleteWarningAlert({drive.url("Gone")}, false, screen, row, button, note);
    EXPECT_EQ(shown(), "nothing");

    UIUtils::showDeleteWarningAlert({plan}, false, screen, row, button, note);
    EXPECT_EQ(alert()->style(), AlertController::Style::ActionSheet);
    EXPECT_EQ(alert()->popoverAnchor.sourceView.lock(), row);
    EXPECT_EQ(alert()->popoverAnchor.sourceRect, (Rect{0, 22, 300, 0}));
    EXPECT_TRUE(alert()->popoverAnchor.onlyLeftOrRight);
    EXPECT_TRUE(alert()->choose(alert()->actions().front()));

    UIUtils::showDeleteWarningAlert({plan}, false, screen, nullptr, button, note);
    EXPECT_EQ(alert()->popoverAnchor.barButtonItem.lock(), button);
    EXPECT_FALSE(alert()->popoverAnchor.onlyLeftOrRight);
    EXPECT_EQ(alert()->actions()[0]->style(), AlertAction::Style::Destructive);
    EXPECT_TRUE(alert()->cancel());
    EXPECT_THAT(answers, ElementsAre("nobody cancelled", "Delete from Tessel Drive agreed", "Cancel cancelled"));
    EXPECT_TRUE(std::filesystem::exists(plan.path()));
}

TEST_F(UIUtilsTest, PutsTheCaretBeforeTheExtension)
{
    TextField field;
    for (const auto& [text, caret] : {std::pair("Plan.txt", 4U), {"日本.計画.doc", 5U}, {"Folder", 6U}, {".a", 0U}}) {
        field.setText(text);
        UIUtils::setCursorInTextFieldToBeforeExtension(field);
        EXPECT_EQ(field.selection(), (TextRange{caret, 0})) << text;
    }
}

} // namespace
} // namespace tessel
