#include "tests/stress/Survey.h"

#include "platform/linux/cloud/Placeholder.h"
#include "tests/stress/Content.h"
#include "tests/stress/Stage.h"

#include <filesystem>
#include <system_error>

namespace tessel {

namespace {

namespace fs = std::filesystem;

class Surveyor {
public:
    explicit Surveyor(const Stage& stage) : stage_(stage) {}

    Survey run()
    {
        for (std::size_t place = 0; place < Stage::kContainers; ++place)
            for (const auto& entry : fs::recursive_directory_iterator(stage_.places().at(place).path()))
                look(entry);
        lookAtStore();
        lookAtHome();
        return std::move(survey_);
    }

private:
    void look(const fs::directory_entry& entry)
    {
        const auto url = URL::file(entry.path().native());
        const auto name = url.lastPathComponent();
        if (isPlaceholderName(name))
            lookAtPlaceholder(url);
        else if (name.starts_with('.') && url != stage_.places()[Stage::kTrash])
            addLeftover(url, entry);
        else if (!entry.is_directory())
            add(url, readContent(url));
    }

    void addLeftover(const URL& url, const fs::directory_entry& entry)
    {
        if (entry.is_directory() && fs::is_empty(entry.path()))
            ++survey_.emptyFolders;
        else
            survey_.leftovers.push_back(url.path());
    }

    void lookAtPlaceholder(const URL& placeholder)
    {
        const auto record = readPlaceholder(placeholder);
        if (!record)
            return survey_.torn.push_back(placeholder.path() + ": " + record.error().description);
        const auto document = placeholder.deletingLastPathComponent().appending(record->name);
        const auto stored = readContent(stage_.store().appending(record->identifier));
        if (fs::exists(fs::symlink_status(document.path())))
            return; // the document on the device counts
        if (!stored.isThere)
            return survey_.torn.push_back(document.path() + ": its content is not in the cloud");
        ++survey_.inCloudOnly;
        add(document, stored);
    }

    void add(const URL& document, const Reading& reading)
    {
        if (!reading.identifier)
            return survey_.torn.push_back(document.path());
        survey_.inTrash += stage_.places()[Stage::kTrash].contains(document) ? 1 : 0;
        survey_.places[*reading.identifier].push_back(document);
    }

    // Also what no document refers to any more.
    void lookAtStore()
    {
        std::error_code none;
        for (const auto& entry : fs::directory_iterator(stage_.store().path(), none)) {
            const auto url = URL::file(entry.path().native());
            const auto reading = readContent(url);
            if (url.lastPathComponent().starts_with('.'))
                survey_.leftovers.push_back(url.path());
            else if (!reading.identifier)
                survey_.torn.push_back(url.path());
            else
                survey_.stored.insert(*reading.identifier);
        }
    }

    void lookAtHome()
    {
        std::error_code none;
        for (const auto& entry : fs::directory_iterator(stage_.unfinished().path(), none))
            survey_.leftovers.push_back(entry.path().native());
        for (const auto& entry : fs::directory_iterator(stage_.home().path()))
            if (entry.path().filename().native().starts_with('.'))
                survey_.leftovers.push_back(entry.path().native());
    }

    const Stage& stage_;
    Survey survey_;
};

} // namespace

Survey surveyOf(const Stage& stage)
{
    return Surveyor(stage).run();
}

} // namespace tessel
