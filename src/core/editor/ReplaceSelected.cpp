#include "core/editor/ReplaceSelected.h"

#include "core/locale/Localize.h"
#include "core/ports/Interface.h"
#include "core/propertylist/Writer.h"
#include "core/session/Editing.h"

namespace mirvel {

bool replaceSelected(Editing& editing, Interface& interface, const Localize& localize,
                     const propertylist::Dictionary& dictionary) {
  const auto text = propertylist::writeXml(dictionary);
  if (text && editing.replaceRecord(*text)) return true;
  interface.error(localize.anUnknownErrorOccurred(), localize.pleaseTryAgain());
  return false;
}

}  // namespace mirvel
