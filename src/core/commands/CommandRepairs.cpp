#include "core/commands/CommandRepairs.h"

#include <algorithm>
#include <array>

#include "core/commands/FileCommand.h"
#include "core/files/ReplaceFile.h"
#include "core/text/Ascii.h"
#include "core/text/Strings.h"
#include "core/text/Text.h"

namespace mirvel {

namespace fs = std::filesystem;

namespace {

constexpr std::array<std::string_view, 6> toolsInUsrBin{"osascript", "automator", "perl", "php", "python", "ruby"};
constexpr std::array<std::string_view, 3> toolsInBin{"sh", "bash", "zsh"};

template <typename List>
bool holds(const List& list, std::string_view element) {
  return std::find(list.begin(), list.end(), element) != list.end();
}

bool contains(std::string_view text, std::string_view part) {
  return text.find(part) != std::string_view::npos;
}

std::string withoutQuotes(std::string word) {
  word.erase(std::remove_if(word.begin(), word.end(), [](char c) { return c == '"' || c == '\''; }), word.end());
  return word;
}

bool isPathOrQuoted(std::string_view text) {
  return contains("/\"'.", text.substr(0, 1));
}

/// The first operator of the shell that isn't quoted. Quoted ones mean the same with a shell and without it.
std::optional<std::string> shellOperator(std::string_view run) {
  constexpr std::array<std::string_view, 6> operators{">", " exec ", "|", "<", ";", "\u2019"};
  const std::string text = ' ' + Text::unquotedPart(run);
  std::size_t first = std::string::npos;
  std::string_view found;
  for (const std::string_view candidate : operators) {
    const std::size_t at = text.find(candidate);
    if (at >= first) continue;
    first = at;
    found = candidate;
  }
  if (found.empty()) return std::nullopt;
  return std::string(String::trim(found));
}

/// Quotes for a shell, always with single quotes. A single quote in the path is written as an escaped one between two
/// quoted parts.
std::string singleQuoted(const std::string& path) {
  std::string result = "'";
  for (const char c : path) {
    if (c == '\'') {
      result += "'\\''";
    } else {
      result += c;
    }
  }
  return result + '\'';
}

}  // namespace

CommandRepairs::CommandRepairs(const Defaults& defaults, const Commands& commands, Interface& interface,
                               ProcessRunner& processes, const Localize& localize, fs::path homeFolder)
    : m_defaults(defaults),
      m_commands(commands),
      m_interface(interface),
      m_processes(processes),
      m_localize(localize),
      m_homeFolder(std::move(homeFolder)) {}

std::optional<std::string> CommandRepairs::commandForFile(const fs::path& file) const {
  if (!m_defaults.automaticHelp()) return std::nullopt;
  if (const auto words = desktopCommand(file)) return commandOfEntry(*words);
  return fileCommand(file, m_commands);
}

/// If the entry has only the name of its program, it is looked up. If it isn't found, the repairs before a save try
/// again.
std::string CommandRepairs::commandOfEntry(const std::vector<std::string>& words) const {
  const std::string& program = words.front();
  const auto directory = program.starts_with('/') ? std::nullopt : lookUp(program);
  const std::string path = directory.value_or("") + program;
  std::string command = path.starts_with('/') ? String::quote(path) : String::shellWord(path);
  for (auto word = words.begin() + 1; word != words.end(); ++word) command += ' ' + String::shellWord(*word);
  return command;
}

std::string CommandRepairs::repairCommand(const std::string& text) const {
  if (!m_defaults.automaticHelp() || String::characterCount(text) <= 2 || isPathOrQuoted(text)) return text;
  const auto blank = text.find(' ');
  const auto directory = directoryFor(text.substr(0, blank));
  if (!directory) return text;
  if (!text.starts_with('~') && !text.starts_with("$HOME")) {
    return directory->ends_with('/') ? *directory + text : text;  // otherwise which(1) has found another tool
  }
  // which(1) has expanded the word as a whole, so its answer replaces the word.
  if (Text::separateCommand(text).size() < 2) return *directory;
  return *directory + text.substr(std::min(blank, text.size()));
}

std::optional<std::string> CommandRepairs::directoryFor(const std::string& word) const {
  if (holds(toolsInUsrBin, word)) return "/usr/bin/";
  if (holds(toolsInBin, word)) return "/bin/";
  return lookUp(withoutQuotes(word));
}

std::optional<std::string> CommandRepairs::lookUp(const std::string& word) const {
  if (word.empty()) return std::nullopt;
  const auto found = m_processes.run(m_commands.which, {word});
  if (!found) return std::nullopt;
  const std::string lower = Ascii::lower(found->output);
  for (const char* complaint : {"syntax error", "illegal option", "usage:"}) {
    if (contains(lower, complaint)) return std::nullopt;
  }
  std::string directory = found->output.substr(0, found->output.find_first_of("\r\n"));
  if (directory.ends_with(word)) directory.resize(directory.size() - word.size());
  // Some shells answer with a sentence, such as "aliased to ...", or a relative path, which launchd can't use.
  if (!directory.starts_with('/')) return std::nullopt;
  return directory;
}

std::string CommandRepairs::expandTilde(const std::string& text) const {
  if (!m_defaults.automaticHelp()) return text;
  std::string result;
  for (std::size_t at = 0; at < text.size(); ++at) {
    const bool isHome = at == 0 || text[at - 1] == ' ' || (at + 1 < text.size() && text[at + 1] == '/');
    if (text[at] == '~' && isHome) {
      result += m_homeFolder.string();
    } else {
      result += text[at];
    }
  }
  return result;
}

std::string CommandRepairs::stripSudo(const std::string& run) const {
  if (!m_defaults.automaticHelp() || String::characterCount(run) < 6) return run;
  const std::string lower = Ascii::lower(run);
  for (const std::string_view sudo : {"sudo ", "/usr/bin/sudo "}) {
    if (lower.starts_with(sudo) && !std::string_view(lower).substr(sudo.size()).starts_with('-')) {
      return run.substr(sudo.size());
    }
  }
  return run;
}

std::optional<std::string> CommandRepairs::checkComplexCommand(const std::string& run, const std::string& name) {
  if (String::characterCount(run) <= 5 || m_defaults.suppressAlertComplexRun()) return run;
  const auto found = shellOperator(run);
  if (!found) return run;
  const Alert question{
      .message = m_localize.format(
          "Your command might be too complex to run. Do you want to run it as a shell script instead?", {}),
      .informativeText = m_localize.theCommandRunsWithoutAShell(*found),
      .defaultTitle = m_localize.format("Run Shell Script", {}),
      .alternateTitle = m_localize.format("Continue Anyway", {}),
      .otherTitle = m_localize.cancel(),
      .suppression = std::string(Defaults::Key::suppressAlertComplexRun),
  };
  const int answer = m_interface.alert(question);
  if (answer == Interface::defaultButton) {
    auto script = asShellScript(run, name);
    if (!script) m_interface.askAgain(question);
    return script;
  }
  return answer == Interface::alternateButton ? std::optional(run) : std::nullopt;
}

std::optional<std::string> CommandRepairs::asShellScript(const std::string& run, const std::string& name) {
  const auto path = m_interface.savePanel({.folder = m_homeFolder, .name = name, .allowedType = "sh"});
  if (!path) return std::nullopt;
  if (const auto written = replaceFile(*path, "#!/bin/sh\n\n" + run); !written) {
    m_interface.present(written.error());
    return std::nullopt;
  }
  return "/bin/sh " + singleQuoted(path->string());
}

std::vector<fs::path> CommandRepairs::fileArguments(const std::string& run) const {
  std::vector<fs::path> files;
  for (const auto& argument : Text::separateCommand(expandTilde(run))) {
    if (argument.starts_with('/')) files.emplace_back(argument);
  }
  return files;
}

}  // namespace mirvel
