#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace mirvel {

/// The address of a job for other programs, as a URL of the program's scheme: the path of the job's file in base64, in
/// place of the host, and what to show of the job as the fragment. Any bytes are allowed in the path. Examples: `"/a"`
/// is `"mirvel://L2E="`, its log `"mirvel://L2E=#log"`.
struct JobAddress {
  enum class Part {
    Job,
    Log,
    Disable,  ///< the question whether to disable the job
  };

  std::string path;
  Part part = Part::Job;

  /// Null for any other text. What browsers and launchers add to a URL is ignored; an unknown fragment means the job.
  static std::optional<JobAddress> read(std::string_view url);
  std::string url() const;

  bool operator==(const JobAddress&) const = default;
};

}  // namespace mirvel
