#pragma once

#include "platform/base/Date.h"
#include "platform/base/Error.h"
#include "platform/base/URL.h"
#include "platform/cloud/CloudContainer.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace tessel {

class TypeRegistry;

/// Makes the items of an example below a folder. Each gets the next of a series of dates, so that two examples look
/// alike. After a first error nothing more is made. Attributes are set where the file system keeps any.
class ExampleBuilder {
public:
    /// @param root a folder that is not there yet
    /// @param cloudStore a folder for the content of documents that are not downloaded
    /// @param identifierPrefix tells their identifiers from those of other examples
    ExampleBuilder(const URL& root, const URL& cloudStore, const TypeRegistry&, std::string identifierPrefix);

    /// Parents are made before what is in them, by the caller.
    void folder(std::string_view path);
    void file(std::string_view path, std::string_view content);
    /// @param target as stored
    void link(std::string_view path, const char* target);
    /// An external document reference. The target, which is there and downloaded, is marked with the identifier.
    /// @param target as `path`, in the container whose folder the root is
    void reference(std::string_view path, std::string_view container, std::string_view target,
                   std::uint32_t identifier);
    /// A placeholder whose content lies in the cloud store under its identifier.
    void notDownloaded(std::string_view path, std::string_view content, std::optional<std::string> sharedRole = {});

    /// @param names separated by commas
    void setTags(std::string_view path, std::string_view names);
    void setSharedRole(std::string_view path, std::string_view role);

    /// The container whose folder the root is.
    void declare(const CloudContainer&);

    /// Dates everything, which what is made in a folder would undo.
    /// @returns the first error there was
    [[nodiscard]] std::optional<Error> finish();

private:
    struct Dated {
        URL url;
        Date date;
    };

    Date nextDate();
    void write(const URL&, std::string_view content);
    void setAttribute(std::string_view path, const char* name, std::string_view value);
    void check(bool succeeded, const URL&);

    const URL root_;
    const URL cloudStore_;
    const TypeRegistry& types_;
    const std::string identifierPrefix_;
    std::vector<Dated> made_;
    int datesGiven_ = 0;
    int placeholderCount_ = 0;
    std::optional<Error> error_;
};

} // namespace tessel
