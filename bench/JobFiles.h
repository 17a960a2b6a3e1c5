#pragma once

#include <string>
#include <vector>

/// Job files for measurements, in three forms. Each set contains only files that both our reader and libplist can read.
namespace mirvel::bench {

struct JobFiles {
  std::vector<std::string> xml;     ///< as published or generated
  std::vector<std::string> binary;  ///< the same lists, written by our writer

  std::size_t xmlBytes() const;
  std::size_t binaryBytes() const;
};

/// The published files; empty if they are missing.
const JobFiles& corpus();
/// 10 000 job files of various kinds, identical in every run.
const JobFiles& generated();

}  // namespace mirvel::bench
