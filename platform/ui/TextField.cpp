#include "platform/ui/TextField.h"

#include "platform/base/NotificationCenter.h"
#include "platform/base/Platform.h"
#include "platform/ui/Device.h"
#include "platform/ui/ScrollView.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace tessel {

namespace {

constexpr double kPadding = 6; ///< points above and below the text

bool continuesCharacter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

std::size_t characters(std::string_view text)
{
    return text.size() - static_cast<std::size_t>(std::ranges::count_if(text, continuesCharacter));
}

/// Where a character begins, in bytes; the end of the text for one behind it.
std::size_t byteOffset(std::string_view text, std::size_t character)
{
    for (std::size_t offset = 0; offset < text.size(); ++offset)
        if (!continuesCharacter(text[offset]) && character-- == 0)
            return offset;
    return text.size();
}

TextRange cut(const TextRange& range, std::size_t length)
{
    const auto location = std::min(range.location, length);
    return {location, std::min(range.length, length - location)};
}

std::string withoutLineBreaks(std::string text)
{
    std::erase_if(text, [](char byte) { return byte == '\n' || byte == '\r'; });
    return text;
}

/// How many bytes two texts have in common at their beginning, in whole characters.
std::size_t commonBeginning(std::string_view left, std::string_view right)
{
    auto length = static_cast<std::size_t>(std::ranges::mismatch(left, right).in1 - left.begin());
    const auto isInside = [&](std::string_view text) {
        return length < text.size() && continuesCharacter(text[length]);
    };
    while (length > 0 && (isInside(left) || isInside(right)))
        --length;
    return length;
}

/// The same at their end.
std::size_t commonEnd(std::string_view left, std::string_view right)
{
    const auto most = std::min(left.size(), right.size());
    std::size_t length = 0;
    while (length < most && left[left.size() - length - 1] == right[right.size() - length - 1])
        ++length;
    while (length > 0 && continuesCharacter(left[left.size() - length]))
        --length;
    return length;
}

} // namespace

void TextField::setText(std::string text)
{
    assign(selection_, {characters(text), 0});
    assign(text_, std::move(text));
}

void TextField::setPlaceholder(std::string placeholder)
{
    assign(placeholder_, std::move(placeholder));
}

void TextField::setFont(const Font& font)
{
    if (assign(font_, font))
        invalidateIntrinsicContentSize();
}

void TextField::setTextAlignment(TextAlignment alignment)
{
    assign(alignment_, alignment);
}

void TextField::setSelection(const TextRange& range)
{
    assign(selection_, cut(range, characters(text_)));
}

bool TextField::becomeFirstResponder()
{
    const auto self = this->self();
    auto& device = platform::installed().device;
    const auto listener = delegate.lock();
    if (editing_ || !enabled() || (listener && !listener->textFieldShouldBeginEditing(*this)))
        return editing_;
    const auto other = device.firstResponder();
    if (other && !other->resignFirstResponder())
        return false;
    if (editing_ || device.firstResponder()) // the other one's delegate may have chosen whose turn it is
        return editing_;
    editing_ = true;
    device.firstResponder_ = self;
    tellChanged(ViewChange::Properties);
    if (!listener || listener->_textFieldShouldScrollToVisibleWhenBecomingFirstResponder(*this))
        scrollToVisible();
    platform::installed().notifications.post(kKeyboardWillShowNotification);
    if (const auto witness = delegate.lock(); witness && editing_)
        witness->textFieldDidBeginEditing(*this);
    return editing_;
}

bool TextField::resignFirstResponder()
{
    const auto self = this->self();
    const auto listener = delegate.lock();
    if (editing_ && (!listener || listener->textFieldShouldEndEditing(*this)))
        endEditing();
    return !editing_;
}

void TextField::endEditing()
{
    const auto self = this->self();
    if (!std::exchange(editing_, false))
        return;
    platform::installed().device.firstResponder_.reset();
    tellChanged(ViewChange::Properties);
    if (const auto listener = delegate.lock())
        listener->textFieldDidEndEditing(*this);
}

bool TextField::insertText(const std::string& text)
{
    return replace(selection_, text);
}

bool TextField::setTextByUser(const std::string& text)
{
    const auto front = commonBeginning(text_, text);
    const std::string_view before = std::string_view(text_).substr(front);
    const std::string_view after = std::string_view(text).substr(front);
    const auto back = commonEnd(before, after);
    const auto replaced = characters(before.substr(0, before.size() - back));
    return replace({characters(std::string_view(text_).substr(0, front)), replaced},
                   std::string(after.substr(0, after.size() - back)));
}

void TextField::pressReturn()
{
    const auto self = this->self();
    if (!returnKeyEnabled())
        return;
    const auto listener = delegate.lock();
    if (listener && listener->textFieldShouldChangeCharacters(*this, selection_.location, selection_.length, "\n"))
        listener->textFieldShouldReturn(*this);
}

Size TextField::intrinsicContentSize() const
{
    return {-1, platform::installed().device.textMeasurer().metrics(font_).lineHeight + 2 * kPadding};
}

std::shared_ptr<TextField> TextField::self()
{
    return std::static_pointer_cast<TextField>(shared_from_this());
}

void TextField::scrollToVisible() const
{
    for (auto view = superview(); view; view = view->superview())
        if (const auto scroll = std::dynamic_pointer_cast<ScrollView>(view))
            return scroll->scrollRectToVisible(frameIn(*scroll));
}

/// A shell that shows the text already is told also when nothing has changed here, so that it shows what is here.
bool TextField::replace(TextRange range, const std::string& text)
{
    const auto self = this->self();
    const auto listener = delegate.lock();
    if (listener && !listener->textFieldShouldChangeCharacters(*this, range.location, range.length, text)) {
        tellChanged(ViewChange::Properties);
        return false;
    }
    range = cut(range, characters(text_)); // the delegate may have set another text
    const auto insertion = withoutLineBreaks(text);
    const auto begin = byteOffset(text_, range.location);
    const auto end = byteOffset(text_, range.location + range.length);
    const auto before = std::exchange(text_, text_.substr(0, begin) + insertion + text_.substr(end));
    selection_ = {range.location + characters(insertion), 0};
    tellChanged(ViewChange::Properties);
    if (const auto told = editingChanged; told && text_ != before)
        told(*this);
    return true;
}

} // namespace tessel
