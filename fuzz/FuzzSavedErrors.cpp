// Any text where saved errors are expected: it is read or left alone, as the queries would that the reader
// stands for, and what is read comes back when written.

#include "Base/CommonString.h"
#include "Components/CASavedErrorsText.h"
#include "Require.h"
#include "SyntaxParser/SourceText.h"
#include "XML/XmlXPathParser.h"

#include <QCoreApplication>
#include <cstdint>
#include <string_view>

using namespace Kesh;

namespace {

void RequireAsQueried(const std::wstring& text, const std::set<std::wstring>& files,
                      const std::vector<CodeAnalyzer::SSavedFileErrors>& read)
{
    // The queries look for one.
    static int argc = 1;
    static char name[] = "fuzz_saved_errors";
    static char* argv[] = {name, nullptr};
    static const QCoreApplication application(argc, argv);
    std::size_t next = 0;
    XML::CXmlXPathParser errors(text);
    if (errors.GetString(L"/errors/@version") == L"5.3")
        for (const std::wstring& element : errors.GetElements(L"/errors/errfile")) {
            XML::CXmlXPathParser errfile(element);
            const std::wstring name = errfile.GetString(L"/errfile/@name");
            if (!files.contains(Base::CCommonString::LowerCaseFast(name)))
                continue;
            Require(next < read.size() && read[next].file == name &&
                    read[next].errors.size() == errfile.GetElements(L"/errfile/error").size());
            ++next;
        }
    Require(next == read.size());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::wstring text =
        SyntaxParser::DecodeSource(std::string_view(reinterpret_cast<const char*>(data), size));
    const std::set<std::wstring> files{L"/a.php", L"/b.php"};
    const auto read = CodeAnalyzer::ReadSavedErrors(text, files);
    if (size < 2000) // queries take their time
        RequireAsQueried(text, files, read);
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
