#pragma once

namespace mirvel {

class Busy;
class Catalogue;
class CommandRepairs;
class Editing;
class Fetcher;
class RevisionController;
class Selection;
struct Foundation;
struct Notifications;
struct Platform;
struct Shell;

/// What requests, saves and deletions use. All outlive those.
struct ActionContext {
  Foundation& foundation;
  const Platform& platform;
  Shell& shell;
  const Catalogue& catalogue;
  Selection& selection;
  Editing& editing;
  Fetcher& fetcher;
  RevisionController& revisions;
  CommandRepairs& repairs;
  Notifications& notifications;
  Busy& saving;    ///< saves and restorations, from their first request, or the password, to the last answer
  Busy& deleting;  ///< deletions, in the same way
};

}  // namespace mirvel
