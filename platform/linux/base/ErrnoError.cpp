#include "platform/linux/base/ErrnoError.h"

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
    const char* text = ::strerrordesc_np(errorNumber);
    return text ? text : "Unknown error " + std::to_string(errorNumber);
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
    error.description =
        "The operation on “" + std::string(item.lastPathComponent()) + "” failed: " + error.failureReason + ".";
    return error;
}

} // namespace tessel
