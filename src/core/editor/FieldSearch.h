#pragma once

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "core/editor/Fields.h"

namespace mirvel {

/// A search for keys in the editor, by their names and the words that users have for them. Ignores case and accents.
/// `localize` must outlive it.
class FieldSearch {
 public:
  /// A text without words matches everything.
  FieldSearch(std::string_view text, const Localize& localize);

  bool isEmpty() const { return m_words.empty(); }
  /// Whether each word is part of one of the texts.
  bool matches(std::initializer_list<std::string_view> texts) const;
  /// Whether each word is part of the key, the title or the keywords of the field.
  bool matches(const Field& field) const;
  /// Whether any control of a section matches. Deprecated keys have none.
  bool matchesAnyOf(StackSection section) const;

 private:
  const Localize* m_localize;
  std::vector<std::string> m_words;  ///< folded
};

/// The record as it was read; blank for a job without a file, of which everything counts as edited.
jobfile::Plist readRecord(const jobfile::Plist& plist);
/// Whether the field has another value than in the file, or unfinished input. `read` is the `readRecord` of the plist.
bool isEdited(const Field& field, const jobfile::Plist& plist, const jobfile::Plist& read,
              const Unfinished& unfinished);
/// Whether anything in the section differs from the file.
bool isEdited(StackSection section, const jobfile::Plist& plist, const jobfile::Plist& read,
              const Unfinished& unfinished);

}  // namespace mirvel
