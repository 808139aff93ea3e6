#pragma once

#include "platform/ui/Control.h"
#include "platform/ui/Font.h"
#include "platform/ui/Keyboard.h"
#include "platform/ui/Label.h"

#include <cstddef>
#include <functional>
#include <memory>

namespace tessel {

class TextField;

class TextFieldDelegate {
public:
    virtual ~TextFieldDelegate() = default;

    virtual bool textFieldShouldBeginEditing(TextField&) { return true; }
    virtual void textFieldDidBeginEditing(TextField&) {}
    virtual bool textFieldShouldEndEditing(TextField&) { return true; }
    virtual void textFieldDidEndEditing(TextField&) {}
    /// @returns whether the replacement goes ahead.
    virtual bool textFieldShouldChangeCharacters(TextField&, std::size_t /*location*/, std::size_t /*length*/,
                                                 const std::string& /*replacement*/)
    {
        return true;
    }
    /// The return key was pressed, and the change of characters to a line break was let. What is answered means
    /// nothing: the field does nothing by itself.
    virtual bool textFieldShouldReturn(TextField&) { return true; }
    /// Whether a scroll view that the field lies in brings it into sight when it gets the keyboard.
    virtual bool _textFieldShouldScrollToVisibleWhenBecomingFirstResponder(TextField&) { return true; }
};

/// Characters of a text: Unicode code points, from 0.
struct TextRange {
    std::size_t location = 0;
    std::size_t length = 0;

    friend bool operator==(const TextRange&, const TextRange&) = default;
};

/// One line of text that the user edits. What the user does arrives by `insertText`, `setTextByUser`, `clear` and
/// `pressReturn`, from a shell or a test; the program sets the text by `setText`, which tells nobody.
class TextField : public Control {
public:
    enum class ReturnKey { Default, Done };
    enum class Capitals { None, Words };

    std::weak_ptr<TextFieldDelegate> delegate;
    /// Told after each change that the user made.
    std::function<void(TextField&)> editingChanged;

    bool showsClearButtonWhileEditing = false;
    ReturnKey returnKey = ReturnKey::Default;
    Capitals capitals = Capitals::None;
    bool corrects = true;            ///< automatic correction, where the keyboard has it
    bool needsTextForReturn = false; ///< the return key is disabled while there is none
    bool hasGround = true;           ///< else it looks like a label while nobody edits it

    [[nodiscard]] const std::string& text() const { return text_; }
    /// Also puts the caret behind the text.
    void setText(std::string);
    [[nodiscard]] const std::string& placeholder() const { return placeholder_; }
    void setPlaceholder(std::string);
    [[nodiscard]] const Font& font() const { return font_; }
    void setFont(const Font&);
    [[nodiscard]] TextAlignment textAlignment() const { return alignment_; }
    void setTextAlignment(TextAlignment);

    [[nodiscard]] const TextRange& selection() const { return selection_; }
    /// A range that reaches beyond the text is cut to it.
    void setSelection(const TextRange&);

    /// Whether the return key of the on-screen keyboard can be pressed while this field has it.
    [[nodiscard]] bool returnKeyEnabled() const { return returnKeyEnabled_ && (!needsTextForReturn || !text_.empty()); }
    void setReturnKeyEnabled(bool enabled) { assign(returnKeyEnabled_, enabled); }

    [[nodiscard]] bool isFirstResponder() const { return editing_; }
    /// Begins editing, if the delegate agrees; the field that had the keyboard gives it up first, and may refuse.
    /// @returns whether the field is being edited.
    bool becomeFirstResponder();
    /// Ends editing, if the delegate agrees. @returns whether it is not being edited any more.
    bool resignFirstResponder();
    /// Ends editing without asking: the field leaves the screen.
    void endEditing();

    /// Types in place of the selection. @returns whether the delegate let it.
    bool insertText(const std::string&);
    /// The whole text as the user's editing left it, such as after an input method.
    bool setTextByUser(const std::string&);
    void clear() { setTextByUser(""); }
    /// Nothing while the return key is disabled.
    void pressReturn();

    [[nodiscard]] Size intrinsicContentSize() const override;

private:
    [[nodiscard]] std::shared_ptr<TextField> self();
    void scrollToVisible() const;
    bool replace(TextRange, const std::string&);

    std::string text_;
    std::string placeholder_;
    Font font_;
    TextAlignment alignment_ = TextAlignment::Natural;
    TextRange selection_;
    bool returnKeyEnabled_ = true;
    bool editing_ = false;
};

} // namespace tessel
