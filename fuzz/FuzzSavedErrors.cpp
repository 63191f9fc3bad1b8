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
    const auto again = CodeAnalyzer::ReadSavedErrors(CodeAnalyzer::WriteSavedErrors(read), files);
    Require(again.size() == read.size());
    for (std::size_t i = 0; i < read.size(); ++i) {
        Require(again[i].file == read[i].file && again[i].errors.size() == read[i].errors.size());
        for (std::size_t j = 0; j < read[i].errors.size(); ++j)
            Require(again[i].errors[j].code == read[i].errors[j].code &&
                    again[i].errors[j].type == read[i].errors[j].type &&
                    again[i].errors[j].pos == read[i].errors[j].pos);
    }
    return 0;
}
