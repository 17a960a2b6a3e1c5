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

/// The parts of the program that requests, saves and deletions depend on. All of them must outlive the
/// `ActionController`.
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
  Busy& saving;    ///< saves and restorations, from the password or the first request to the last reply
  Busy& deleting;  ///< deletions, likewise
};

}  // namespace mirvel
