#include "Check.h"
#include "core/documents/ReadText.h"
#include "core/documents/TextForm.h"
#include "core/propertylist/Encoding.h"

using namespace mirvel;

namespace {

/// Saving what hasn't been changed gives the same bytes.
void checkSameBytes(const DecodedText& read, std::string_view bytes) {
  const auto again = encode(read.text, read.encoding);
  FUZZ_CHECK(again && !again->firstUnencodable && again->bytes == bytes);
}

/// Whatever is encoded can be read again.
void checkEncoding(const std::string& text, const TextEncoding& encoding) {
  const auto encoded = encode(text, encoding);
  FUZZ_CHECK(encoded);
  if (encoded->firstUnencodable) return;
  const auto decoded = decode(encoded->bytes, encoding);
  FUZZ_CHECK(decoded && *decoded == text);
}

}  // namespace

/// The first line is the extended attribute, the rest is the file. Reads it as a script whose encoding is to be found,
/// and in an encoding that the user has chosen.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string_view attribute = input.substr(0, input.find('\n'));
  const std::string bytes(input.substr(std::min(attribute.size() + 1, input.size())));
  const auto known = knownEncodings();
  const std::size_t chosen = size % known.size();

  const auto read = readText(bytes, attribute, "en_US");
  if (read && read->isExact) checkSameBytes(*read, bytes);
  if (read && !read->isExact) FUZZ_CHECK(read->text == bytes);
  const auto wanted = readTextAs(bytes, known[chosen].name);
  if (wanted && wanted->isExact) checkSameBytes(*wanted, bytes);
  if (!read || !propertylist::isUtf8(read->text)) return 0;

  checkEncoding(read->text, {.name = known[chosen].name});
  const TextForm form = TextForm::of(read->text);
  FUZZ_CHECK(form.lineEnd == LineEnd::Mixed || withLineEnds(read->text, form.lineEnd) == read->text);
  for (const LineEnd lineEnd : {LineEnd::Unix, LineEnd::Windows, LineEnd::Mac}) {
    const std::string changed = withLineEnds(read->text, lineEnd);
    FUZZ_CHECK(withLineEnds(changed, LineEnd::Unix) == withLineEnds(read->text, LineEnd::Unix));
    FUZZ_CHECK(TextForm::of(changed).lineEnd == lineEnd || changed == read->text);
  }
  return 0;
}
