#include "CheckPhp.h"

#include "Parsers/PhpSyntaxParser.h"
#include "SPBase/reader.h"
#include "SyntaxParser/SPDocument.h"
#include "SyntaxParser/SourceText.h"

#include <boost/make_shared.hpp>

namespace Kesh::Tests {

using CodeAnalyzer::SCAError;

namespace {

constexpr const wchar_t* File = L"/checked.php";

std::string Describe(const SCAError& error, std::int64_t firstLineShift)
{
    const auto position = [firstLineShift](const SyntaxParser::CIterator& p) {
        return std::to_string(p.y) + ":" + std::to_string(p.y == 0 ? p.x - firstLineShift : p.x);
    };
    return (error.type == CodeAnalyzer::SeverityError ? "" : "w") + std::to_string(error.code) + " " +
           position(error.pos.start) + "-" + position(error.pos.end);
}

} // namespace

CPhpCheck::CPhpCheck()
{
    m_manager.Init(&m_application, &m_bar, QIcon());
}

std::vector<SCAError> CPhpCheck::ErrorsAfter(const std::vector<std::string_view>& earlier,
                                             std::string_view text)
{
    auto reader = boost::make_shared<SyntaxParser::CSimpleReader>();
    const auto document = SyntaxParser::MakeSPDocument(reader, {File, L"PHPSPDocFactory"});
    CodeAnalyzer::CPhpSyntaxParser parser(document->GetDefRegions(), &m_manager);
    parser.SteFileName(File);
    parser.InitParser(document);
    parser.FollowGrammar(*document, &m_grammarCheck);
    const auto pass = [&](std::string_view state) {
        reader->SetString(SyntaxParser::DecodeSource(state));
        document->Parse(true);
        m_manager.DeliverPosted();
        std::vector<SCAError> errors;
        m_manager.GetErrors(File, errors);
        m_manager.RemoveErrors(File);
        return errors;
    };
    for (std::string_view state : earlier)
        pass(state);
    return pass(text);
}

std::string CPhpCheck::CheckAfter(const std::vector<std::string_view>& earlier, std::string_view text)
{
    constexpr std::string_view tag = "<?php ";
    const bool tagged = text.find("<?") != std::string_view::npos;
    std::string result;
    const std::string whole = std::string(tagged ? std::string_view() : tag) + std::string(text);
    for (const SCAError& error : ErrorsAfter(earlier, whole))
        result += (result.empty() ? "" : " ") + Describe(error, tagged ? 0 : static_cast<int>(tag.size()));
    return result;
}

} // namespace Kesh::Tests
