#include "platform/linux/base/ErrnoError.h"

#include "platform/linux/base/UserText.h"

#include <cerrno>
#include <cstring>
#include <string>
#include <utility>

namespace tessel {

namespace {

Error codeOf(int errorNumber)
{
    switch (errorNumber) {
    case ENOENT:
    case ENOTDIR:
        return {Domain::General, ErrorCode::kNoSuchFile, {}, {}};
    case EACCES:
    case EPERM:
        return {Domain::General, ErrorCode::kReadNoPermission, {}, {}};
    case ENAMETOOLONG:
    case EILSEQ:
        return {Domain::General, ErrorCode::kInvalidFileName, {}, {}};
    case EEXIST:
        return {Domain::General, ErrorCode::kFileExists, {}, {}};
    default:
        return {Domain::System, errorNumber, {}, {}};
    }
}

// A reason that the user can act on: to a person "Not a directory" and "Operation not permitted" say no more.
std::string reasonOf(const Error& error, int errorNumber)
{
    if (error == Error{Domain::General, ErrorCode::kNoSuchFile, {}, {}})
        errorNumber = ENOENT;
    if (error == Error{Domain::General, ErrorCode::kReadNoPermission, {}, {}})
        errorNumber = EACCES;
    const char* text = ::strerrordesc_np(errorNumber); // English; the tables have those that people get to see
    return text ? userText(text) : "Unknown error " + std::to_string(errorNumber);
}

} // namespace

Error errnoError(int errorNumber, const URL& item)
{
    auto error = codeOf(errorNumber);
    error.failureReason = reasonOf(error, errorNumber);
    return errorNaming(item, std::move(error));
}

Error errorNaming(const URL& item, Error error)
{
    error.description = userText("The operation on “%1$@” failed: %2$@.",
                                 {userTextName(item.lastPathComponent()), error.failureReason});
    return error;
}

} // namespace tessel
