#pragma once

#include "Markup/MarkupPart.h"
#include "Styles/StyleChecker.h"

namespace Kesh::CodeAnalyzer {

/// The styles of a document.
class CStylePart final : public IMarkupPart
{
public:
    explicit CStylePart(CMarkupReport& report) : m_checker(report) {}

    void BeginStyle(SyntaxParser::EStyleKind kind, SyntaxParser::SMarkupSpan whole) override
    {
        m_checker.Begin(kind, whole);
    }
    void AddStyle(const SyntaxParser::SStyleToken& token) override { m_checker.Add(token); }
    void EndStyle() override { m_checker.End(); }

private:
    CStyleChecker m_checker;
};

} // namespace Kesh::CodeAnalyzer
