#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace Kesh::Configuration {

/// Each answers the text of a settings file with one thing added, all else in it left as it is, comments
/// included; an empty text stands for a file that is not there yet. Throws Base::CWorkError like
/// ParseConfiguration() when the text is no valid settings file.

/// `list` is "tags", "attributes" or "properties".
std::string WithOwnName(std::string_view text, const std::string& list, const std::wstring& name);
std::string WithCodeOff(std::string_view text, std::int32_t code);

/// Has the text of a settings file, an empty one when there is no file, changed, and writes it back. A link
/// out of its folder is not followed. Throws Base::CWorkError with a text that does not name the path.
void ChangeSettings(const std::wstring& file,
                    const std::function<std::string(const std::string& text)>& change);

} // namespace Kesh::Configuration
