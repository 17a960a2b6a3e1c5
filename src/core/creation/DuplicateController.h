#pragma once

#include <string>

namespace mirvel {

struct CreationContext;

/// The sheet that copies the selected job under another name. For the main thread.
class DuplicateController {
 public:
  /// The context outlives it.
  explicit DuplicateController(const CreationContext& context) : m_context(context) {}

  /// "Duplicate – backup".
  std::string title() const;
  std::string nameTitle() const;
  /// What the field shows at first, all of it selected; after a copy of the same job that couldn't be saved, its name.
  std::string suggestedName() const;

  /// Saves the copy as a new job of the same kind. Tells the user if it can't. True: the sheet is to be dismissed.
  bool save(const std::string& name);

 private:
  std::string selectedName() const;

  const CreationContext& m_context;
};

}  // namespace mirvel
