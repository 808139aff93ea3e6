#include "files/UIUtils.h"

#include "app/common/Log.h"
#include "app/common/TSDAdditions.h"
#include "files/FileUtils.h"
#include "platform/cloud/CloudService.h"
#include "platform/text/GeneralError.h"
#include "platform/text/TextServices.h"
#include "platform/ui/Device.h"

#include <algorithm>

namespace tessel {

namespace {

constexpr const char* kUnknownError = "Error exception";

std::string bestText(const Error& error)
{
    if (!error.description.empty())
        return error.description;
    return error.failureReason.empty() ? kUnknownError : error.failureReason;
}

bool continuesCharacter(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

} // namespace

std::optional<Error> UIUtils::renameItemAtURL(const URL& url, const std::string& toName)
{
    TSD_FUNCTION("+[UIUtils renameItemAtURL:toName:]");
    if (toName.empty()) {
        TSD_DEBUG("Rename: empty, reverting");
        return generalError(ErrorCode::kInvalidFileName);
    }
    if (!FileUtils::isValidFilename(toName)) {
        TSD_DEBUG("Name is invalid: %@", toName);
        return generalError(ErrorCode::kInvalidFileName);
    }
    TSD_DEBUG("Name is valid: %@", toName);
    const auto target = tsd_URLByResolvingBookmark(url);
    if (platform::installed().cloud.isExternalDocumentReference(url))
        TSD_DEBUG("Renaming bookmark %@ (%@)", url, target);
    if (!target)
        return generalError(ErrorCode::kFileDoesNotExist);
    const auto newURL = computeNewURL(*target, toName);
    if (newURL == *target) {
        TSD_DEBUG("Rename: Old and new URLs are the same: %@ - %@", *target, newURL);
        return std::nullopt;
    }
    return FileUtils::move(*target, newURL);
}

URL UIUtils::computeNewURL(const URL& url, const std::string& newBasename)
{
    const auto extension = url.pathExtension();
    const auto typed = URL::file(newBasename);
    const bool keepsExtension =
        extension.empty() || platform::installed().text.equalIgnoringCase(extension, typed.pathExtension());
    return url.deletingLastPathComponent().appending(keepsExtension ? newBasename
                                                                    : newBasename + "." + std::string(extension));
}

std::string UIUtils::bestMessage(const std::optional<Error>& error)
{
    const auto& text = platform::installed().text;
    if (!error)
        return "";
    if (error->domain == Domain::General && error->code == ErrorCode::kFileExists)
        return text.localized("Name is already taken");
    if (error->domain == Domain::General && error->code == ErrorCode::kInvalidFileName)
        return text.localized("Character not allowed in filename");
    return bestText(*error);
}

void UIUtils::showError(const std::optional<Error>& error, const Presenter& parentViewController)
{
    showAlert(error ? bestText(*error) : kUnknownError, "", parentViewController);
}

void UIUtils::showUnsupportedError(const Presenter& viewController)
{
    showError(generalError(ErrorCode::kUnsupported), viewController);
}

void UIUtils::addChildViewController(ViewController& parent, const std::shared_ptr<ViewController>& child)
{
    parent.addChild(child);
}

bool UIUtils::vellumMode()
{
    return platform::installed().device.idiom == Idiom::Pad;
}

void UIUtils::setCursorInTextFieldToBeforeExtension(TextField& field)
{
    const auto& text = field.text();
    const auto dot = text.rfind('.');
    if (dot == std::string::npos)
        return;
    const auto end = text.begin() + static_cast<std::string::difference_type>(dot);
    const auto continued = static_cast<std::size_t>(std::count_if(text.begin(), end, continuesCharacter));
    selectTextInTextField(field, {dot - continued, 0});
}

void UIUtils::selectTextInTextField(TextField& field, const TextRange& range)
{
    field.setSelection(range);
}

} // namespace tessel
