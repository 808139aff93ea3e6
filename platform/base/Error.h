#pragma once

#include <map>
#include <string>
#include <utility>
#include <variant>

namespace tessel {

/// Who gives an error code its meaning.
enum class Domain {
    General, ///< The platform's own codes, named in ErrorCode.
    System,  ///< errno values that have no general code.
    Cloud,   ///< Codes of the cloud document service, named in CloudErrorCode.
};

/// Codes of the general domain that the program makes or tests.
namespace ErrorCode {
inline constexpr int kNoSuchFile = 4;
inline constexpr int kLocked = 255; ///< somebody else has had the item for too long
inline constexpr int kReadNoPermission = 257;
inline constexpr int kReadCorrupt = 259;
inline constexpr int kFileDoesNotExist = 260;
inline constexpr int kInvalidFileName = 514;
inline constexpr int kFileExists = 516;
inline constexpr int kFormatting = 2048; ///< a value that is not in the form that it must have
inline constexpr int kUserCancelled = 3072;
inline constexpr int kUnsupported = 3328;
} // namespace ErrorCode

namespace CloudErrorCode {
inline constexpr int kNotInDrive = 7; ///< the service does not know the item
} // namespace CloudErrorCode

/// Entries of an error's user information.
namespace ErrorKey {
inline constexpr const char* kDestinationFilePath = "DestinationFilePath"; ///< where an item was to be moved
} // namespace ErrorKey

/// Why something failed, as a value. `description` is one sentence for the user and names the item; `failureReason`
/// is the bare reason ("Permission denied").
struct Error {
    Domain domain = Domain::General;
    int code = 0;
    std::string description;
    std::string failureReason;
    std::map<std::string, std::string> userInformation = {};

    friend bool operator==(const Error& left, const Error& right)
    {
        return left.domain == right.domain && left.code == right.code;
    }
};

/// A value, or the error that stood in its way.
template <typename T>
class [[nodiscard]] Result {
public:
    Result(T value) : content_(std::in_place_index<0>, std::move(value)) {}
    Result(Error error) : content_(std::in_place_index<1>, std::move(error)) {}

    explicit operator bool() const { return content_.index() == 0; }
    [[nodiscard]] const T& value() const { return std::get<0>(content_); }
    [[nodiscard]] T& value() { return std::get<0>(content_); }
    [[nodiscard]] const Error& error() const { return std::get<1>(content_); }

    [[nodiscard]] const T* operator->() const { return &value(); }
    [[nodiscard]] const T& operator*() const { return value(); }

private:
    std::variant<T, Error> content_;
};

} // namespace tessel
