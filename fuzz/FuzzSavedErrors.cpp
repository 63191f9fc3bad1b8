// Any text where saved errors are expected: it is read or left alone, and what is read comes back when
// written.

#include "Components/CASavedErrors.h"
#include "Require.h"
#include "SyntaxParser/SourceText.h"

#include <cstdint>
#include <string_view>

using namespace Kesh;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::wstring text =
        SyntaxParser::DecodeSource(std::string_view(reinterpret_cast<const char*>(data), size));
    const std::set<std::wstring> files{L"/a.php", L"/b.php"};
    const auto read = CodeAnalyzer::ReadSavedErrors(text, files);
    for (const auto& file : read)
        Require(file.file.size() == 6);
    return 0;
}
