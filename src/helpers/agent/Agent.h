#pragma once

#include <csignal>
#include <cstdint>
#include <memory>
#include <set>
#include <string>

#include "core/catalogue/EmbeddedList.h"
#include "core/files/Roots.h"
#include "core/locale/Localize.h"
#include "core/notifications/Announcements.h"
#include "core/ports/Clock.h"
#include "core/ports/Console.h"
#include "core/process/Environment.h"
#include "core/process/ProcessRunner.h"
#include "core/runs/ReportFolders.h"
#include "helpers/agent/AgentActions.h"
#include "helpers/agent/AgentLock.h"
#include "helpers/agent/JobFolderWatch.h"
#include "helpers/agent/NoticeSender.h"
#include "helpers/agent/Notifier.h"
#include "helpers/agent/PollQueue.h"
#include "helpers/host/PollLoop.h"
#include "helpers/host/Session.h"
#include "helpers/process/Signals.h"

namespace mirvel::agent {

/// The background agent: watches the job folders and the runs of the user's jobs, and tells the user what has changed.
/// Waits for events in one poll loop, without a time limit while nothing happens. For the main thread.
class Agent {
 public:
  struct Setup {
    const Roots& roots;
    const Environment& environment;
    const Localize& localize;
    ProcessRunner& runner;
    Console& console;
    const Clock& clock;
    std::filesystem::path machine;  ///< the folder that represents a machine, with which the agent ends; empty: none
    std::filesystem::path sessionRecords;
    std::string launchctl;
    std::filesystem::path program;  ///< `mirvel`
    wire::HelperProgram action;     ///< `mirvel-action`
  };

  /// Everything that the setup refers to must outlive the agent, and so must the loop and the queue.
  Agent(const Setup& setup, AgentLock lock, host::PollLoop& loop, PollQueue& queue, Notifier& notifier);
  ~Agent();

  /// Begins to watch. Then, with the first tasks of the queue, compares the folders with what is known. To be called
  /// once.
  void begin();
  /// Whether the agent has to end: because of a signal, because its session, its machine or its lock is gone, or
  /// because another agent waits and this one has lost its desktop. What is being sent is completed first, for two
  /// seconds at most, so that it isn't told again.
  bool shallEnd() const { return m_shallEnd && (!m_sender.isSending() || m_isLate); }
  /// How long the loop may wait, in milliseconds, besides for tasks; -1: without limit. Only where changes of files
  /// can't be waited for is there a limit.
  int timeout() const;
  /// To be called after each turn of the loop.
  void settle();

 private:
  void watchSurroundings();
  void takeSignals();
  void checkSurroundings();
  void end();
  void takeFolders();
  void scan();
  void scanAgain(const std::set<Kind::Case>& kinds, double seconds);
  void reportsChanged();
  void readReports();
  std::string lastLineOf(const FailureSeries::Event& event) const;
  void tell(const Notice& notice);

  const Setup m_setup;
  AgentLock m_lock;
  host::PollLoop& m_loop;
  Notifier& m_notifier;
  Signals m_signals{SIGCHLD, SIGTERM, SIGINT, SIGHUP};
  const host::Session m_session;
  StoreTroubles m_troubles;
  Exceptions m_exceptions;
  AgentMemory m_memory;
  EmbeddedList m_embeddedList;
  JobInventory m_inventory;
  Announcements m_announcements;
  AgentActions m_actions;
  NoticeSender m_sender;
  ReportFolder m_reports;
  JobFolderWatch m_folders;
  std::unique_ptr<host::PathWatch> m_surroundings = host::makePathWatch();  ///< reports, lock, session, machine
  std::set<Kind::Case> m_changed;                                           ///< kinds whose folders are to be scanned
  int m_postponed = 0;        ///< how often the scan was put off because of further changes
  std::uint64_t m_scans = 0;  ///< counts plans of a scan; earlier ones are void
  bool m_shallEnd = false;
  bool m_isLate = false;
  Delay m_delay;
};

}  // namespace mirvel::agent
