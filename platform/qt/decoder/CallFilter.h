#pragma once

namespace tessel::qt {

/// Has the kernel refuse, as unknown, every system call that reading a document does not need. Files are opened for
/// reading only, and of new tasks there are only threads of this process. No privilege can be won back.
/// @returns false when the kernel refuses; true also on processors that it is not written for, where nothing is refused
[[nodiscard]] bool filterCalls();

/// The same the other way round, for what plays documents, which needs much of the system: only refuses, as not
/// permitted, to start programs, to look into other processes or send them signals, to load code into the kernel, and,
/// unless `mayReachNetwork`, sockets but those of this device's own programs.
[[nodiscard]] bool filterDangerousCalls(bool mayReachNetwork);

} // namespace tessel::qt
