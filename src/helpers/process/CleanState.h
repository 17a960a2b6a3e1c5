#pragma once

namespace mirvel {

/// Whether a process stays in the control group in which it was started. Only Linux has control groups.
enum class ControlGroup { Keep, Leave };

/// Resets everything that this process has inherited from its parent, as far as its rights permit, so that the parent
/// can't limit, slow down, stop or observe it or its children:
///
/// - resource limits: root's become those with which the system starts services; of other users, only soft limits are
///   raised, as far as the hard ones permit;
/// - nice value, scheduler, CPU affinity, I/O priority, OOM score and timers;
/// - signals: mask, dispositions, and pending ones, which are discarded;
/// - session and terminal, working directory (/) and umask (022);
/// - descriptors: all are closed but the standard ones, of which missing ones are opened on /dev/null;
/// - of root: user, group and supplementary groups;
/// - of root: the control group, if it is to be left.
///
/// The environment is unchanged; see `resetEnvironment`. Anything that can't be reset stays as it is, because none of
/// it prevents the process from working. Requires a process with one thread, and belongs at the beginning of `main`.
void resetProcessState(ControlGroup controlGroup);

/// Removes all environment variables and sets PATH to the system's folders. Requires a process with one thread.
void resetEnvironment();

/// Prevents other processes of the same user from tracing this one and from reading its memory, descriptors and
/// environment. Has an effect on Linux only: elsewhere, the system either does this by default or offers no way.
void forbidTracing();

}  // namespace mirvel
