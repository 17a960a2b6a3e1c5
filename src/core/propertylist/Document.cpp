#include "core/propertylist/Document.h"

#include "core/base/Error.h"

namespace mirvel::propertylist {

std::string Warning::text() const {
  return Error{.code = Error::Code::Malformed, .message = message, .line = line, .column = column, .offset = offset}
      .text();
}

}  // namespace mirvel::propertylist
