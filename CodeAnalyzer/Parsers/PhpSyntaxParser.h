#pragma once

#include "Kesh/CodeAnalyzer/IGrammarCheck.h"
#include "Kesh/SDK/IComponent.h"
#include "Kesh/SyntaxParser/IParser.h"
#include "Kesh/SyntaxParser/IRegionsOnDemand.h"
#include "Kesh/SyntaxParser/ISPDocument.h"
#include "Parsers/CParentParser.h"
#include "Parsers/RegionClasses.h"
#include "Parsers/RegionLog.h"

#include <array>
#include <boost/shared_ptr.hpp>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Kesh::CodeAnalyzer {

class CPhpGrammarChecker;
class IErrorsReceiver;
class CStatementParser;

/// The PHP checker of one document: gives each region to the statement parser that owns the current
/// statement, or offers it to all of them, and reports the errors of a pass to the errors manager under the
/// file's name. One thread at a time.
class CPhpSyntaxParser : public CParentParser,
                         public SyntaxParser::IStateRegionHandler,
                         public SyntaxParser::IRegionsOnDemand,
                         public SDK::IComponent1<SyntaxParser::ISPDocument>
{
public:
    /// Neither pointer is owned; both outlive the parser.
    CPhpSyntaxParser(SyntaxParser::CDefRegions* defs, IErrorsReceiver* errorsManager);

    void OnStructureEnd(SyntaxParser::CRegion* region, int redispatch) override;
    void OnParsingContinue(SyntaxParser::CRegion* region, int offer) override;
    void OnStructureError(int code, SyntaxParser::CRegion* region, int skipToEnd) override;
    void AddErrors(const std::vector<SCAError>& errors) override;

    virtual ~CPhpSyntaxParser();

    void Init(boost::shared_ptr<SyntaxParser::IReader> reader) override;
    bool BeforeParse(const SyntaxParser::STextChange& change,
                     boost::shared_ptr<SyntaxParser::IReader> reader) override;
    void AfterParse() override;
    int AddRegion(SyntaxParser::CRegion* region) override;
    void SendRegsEnd() override {}
    bool WaitsForTokens() const override { return m_keeping; }
    bool NeedsRegions() override;
    std::wstring GetSRName() override;
    SyntaxParser::CIterator GetStartPos() override;
    SyntaxParser::CIterator GetEndPos() override;

    /// Registers with the document's parser; builds no statement parsers.
    void InitComponent(SyntaxParser::ISPDocument* document) override;
    std::wstring GetComponentName() override;

    /// Registers with the document's parser and builds the statement parsers. Call once.
    void InitParser(boost::shared_ptr<SyntaxParser::ISPDocument> document);
    void InitParser(boost::shared_ptr<SyntaxParser::IParser> parser,
                    boost::shared_ptr<SyntaxParser::IReader> reader);
    /// Lets the grammar check of the document take part in each pass for which the host asks for it. `wanted`
    /// is not owned. Call once, after InitParser(), if the document's host hands its tokens on.
    void FollowGrammar(SyntaxParser::ISPDocument& document, const IGrammarCheck* wanted);
    /// The file under whose name errors are reported.
    void SteFileName(const std::wstring& name);

private:
    // Called for few regions each, and kept out of the way of the many.
    [[gnu::noinline]] int EnterPhp(SyntaxParser::CRegion* region);
    [[gnu::noinline]] int Keep(SyntaxParser::CRegion* region);
    void DispatchRegion(SyntaxParser::CRegion* region);
    [[gnu::noinline]] bool Offer(SyntaxParser::CRegion* region);
    void OfferEnding(SyntaxParser::CRegion* region);
    [[gnu::noinline]] void ParseKept();
    [[gnu::noinline]] void DispatchToNone(SyntaxParser::CRegion* region);
    [[gnu::noinline]] void DispatchBracketRegion(SyntaxParser::CRegion* region);

    std::uint32_t ParsersFor(const SyntaxParser::CRegion& region) const;
    bool NeedsStatements() const;
    void ReportMerged();
    /// `letters`: what the words begin with that may mean something to the parser.
    template <class TParser> CStatementParser* AddParser(std::string_view letters);

    std::vector<CStatementParser*> m_parsers; ///< owned, in the order in which they are offered a region
    /// Sets of parsers, one bit for each: those that may know a word with this first letter.
    std::array<std::uint32_t, 26> m_byLetter{};
    bool m_brackets = false; ///< one of them looks at every bracket
    CStatementParser* m_active = nullptr;
    SyntaxParser::CDefRegions* m_defs;
    std::shared_ptr<const CRegionClasses> m_classes;
    boost::shared_ptr<SyntaxParser::IReader> m_reader;
    IErrorsReceiver* m_errorsManager;
    std::wstring m_fileName;
    std::vector<SCAError> m_errors;
    int m_skipToEnd = 0;
    int m_inPhp = 0;
    std::vector<CStatementParser*> m_suspended;
    bool m_exact = false;      ///< nesting is followed exactly in this pass
    bool m_redeliver = false;  ///< the ending region still has to reach what was resumed
    bool m_delivering = false; ///< a loop that does so runs further down the stack
    std::size_t m_ended = 0;   ///< statements that the region being redelivered has ended
    bool m_taken = false;      ///< what was resumed has offered the region, or has ended with it
    const CStatementParser* m_switches = nullptr;
    const CStatementParser* m_whiles = nullptr;
    std::unique_ptr<CPhpGrammarChecker> m_grammar; ///< null: there is none
    const IGrammarCheck* m_grammarWanted = nullptr;
    CRegionLog m_kept;      ///< regions that wait for the grammar's verdict
    bool m_keeping = false; ///< more of them are to be kept
};

} // namespace Kesh::CodeAnalyzer
