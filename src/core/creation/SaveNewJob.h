#pragma once

#include <functional>
#include <memory>

#include "core/propertylist/Value.h"

namespace mirvel {

class Job;
class Kind;
class Launchd;
class URL;
struct CreationContext;

/// The new job of that content, to be saved by `saveNewJob`. Null if the content is no job's, or that of an internal
/// helper that isn't shown. It gets a URL of its own when it is saved.
std::shared_ptr<Launchd> makeNewJob(const CreationContext& context, const propertylist::Dictionary& content,
                                    const URL& url, Kind kind);

/// Has the job written to a file of its own and loaded, and shows it as the selected one, unless it is known at once
/// that it can't be written. `ended` hears, now or later, whether the file was written.
void saveNewJob(const CreationContext& context, const std::shared_ptr<Launchd>& job,
                const std::function<void(bool isWritten)>& ended = {});

}  // namespace mirvel
