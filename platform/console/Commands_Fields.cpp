#include "platform/console/Commands.h"

#include "platform/base/Platform.h"
#include "platform/console/ScreenFinder.h"
#include "platform/console/ScreenReader.h"
#include "platform/console/ShownControllers.h"
#include "platform/documents/DocumentListController.h"
#include "platform/ui/Device.h"
#include "platform/ui/TextField.h"

#include <algorithm>
#include <utility>

namespace tessel {

namespace {

constexpr std::pair<std::string_view, ListAction> kActions[] = {
    {"Info", ListAction::Info}, {"Rename", ListAction::Rename}, {"Share", ListAction::Share},
    {"Move", ListAction::Move}, {"Delete", ListAction::Delete}, {"Pop", ListAction::Pop},
};

std::shared_ptr<TextField> activeField()
{
    return platform::installed().device.firstResponder();
}

Answer noActiveField()
{
    return Answer::refused("no text field is active");
}

/// Takes the first character, in UTF-8, from the front of a text that is not empty.
std::string takeCharacter(std::string_view& text)
{
    std::size_t length = 1;
    while (length < text.size() && (static_cast<unsigned char>(text[length]) & 0xC0U) == 0x80U)
        ++length;
    const auto character = std::string(text.substr(0, length));
    text.remove_prefix(length);
    return character;
}

} // namespace

/// What is typed goes on to the field that has the keyboard by then, if any.
Answer Commands::type(Arguments arguments)
{
    if (!activeField())
        return noActiveField();
    for (std::string_view rest = arguments[0]; !rest.empty();)
        if (const auto character = takeCharacter(rest); const auto field = activeField())
            field->insertText(character);
    return {};
}

Answer Commands::clear(Arguments)
{
    const auto field = activeField();
    if (!field)
        return noActiveField();
    field->clear();
    return {};
}

Answer Commands::pressReturn(Arguments)
{
    const auto field = activeField();
    if (!field)
        return noActiveField();
    if (!field->returnKeyEnabled())
        return Answer::refused("the return key is disabled");
    field->pressReturn();
    return {};
}

Answer Commands::action(Arguments arguments)
{
    const auto* const known =
        std::ranges::find(kActions, arguments[1], &std::pair<std::string_view, ListAction>::first);
    if (known == std::end(kActions))
        return Answer::refused("no action is called \"" + arguments[1] + '"');
    const auto screen = readScreen();
    const auto row = findRow(screen, arguments[0]);
    if (!row.element)
        return {row.refusal, {}};
    const auto list = ShownControllers::now().list;
    const auto actions = list ? list->actions() : std::vector<ListAction>();
    if (std::ranges::find(actions, known->second) == actions.end())
        return Answer::refused('"' + arguments[1] + "\" is disabled");
    list->performAction(known->second, *row.element->url, nullptr, {});
    return {};
}

} // namespace tessel
