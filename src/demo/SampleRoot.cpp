#include "demo/SampleRoot.h"

#include <QDirIterator>
#include <QFile>
#include <algorithm>
#include <array>
#include <cassert>
#include <cerrno>
#include <chrono>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

#include "core/files/ReplaceFile.h"
#include "core/process/UserEntry.h"
#include "core/propertylist/Encoding.h"
#include "demo/HelperToolFile.h"
#include "demo/SampleRuns.h"
#include "demo/SampleText.h"

/// The resources of a static library are linked only if this macro refers to them. It must be used outside of
/// namespaces.
static void loadSamples() {
  Q_INIT_RESOURCE(demo);
}

namespace mirvel::demo {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view home = "home";
constexpr std::string_view userLibrary = "home/.config/mirvel";
constexpr std::string_view ownAutostart = "home/.config/autostart";
constexpr std::string_view localLibrary = "etc/mirvel";
constexpr std::string_view systemLibrary = "usr/lib/mirvel";
constexpr std::string_view installedAutostart = "etc/xdg/autostart";
constexpr std::string_view applications = "Applications";

/// Where the files of a sample folder are written.
struct SampleFolder {
  std::string_view samples;
  std::string_view folder;
};

constexpr std::array<SampleFolder, 7> places{{
    {"home", home},
    {"user", userLibrary},
    {"local", localLibrary},
    {"system", systemLibrary},
    {"autostart/own", ownAutostart},
    {"autostart/installed", installedAutostart},
    {"applications", "usr/share/applications"},
}};

struct Sample {
  fs::path file;  ///< relative to the root
  std::string bytes;
};

Error errorOf(const std::error_code& code, const std::string& doing, const fs::path& path) {
  return systemError(code.value(), doing, path.string());
}

bool isRepresentable(const std::string& path) {
  const auto isControl = [](char character) { return (character >= 0 && character < ' ') || character == '\x7f'; };
  return propertylist::isUtf8(path) && std::none_of(path.begin(), path.end(), isControl);
}

Result<void> makeFolder(const fs::path& folder) {
  std::error_code code;
  fs::create_directories(folder, code);
  if (code) return errorOf(code, "create", folder);
  return {};
}

/// Creates the folder if necessary, and fails unless it is empty.
Result<void> claim(const fs::path& folder) {
  if (!isRepresentable(folder.string())) {
    return Error{Error::Code::BadArgument, "the folder's name can't be written in a job file", folder.string()};
  }
  auto made = makeFolder(folder);
  if (!made) return made;
  std::error_code code;
  const bool isEmpty = fs::is_empty(folder, code);
  if (code) return errorOf(code, "read", folder);
  if (!isEmpty) return Error{Error::Code::BadArgument, "the folder isn't empty", folder.string()};
  return {};
}

std::vector<Sample> samplesOf(const SampleFolder& place) {
  const std::string top = ":/demo/" + std::string(place.samples);
  std::vector<Sample> samples;
  QDirIterator files(QString::fromStdString(top), QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
  while (files.hasNext()) {
    QFile file(files.next());
    // The resources are part of the program, so reading them can't fail.
    [[maybe_unused]] const bool isOpen = file.open(QIODevice::ReadOnly);
    assert(isOpen);
    const fs::path below = fs::path(file.fileName().toStdString()).lexically_relative(top);
    samples.push_back({fs::path(place.folder) / below, file.readAll().toStdString()});
  }
  return samples;
}

bool isHelperTool(const Sample& sample) {
  return sample.file.parent_path().filename() == "PrivilegedHelperTools";
}

/// Turns the property list of a helper tool into the tool itself.
Sample finished(Sample sample, const SampleNames& names) {
  sample.bytes = filledIn(sample.bytes, sample.file, names);
  if (isHelperTool(sample)) {
    sample.bytes = helperToolFile(sample.bytes);
    sample.file.replace_extension();
  }
  return sample;
}

bool isProgram(const Sample& sample) {
  return sample.bytes.starts_with("#!") || isHelperTool(sample);
}

fs::perms permissionsOf(const Sample& sample) {
  return static_cast<fs::perms>(isProgram(sample) ? 0755 : 0644);
}

Result<void> writeFile(const fs::path& path, std::string_view bytes) {
  errno = 0;
  std::ofstream file(path, std::ios::binary);
  file.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
  file.close();
  if (file) return {};
  return systemError(errno != 0 ? errno : EIO, "write", path.string());
}

Result<void> write(const Sample& sample, const fs::path& root) {
  const fs::path path = root / sample.file;
  if (auto made = makeFolder(path.parent_path()); !made) return made;
  if (auto written = writeFile(path, sample.bytes); !written) return written;
  std::error_code code;
  fs::permissions(path, permissionsOf(sample), code);
  if (code) return errorOf(code, "set the permissions of", path);
  return {};
}

}  // namespace

Result<SampleRoot> SampleRoot::create(const fs::path& folder) {
  loadSamples();
  std::error_code code;
  const fs::path root = (fs::absolute(folder, code) / "").lexically_normal().parent_path();
  if (code) return errorOf(code, "find", folder);
  if (auto claimed = claim(root); !claimed) return claimed.error();

  const SampleNames names{.home = (root / home).string(), .root = root.string(), .user = loginName()};
  for (const SampleFolder& place : places) {
    for (Sample& sample : samplesOf(place)) {
      if (auto written = write(finished(std::move(sample), names), root); !written) return written.error();
    }
  }
  if (auto folderMade = makeFolder(root / applications); !folderMade) return folderMade.error();
  SampleRoot made(root);
  const auto now = std::chrono::floor<std::chrono::seconds>(std::chrono::system_clock::now());
  if (auto written = writeSampleRuns(made.roots(), now); !written) return written.error();
  if (auto played = made.playHosts(); !played) return played.error();
  return made;
}

Result<void> SampleRoot::playHosts() {
  for (const fs::path& reports : {roots().ownReports(), roots().publicReports}) {
    if (HostMark::in(reports) == HostMark::State::Held) continue;
    auto mark = HostMark::set(reports, privateFile);
    if (!mark) return mark.error();
    m_hostMarks[reports] = *std::move(mark);
  }
  return {};
}

Roots SampleRoot::roots() const {
  Roots roots = Roots::below(m_folder);
  roots.localApplications = m_folder / applications;
  return roots;
}

}  // namespace mirvel::demo
