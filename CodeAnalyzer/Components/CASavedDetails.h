#pragma once

#include "Components/CASavedErrorsText.h"

#include <string>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// The text that keeps what is known of errors beyond their records. It stands beside the text of the records
/// and refers to them, since that text has a form of its own. Fixes are left out: a project may be a
/// stranger's, and nobody may offer edits that no checker has made; the next check brings them.
std::wstring WriteSavedDetails(const std::vector<SSavedFileErrors>& files);

/// Gives the records of `files` the details that such a text has for them. A record that it does not know
/// stays without, as all do when the text cannot be read.
void ReadSavedDetails(const std::wstring& text, std::vector<SSavedFileErrors>& files);

} // namespace Kesh::CodeAnalyzer
