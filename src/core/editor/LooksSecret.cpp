#include "core/editor/LooksSecret.h"

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include "core/text/Ascii.h"

namespace mirvel {

namespace {

/// Also at the end of a longer word, as in "PGPASSWORD".
constexpr std::array<std::string_view, 9> secrets = {"password",   "passwd", "passphrase", "passcode",  "secret",
                                                     "credential", "token",  "apikey",     "privatekey"};
/// What a key opens, or is for.
constexpr std::array<std::string_view, 8> keys = {"api",        "private", "access", "auth",
                                                  "encryption", "signing", "master", "account"};

/// The words in lower case: "dbPassword" → db, password.
std::vector<std::string> wordsOf(std::string_view name) {
  std::vector<std::string> words(1);
  bool wasLower = false;
  for (const char character : name) {
    const bool isLower = Ascii::isLetter(character) && Ascii::lower(character) == character;
    const bool isUpper = Ascii::isLetter(character) && !isLower;
    if ((isUpper && wasLower) || (!isUpper && !isLower)) words.emplace_back();
    if (isUpper || isLower) words.back() += Ascii::lower(character);
    wasLower = isLower;
  }
  std::erase(words, std::string());
  return words;
}

std::string_view singular(std::string_view word) {
  return word.ends_with('s') ? word.substr(0, word.size() - 1) : word;
}

}  // namespace

bool looksSecret(std::string_view name) {
  std::string previous;
  for (std::string& word : wordsOf(name)) {
    const auto isEnd = [&](std::string_view secret) { return singular(word).ends_with(secret); };
    if (std::any_of(secrets.begin(), secrets.end(), isEnd)) return true;
    if (singular(word) == "key" && std::find(keys.begin(), keys.end(), previous) != keys.end()) return true;
    previous = std::move(word);
  }
  return false;
}

}  // namespace mirvel
