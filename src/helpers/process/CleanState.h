#pragma once

#include <filesystem>

namespace mirvel {

/// Whether a process stays in the control group in which it was started. Elsewhere than on Linux there is none.
enum class ControlGroup { Keep, Leave };

/// Frees this process of everything that it inherited from whoever started it, as far as its rights go, so that neither
/// it nor its children are limited, slowed down, stopped or watched by that: limits on resources, nice value,
/// scheduler, processors, I/O priority, OOM score, timers, signals (mask, dispositions, pending ones), session and
/// terminal, working directory, umask, and all descriptors but the standard ones, of which missing ones are opened on
/// /dev/null. Root takes root's own user, group and groups. Root's limits become those that a service of the
/// machine starts with; of other users only soft limits are raised, as far as their hard ones allow.
///
/// What can't be reset stays as it is: none of it is a reason not to work. For a process with one thread, at its start.
/// The environment is left alone, see `resetEnvironment`.
void resetProcessState(ControlGroup controlGroup);

/// Removes all variables but PATH, which gets the system's folders. For a process with one thread.
void resetEnvironment();

/// Moves this process to a group of the program's own, directly below the root of the hierarchy (cgroups(7), version
/// 2), if it is root's and the hierarchy can be written.
void leaveControlGroup(const std::filesystem::path& hierarchy);

/// Keeps other processes of the same user from reading this one's memory, descriptors and environment, and from tracing
/// it. Linux only: elsewhere the system forbids that by itself, or can't.
void forbidTracing();

}  // namespace mirvel
