#pragma once

#include "SyntaxParser/CssNames.h"
#include "SyntaxParser/CssScanner.h"
#include "SyntaxParser/MarkupText.h"

#include <string>
#include <vector>

namespace Kesh::SyntaxParser {

/// What a piece of CSS consists of.
enum class ECssText {
    Sheet,       ///< rules
    Declarations ///< what stands between the braces of a rule
};

/// Appends the names of one piece of CSS to the CSS tree. The names lie flat under the top node, in document
/// order: nobody asks to which rule one belongs.
class CCssTreeBuilder
{
public:
    /// Nothing is owned; `own` may be null.
    CCssTreeBuilder(CMarkupText& text, CTreeWriter& css, const COwnNames* own)
        : m_text(text), m_css(css), m_own(own), m_scanner(text.Scan())
    {
    }

    void Build(SStretch part, ECssText kind);

private:
    enum class EPseudo { Plain, Selectors, Wrong };
    enum class EBraces { End, Skip }; ///< whether a statement ends at a "{"
    struct SName
    {
        SStretch place;
        ISynRegion* kind;
    };

    void ReadAtRule(SCssToken keyword);
    void ReadStatement(SCssToken first);
    /// Whether `first` is PHP that stands for itself between statements; skips it.
    bool IsMadeStatement(SCssToken first);
    /// Adds the element names of selectors, or none if they are not selectors.
    void ReadSelectors(SStretch prelude);
    bool ReadElement(SStretch place);
    EPseudo ReadPseudo();
    /// Skips to the ";", "{", "}" or the end that ends a statement, and gives it.
    SCssToken SkipStatement(EBraces braces);
    /// Skips what the bracket just read opens.
    void SkipBrackets(ECssToken open);
    SCssToken NextSignificant();
    void AddProperty(SStretch place);
    void Add(SStretch place, ISynRegion* kind);
    std::wstring LowerName(SStretch place) const;

    CMarkupText& m_text;
    CTreeWriter& m_css;
    const COwnNames* m_own;
    CCssScanner m_scanner;
    std::vector<ECssBlock> m_blocks;   ///< the open blocks, outermost first
    std::vector<ECssToken> m_brackets; ///< open brackets of what is being skipped
    std::vector<SName> m_selector;     ///< names of the selectors being read
};

} // namespace Kesh::SyntaxParser
