#include "files/FilenamePrompt.h"
#include "files/NewFolderPrompt.h"
#include "files/RenamePrompt.h"
#include "platform/base/Platform.h"
#include "platform/ui/Device.h"
#include "platform/ui/Window.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

namespace tessel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class Screen final : public ViewController {
public:
    [[nodiscard]] std::string className() const override { return "Screen"; }
};

class FilenamePromptTest : public testing::Test {
protected:
    FilenamePromptTest()
    {
        window->setRootViewController(screen);
        window->makeKeyAndVisible();
        platform.settle();
    }

    void show(const std::shared_ptr<FilenamePrompt>& shown)
    {
        prompt = shown;
        screen->present(prompt->alert, Animated::Yes);
        platform.settle();
    }
    [[nodiscard]] FilenamePrompt::Callback answering(const std::string& refusal)
    {
        return [this, refusal](const std::string& name, bool& done) {
            EXPECT_FALSE(done);
            told.push_back(name);
            done = refusal.empty();
            return FilenamePrompt::Text(refusal);
        };
    }
    [[nodiscard]] const std::string& message() const { return prompt->errMsgViewController->messageLabel->text(); }
    [[nodiscard]] bool isShown() const { return screen->presentedViewController() == prompt->alert; }

    InstalledPlatform platform;
    std::shared_ptr<Screen> screen = std::make_shared<Screen>();
    std::shared_ptr<Window> window = std::make_shared<Window>(Rect{0, 0, 400, 700});
    std::shared_ptr<FilenamePrompt> prompt;
    std::vector<std::string> told;
};

TEST_F(FilenamePromptTest, RenamesInPlace)
{
    show(RenamePrompt::newWithFilename("Réport.2026.doc", answering("")));

    EXPECT_EQ(prompt->alert->title(), "Rename Item");
    EXPECT_EQ(prompt->alert->message(), "Enter a new name for this item.");
    EXPECT_TRUE(prompt->defaultAction->enabled());
    EXPECT_TRUE(prompt->textField->isFirstResponder());
    EXPECT_TRUE(prompt->textField->returnKeyEnabled());
    EXPECT_EQ(prompt->textField->selection(), (TextRange{11, 0})) << "before the extension, in characters";
    EXPECT_TRUE(prompt->errMsgViewController->view().hidden());
    EXPECT_GT(prompt->textField->frame().height, prompt->textField->font().size);

    prompt->textField->insertText(" x");
    prompt->textField->pressReturn();
    EXPECT_THAT(told, ElementsAre("Réport.2026 x.doc"));
    EXPECT_FALSE(isShown());
    EXPECT_EQ(platform.log->lines().back(),
              "(TSD)[DEBUG] -[FilenamePrompt textFieldShouldReturn:] (*) textFieldShouldReturn");
}

TEST_F(FilenamePromptTest, BeginsANewFolderWithoutAName)
{
    show(NewFolderPrompt::newWithTitle("New Folder", "Create", answering("")));

    EXPECT_EQ(prompt->alert->title(), "New Folder");
    EXPECT_EQ(prompt->alert->message(), "Enter a name for this folder.");
    EXPECT_EQ(prompt->textField->placeholder(), "Folder Name");
    EXPECT_EQ(prompt->textField->text(), "");
    EXPECT_EQ(prompt->defaultAction->title(), "Create");
    EXPECT_FALSE(prompt->defaultAction->enabled());
    EXPECT_FALSE(prompt->textField->returnKeyEnabled()) << "the keyboard came up after the button was disabled";
    prompt->textField->pressReturn();
    EXPECT_FALSE(prompt->alert->choose(prompt->defaultAction));
    EXPECT_THAT(told, IsEmpty());

    prompt->textField->insertText("  Plans\u00A0");
    EXPECT_TRUE(prompt->alert->choose(prompt->defaultAction));
    EXPECT_THAT(told, ElementsAre("Plans"));
    EXPECT_FALSE(isShown());
}

TEST_F(FilenamePromptTest, TellsWhatIsWrongWhileItIsTyped)
{
    show(NewFolderPrompt::newWithTitle("New Folder", std::nullopt, answering("")));
    EXPECT_EQ(prompt->defaultAction->title(), "Done");
    const std::pair<const char*, const char*> steps[] = {
        {"Plan", ""},
        {"Plan/", "Character not allowed in filename"},
        {"Plan:s", "Character not allowed in filename"},
        {".Plan", "Choose a different name."},
        {"  .Plan", "Choose a different name."},
        {"   ", ""},
        {"", ""},
    };
    for (const auto& [name, expected] : steps) {
        prompt->textField->setTextByUser(name);
        EXPECT_EQ(message(), expected) << name;
        EXPECT_EQ(prompt->errMsgViewController->view().hidden(), message().empty()) << name;
        EXPECT_EQ(prompt->defaultAction->enabled(), std::string_view(name) == "Plan") << name;
        EXPECT_EQ(prompt->textField->returnKeyEnabled(), prompt->defaultAction->enabled()) << name;
    }
}

TEST_F(FilenamePromptTest, StaysOpenWhileTheNameIsRefused)
{
    show(RenamePrompt::newWithFilename("Plan", answering("Name is already taken")));
    EXPECT_FALSE(prompt->alert->choose(prompt->defaultAction));
    prompt->textField->pressReturn();

    EXPECT_TRUE(isShown());
    EXPECT_THAT(told, ElementsAre("Plan", "Plan"));
    EXPECT_EQ(message(), "Name is already taken");
    EXPECT_FALSE(prompt->errMsgViewController->view().hidden());
    EXPECT_TRUE(prompt->defaultAction->enabled());

    prompt->textField->insertText("s");
    EXPECT_EQ(message(), "");
    EXPECT_TRUE(prompt->alert->choose(prompt->alert->actions().front()));
    EXPECT_FALSE(isShown());
    EXPECT_EQ(told.size(), 2U) << "cancelling asks nobody";
}

// The callback may let go of the prompt, as it does when the next one takes its place.
TEST_F(FilenamePromptTest, MayGoWhileItIsAnswered)
{
    show(RenamePrompt::newWithFilename("Plan", [this](const std::string&, bool& done) {
        prompt.reset();
        done = true;
        return FilenamePrompt::Text();
    }));
    const auto field = prompt->textField;
    field->pressReturn();
    EXPECT_EQ(screen->presentedViewController(), nullptr);
    field->insertText("s");
    platform.services().notifications.post(kKeyboardWillShowNotification);
}

TEST_F(FilenamePromptTest, MakesRoomForTheMessage)
{
    prompt = RenamePrompt::newWithFilename("Plan", answering(""));
    auto& label = *prompt->errMsgViewController->messageLabel;
    auto& view = prompt->errMsgViewController->view();
    EXPECT_EQ(label.textColor(), (Color{1, 0, 0, 1}));
    EXPECT_EQ(label.font(), Font::preferred(TextStyle::Footnote));

    EXPECT_EQ(view.sizeThatFits({132, 1000}).height, 0) << "nothing is wrong";
    prompt->updateErrorMessage("word");
    const auto line = view.sizeThatFits({132, 1000}).height;
    label.setText("word word word word word word word word word word word word");
    const auto some = view.sizeThatFits({132, 1000}).height;
    EXPECT_GT(some, line);
    EXPECT_LE(some, 5 * line);
    view.setFrame({0, 0, 132, some});
    view.layoutIfNeeded();
    EXPECT_EQ(label.frame(), (Rect{16, 0, 100, some}));
}

} // namespace
} // namespace tessel
