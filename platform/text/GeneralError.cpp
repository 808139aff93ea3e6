#include "platform/text/GeneralError.h"

#include "platform/base/Platform.h"
#include "platform/text/TextServices.h"

namespace tessel {

namespace {

const char* descriptionKey(int code)
{
    switch (code) {
    case ErrorCode::kFileDoesNotExist:
        return "The item doesn’t exist.";
    case ErrorCode::kInvalidFileName:
        return "The name can’t be used.";
    case ErrorCode::kFileExists:
        return "An item with the same name already exists.";
    case ErrorCode::kFormatting:
        return "The value has the wrong form.";
    case ErrorCode::kUserCancelled:
        return "The operation was cancelled.";
    case ErrorCode::kUnsupported:
        return "This can’t be done with the item.";
    default:
        return "The operation couldn’t be completed.";
    }
}

} // namespace

Error generalError(int code)
{
    return {Domain::General, code, platform::installed().text.localized(descriptionKey(code)), {}, {}};
}

} // namespace tessel
