#include "platform/qt/views/TextFieldNode.h"

#include "platform/qt/views/Fonts.h"
#include "platform/qt/views/TextNodes.h"

#include <algorithm>
#include <utility>

namespace tessel::qt {

namespace {

/// How many UTF-16 units the first characters of a text take.
int unitsOf(const QString& text, std::size_t characters)
{
    qsizetype units = 0;
    for (; characters > 0 && units < text.size(); --characters)
        units += text.at(units).isHighSurrogate() ? 2 : 1;
    return static_cast<int>(std::min(units, text.size()));
}

/// How many characters begin before a place in a text.
std::size_t charactersBefore(const QString& text, int units)
{
    const auto part = QStringView(text).first(std::clamp<qsizetype>(units, 0, text.size()));
    return static_cast<std::size_t>(std::ranges::count_if(part, [](QChar unit) { return !unit.isLowSurrogate(); }));
}

} // namespace

std::shared_ptr<TextField> TextFieldNode::field() const
{
    return std::static_pointer_cast<TextField>(view());
}

QString TextFieldNode::text() const
{
    const auto field = this->field();
    return field ? QString::fromStdString(field->text()) : QString();
}

QString TextFieldNode::placeholder() const
{
    const auto field = this->field();
    return field ? QString::fromStdString(field->placeholder()) : QString();
}

QFont TextFieldNode::font() const
{
    const auto field = this->field();
    return systemFont(field ? field->font() : Font());
}

int TextFieldNode::alignment() const
{
    const auto field = this->field();
    return horizontalAlignment(field ? field->textAlignment() : TextAlignment::Natural);
}

bool TextFieldNode::isEnabled() const
{
    const auto field = this->field();
    return field && field->enabled();
}

int TextFieldNode::selectionStart() const
{
    const auto field = this->field();
    return field ? unitsOf(text(), field->selection().location) : 0;
}

int TextFieldNode::selectionEnd() const
{
    const auto field = this->field();
    return field ? unitsOf(text(), field->selection().location + field->selection().length) : 0;
}

bool TextFieldNode::isFocused() const
{
    const auto field = this->field();
    return field && field->isFirstResponder();
}

bool TextFieldNode::hasClearButton() const
{
    const auto field = this->field();
    return field && field->showsClearButtonWhileEditing && field->isFirstResponder() && !field->text().empty();
}

bool TextFieldNode::isReturnKeyEnabled() const
{
    const auto field = this->field();
    return field && field->returnKeyEnabled();
}

bool TextFieldNode::returnKeyIsDone() const
{
    const auto field = this->field();
    return field && field->returnKey == TextField::ReturnKey::Done;
}

bool TextFieldNode::capitalizesWords() const
{
    const auto field = this->field();
    return field && field->capitals == TextField::Capitals::Words;
}

bool TextFieldNode::corrects() const
{
    const auto field = this->field();
    return field && field->corrects;
}

bool TextFieldNode::hasGround() const
{
    const auto field = this->field();
    return field && field->hasGround;
}

void TextFieldNode::setComposing(bool composing)
{
    if (std::exchange(composing_, composing) == composing)
        return;
    emit composingChanged();
    if (!composing && std::exchange(heldBack_, false))
        emit changed();
}

void TextFieldNode::viewChanged(ViewChange change)
{
    if (selecting_)
        return;
    if (composing_ && change == ViewChange::Properties)
        heldBack_ = true;
    else
        Node::viewChanged(change);
}

void TextFieldNode::edit(const QString& text)
{
    if (const auto field = this->field())
        field->setTextByUser(text.toStdString());
}

void TextFieldNode::clear()
{
    if (const auto field = this->field())
        field->clear();
}

void TextFieldNode::beginEditing()
{
    const auto field = this->field();
    if (field && !field->becomeFirstResponder())
        emit changed();
}

void TextFieldNode::endEditing()
{
    const auto field = this->field();
    if (field && !field->resignFirstResponder())
        emit changed();
}

void TextFieldNode::pressReturn()
{
    const auto field = this->field();
    if (field && !composing_)
        field->pressReturn();
}

void TextFieldNode::select(int start, int end)
{
    const auto field = this->field();
    if (!field || composing_)
        return;
    const auto text = this->text();
    const auto first = charactersBefore(text, std::min(start, end));
    selecting_ = true;
    field->setSelection({first, charactersBefore(text, std::max(start, end)) - first});
    selecting_ = false;
}

} // namespace tessel::qt
