#pragma once

#include <string_view>

namespace mirvel::propertylist {

/// How the macOS writer begins a list. Nearly every list that there is has the same declaration.
constexpr std::string_view xmlDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
constexpr std::string_view xmlDoctype =
    "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" \"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n";

}  // namespace mirvel::propertylist
