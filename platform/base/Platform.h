#pragma once

namespace tessel {

class ActivityService;
class ApplicationRegistry;
class CloudService;
class Clock;
class Device;
class DocumentDecoder;
class DocumentReader;
class FileCoordinationService;
class FileManager;
class FolderReader;
class GenerationalStorage;
class KeyValueStore;
class MainQueue;
class NotificationCenter;
class ProgressService;
class QuotaService;
class ResourceValues;
class TextServices;
class TypeRegistry;
class UnifiedLog;
class UserDefaults;

namespace platform {

/// Every service that the program reaches, by reference. Whoever installs it owns the services.
struct Services {
    Clock& clock;
    MainQueue& mainQueue;
    NotificationCenter& notifications;
    UnifiedLog& log;
    TextServices& text;
    TypeRegistry& types;
    FileManager& files;
    FileCoordinationService& coordination;
    ResourceValues& resources;
    FolderReader& folders;
    CloudService& cloud;
    ProgressService& progress;
    ActivityService& activities;
    QuotaService& quota;
    GenerationalStorage& storage;
    DocumentDecoder& decoder;
    DocumentReader& documents;
    ApplicationRegistry& apps;
    UserDefaults& defaults;
    KeyValueStore& keyValues;
    Device& device;
};

/// The installed platform: the program's one global. Undefined before a Scope exists.
[[nodiscard]] const Services& installed();
/// The same, or null while no Scope exists: for what may also fail before the platform is complete.
[[nodiscard]] const Services* installedIfAny();

/// Installs services for the length of a scope; the services and the scope are made and destroyed on the main thread,
/// and no other thread of the program outlives them. Scopes nest: a test wraps one service by installing a copy.
class Scope {
public:
    explicit Scope(const Services&);
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;

private:
    const Services services_;
    const Services* const outer_;
};

} // namespace platform
} // namespace tessel
