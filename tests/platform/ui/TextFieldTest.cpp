#include "platform/ui/TextField.h"
#include "platform/ui/Device.h"
#include "tests/support/InstalledPlatform.h"

#include <gmock/gmock.h>

#include <utility>

namespace tessel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Events = std::vector<std::string>;

/// Writes down what it is asked and told, and answers as the test wants.
class Witness : public TextFieldDelegate {
public:
    explicit Witness(Events& events) : events_(events) {}

    bool textFieldShouldBeginEditing(TextField& field) override { return note(field, "begin?"); }
    void textFieldDidBeginEditing(TextField& field) override { note(field, "began"); }
    bool textFieldShouldEndEditing(TextField& field) override { return note(field, "end?"); }
    void textFieldDidEndEditing(TextField& field) override { note(field, "ended"); }
    bool textFieldShouldReturn(TextField& field) override { return note(field, "return"); }
    bool textFieldShouldChangeCharacters(TextField& field, std::size_t location, std::size_t length,
                                         const std::string& text) override
    {
        return note(field, std::to_string(location) + "+" + std::to_string(length) + " '" + text + "'");
    }

    std::string refused;                    ///< the event that is answered with no
    std::function<void(TextField&)> reacts; ///< to `reactsTo`, once
    std::string reactsTo;

private:
    bool note(TextField& field, const std::string& event)
    {
        events_.push_back(field.placeholder() + event);
        if (event == reactsTo)
            if (const auto react = std::exchange(reacts, nullptr))
                react(field);
        return event != refused;
    }

    Events& events_;
};

class TextFieldTest : public testing::Test {
protected:
    std::shared_ptr<TextField> makeField(const std::string& name)
    {
        const auto made = std::make_shared<TextField>();
        made->setPlaceholder(name);
        made->delegate = witness;
        made->editingChanged = [this](TextField& changed) { events.push_back("= '" + changed.text() + "'"); };
        return made;
    }
    Events take() { return std::exchange(events, {}); }
    [[nodiscard]] std::shared_ptr<TextField> active() { return platform.services().device.firstResponder(); }

    InstalledPlatform platform;
    Events events;
    std::shared_ptr<Witness> witness = std::make_shared<Witness>(events);
    std::shared_ptr<TextField> field = makeField("");
};

TEST_F(TextFieldTest, ReplacesWholeCharactersAndAsksBefore)
{
    field->setText("aé𝄞z");
    field->setSelection({1, 2});
    EXPECT_TRUE(field->insertText("日本"));
    EXPECT_THAT(take(), ElementsAre("1+2 '日本'", "= 'a日本z'"));
    EXPECT_EQ(field->selection(), (TextRange{3, 0}));
    field->setSelection({3, 99});
    EXPECT_EQ(field->selection(), (TextRange{3, 1}));

    witness->refused = "3+1 'x'";
    EXPECT_FALSE(field->insertText("x"));
    EXPECT_THAT(take(), ElementsAre("3+1 'x'"));
    EXPECT_EQ(field->text(), "a日本z");
}

// What an input method leaves is a whole text; the delegate is asked for the characters that differ.
TEST_F(TextFieldTest, FindsWhatTheUserChanged)
{
    struct Case {
        const char* before;
        const char* after;
        const char* asked;
    };
    for (const auto& [before, after, asked] : {Case{"aaa", "aa", "2+1 ''"},
                                               {"été", "ètè", "0+3 'ètè'"},
                                               {"日本", "日木", "1+1 '木'"},
                                               {"", "x", "0+0 'x'"},
                                               {"ab", "axb", "1+0 'x'"},
                                               {"xéy", "xy", "1+1 ''"},
                                               {"é", "©", "0+1 '©'"},
                                               {"ĩ", "é", "0+1 'é'"}}) {
        field->setText(before);
        EXPECT_TRUE(field->setTextByUser(after));
        EXPECT_THAT(take(), ElementsAre(asked, "= '" + std::string(after) + "'")) << before;
        EXPECT_EQ(field->text(), after);
    }
    field->clear();
    EXPECT_THAT(take(), ElementsAre("0+1 ''", "= ''"));
    EXPECT_TRUE(field->setTextByUser(""));
    EXPECT_EQ(take().size(), 1U) << "nothing has changed";
}

TEST_F(TextFieldTest, NeverTakesALineBreak)
{
    field->insertText("one\r\ntwo");
    EXPECT_THAT(take(), ElementsAre("0+0 'one\r\ntwo'", "= 'onetwo'"));
    field->pressReturn();
    EXPECT_THAT(take(), ElementsAre("6+0 '\n'", "return"));
    witness->refused = "6+0 '\n'";
    field->pressReturn();
    EXPECT_THAT(take(), ElementsAre("6+0 '\n'"));
    field->setReturnKeyEnabled(false);
    field->pressReturn();
    EXPECT_THAT(take(), IsEmpty());
    EXPECT_EQ(field->text(), "onetwo");
}

TEST_F(TextFieldTest, PassesTheKeyboardOnWhenBothAgree)
{
    const auto other = makeField("other ");
    EXPECT_TRUE(field->becomeFirstResponder());
    EXPECT_TRUE(field->becomeFirstResponder());
    EXPECT_THAT(take(), ElementsAre("begin?", "began"));
    EXPECT_TRUE(other->becomeFirstResponder());
    EXPECT_THAT(take(), ElementsAre("other begin?", "end?", "ended", "other began"));
    EXPECT_FALSE(field->isFirstResponder());

    witness->refused = "end?";
    EXPECT_FALSE(field->becomeFirstResponder());
    EXPECT_EQ(active(), other);
    other->endEditing();
    EXPECT_EQ(active(), nullptr);
    field->setEnabled(false);
    EXPECT_FALSE(field->becomeFirstResponder());
}

TEST_F(TextFieldTest, LeavesTheKeyboardToWhomTheDelegateGivesItMeanwhile)
{
    const auto second = makeField("second ");
    const auto third = makeField("third ");
    field->becomeFirstResponder();
    witness->reactsTo = "ended";
    witness->reacts = [&](TextField&) { third->becomeFirstResponder(); };
    EXPECT_FALSE(second->becomeFirstResponder());
    EXPECT_EQ(active(), third);
    EXPECT_FALSE(second->isFirstResponder());
}

TEST_F(TextFieldTest, SurvivesWhatItsListenersDoToIt)
{
    witness->reactsTo = "0+0 'x'";
    witness->reacts = [this](TextField& asked) {
        asked.setText("other");
        witness.reset();
    };
    EXPECT_TRUE(field->insertText("x"));
    EXPECT_EQ(field->text(), "xother");

    field->editingChanged = [this, held = std::string("a text of more than fifteen bytes")](TextField& changed) {
        field.reset();
        changed.editingChanged = nullptr;
        events = {held};
    };
    field->insertText("y");
    EXPECT_THAT(events, ElementsAre("a text of more than fifteen bytes"));

    auto dying = makeField("");
    dying->becomeFirstResponder();
    dying.reset();
    EXPECT_EQ(active(), nullptr);
}

} // namespace
} // namespace tessel
