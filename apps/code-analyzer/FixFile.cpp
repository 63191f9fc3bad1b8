#include "FixFile.h"

#include "Editor/TextFile.h"
#include "Files/FileIO.h"
#include "Files/FilePath.h"
#include "Findings/MendText.h"
#include "SyntaxParser/SourceText.h"
#include "UnifiedDiff.h"

#include <filesystem>

namespace Kesh::CommandLine {

namespace {

/// For one file: some hundred fixes, more of them where most do.
constexpr Findings::SProofBudget Budget{500, std::size_t{64} << 20};

/// Why a file is not to be written; empty: it may be.
const char* WhyNotWritten(const SyntaxParser::SSourceFormat& format)
{
    if (!format.valid)
        return "not fixed: some of its bytes are not valid, and writing it would change them";
    if (format.mixedLineEnds)
        return "not fixed: its lines end in different ways, and writing it would change them";
    return "";
}

} // namespace

SFixedFile FixFile(Findings::CTextCheck& check, const SInput& input, const std::wstring& factory,
                   const Findings::SRules& rules, bool onlyDiff)
{
    SFixedFile result;
    const std::wstring absolute = input.Absolute();
    // What a link of a folder leads to is fixed by its own name.
    std::error_code ignored;
    if (!input.named && std::filesystem::is_symlink(Host::PathToBytes(absolute), ignored))
        return result;
    const Host::SFileStamp stamp = Host::StampOf(absolute);
    const std::string bytes = Host::ReadFileBytes(absolute);
    if (SyntaxParser::HoldsNoSource(bytes))
        return result;
    SyntaxParser::SSourceFormat format;
    const std::wstring text = SyntaxParser::DecodeSource(bytes, format);
    const Findings::SMended mended =
        Findings::MendText(check, {input.shown, absolute, {}, true, false}, factory, text, rules, Budget);
    if (!mended.isAll)
        result.note = "more might be fixed than was tried";
    if (mended.fixed == 0)
        return result;
    if (onlyDiff) {
        result.diff = UnifiedDiff(Host::PathToBytes(input.shown), Host::PathToBytes(text),
                                  Host::PathToBytes(mended.text));
        result.fixed = mended.fixed;
        return result;
    }
    result.note = WhyNotWritten(format);
    if (result.note.empty() && !(Host::StampOf(absolute) == stamp))
        result.note = "not fixed: another program has changed it meanwhile";
    try {
        if (result.note.empty())
            Host::WriteFileBytes(absolute, Editor::EncodeSource(mended.text, format));
    } catch (const Base::CWorkError& fault) {
        result.note = std::string("not fixed: ") + fault.what();
    }
    result.failed = !result.note.empty();
    result.fixed = result.failed ? 0 : mended.fixed;
    if (!result.failed && !mended.isAll)
        result.note = "more might be fixed than was tried";
    return result;
}

} // namespace Kesh::CommandLine
