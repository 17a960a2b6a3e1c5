#include "helpers/hostdata/LoadedJobs.h"

#include <utility>

namespace mirvel {

namespace {

constexpr const char* loadedKey = "Loaded";

Result<std::vector<std::filesystem::path>> pathsIn(const propertylist::Dictionary& dictionary) {
  std::vector<std::filesystem::path> result;
  if (dictionary.size() == 0) return result;
  const auto* const paths = dictionary.get<propertylist::Array>(loadedKey);
  const Error noList{.code = Error::Code::WrongType, .message = "it isn't a list of jobs"};
  if (!paths) return noList;
  for (const propertylist::Value& path : *paths) {
    const auto* const text = path.as<std::string>();
    if (!text) return noList;
    result.emplace_back(*text);
  }
  return result;
}

}  // namespace

LoadedJobs::LoadedJobs(std::filesystem::path file) : m_file(std::move(file)), m_store(m_file, &m_troubles) {
  m_troubles.setListener([this](const StoreTrouble& trouble) {
    if (trouble.kind != StoreTrouble::Kind::Damaged) return;  // the failed call returns that error itself
    m_damage = trouble.error;
    m_damage->message += "; it is kept as " + trouble.rescue.string();
  });
}

Result<std::vector<std::filesystem::path>> LoadedJobs::read() {
  m_damage.reset();
  auto known = m_store.refresh();
  const auto paths = pathsIn(m_store.contents());
  if (!paths) {
    if (const auto isAside = m_store.setAside(paths.error()); !isAside) known = isAside.error();
  }
  m_mayWrite = static_cast<bool>(known);
  if (!known) return known.error();
  return m_damage ? *m_damage : paths;
}

Result<void> LoadedJobs::write(const std::vector<std::filesystem::path>& files) {
  if (!m_mayWrite) {
    return Error{
        .code = Error::Code::Io, .message = "it couldn't be read, so it isn't overwritten", .file = m_file.string()};
  }
  propertylist::Array paths;
  for (const auto& file : files) paths.emplace_back(file.string());
  return m_store.set(loadedKey, std::move(paths));
}

}  // namespace mirvel
