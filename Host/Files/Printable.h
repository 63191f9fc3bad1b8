#pragma once

#include <string>
#include <string_view>

namespace Kesh::Host {

/// UTF-8 for people: control characters become escapes such as \n and \x1B, bytes that are not UTF-8 \xFF,
/// and what would turn round the text beside it \u{202E}. For every text that holds bytes of a project, where
/// it is printed. Any thread.
std::string Printable(std::wstring_view text);
/// The same of UTF-8, or of what should be.
std::string PrintableBytes(std::string_view text);

} // namespace Kesh::Host
