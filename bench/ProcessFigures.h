#pragma once

#include <QtGlobal>

#include <vector>

#include <sys/types.h>

namespace snapvane::bench {

/// CPU time that a process has used so far, in milliseconds.
double cpuMilliseconds(pid_t process);

/// A value of the process's memory in KiB, by its name in /proc/PID/smaps_rollup, for example
/// "Pss".
qint64 memoryKiB(pid_t process, const char* name);

/// The middle value; `values` must not be empty.
double median(std::vector<double> values);

} // namespace snapvane::bench
