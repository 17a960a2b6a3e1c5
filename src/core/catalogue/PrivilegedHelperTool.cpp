#include "core/catalogue/PrivilegedHelperTool.h"

#include "core/base/Const.h"
#include "core/catalogue/HelperToolLines.h"
#include "core/text/Bytes.h"
#include "core/text/Strings.h"

namespace mirvel {

std::shared_ptr<PrivilegedHelperTool> PrivilegedHelperTool::read(const URL& url, const EmbeddedList& embeddedList,
                                                                 bool showInternalHelpers) {
  const std::string fileName = url.lastPathComponent();
  if (fileName.starts_with(Const::excludePrefix) && !showInternalHelpers) return nullptr;
  std::string list = embeddedList.text(url.path());
  HelperToolLines lines = HelperToolLines::read(list);
  // Our own tools are recognised by their file name above and not by this name, so that no other tool can hide itself.
  const std::string name = String::readableText(lines.name.empty() ? fileName : lines.name);
  const std::string& path = url.text();
  if (name.empty() || path.empty()) return nullptr;

  std::shared_ptr<PrivilegedHelperTool> job(
      new PrivilegedHelperTool(Kind::privilegedHelperTool, name, name, toBase64(path), url));
  job->textContent = lines.identifier + lines.clients + path;
  job->identifier = std::move(lines.identifier);
  job->clients = std::move(lines.clients);
  job->list = std::move(list);
  job->icon = Image::iconOfPath(path);
  return job;
}

}  // namespace mirvel
