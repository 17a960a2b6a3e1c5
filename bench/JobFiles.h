#pragma once

#include <string>
#include <vector>

/// Job files to measure with. Each set holds only what both our reader and libplist read, in three forms.
namespace mirvel::bench {

struct JobFiles {
  std::vector<std::string> xml;     ///< as published, or as generated
  std::vector<std::string> binary;  ///< the same lists, as our writer gives them

  std::size_t xmlBytes() const;
  std::size_t binaryBytes() const;
};

/// The published files; empty where they are missing.
const JobFiles& corpus();
/// 10 000 job files of all sorts, the same in every run.
const JobFiles& generated();

}  // namespace mirvel::bench
