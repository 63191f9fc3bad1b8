#pragma once

#include "Diagnostics/MarkupReport.h"
#include "Styles/StyleText.h"

#include <initializer_list>
#include <string>
#include <string_view>

namespace Kesh::CodeAnalyzer {

/// Reports what the checkers find in a style.
class CStyleFindings
{
public:
    /// An argument of a message that is no piece of the text.
    struct SPlain
    {
        const char* name;
        std::string value;
    };

    /// Both must outlive the object.
    CStyleFindings(CMarkupReport& report, const CStyleText& text) : m_report(report), m_text(text) {}

    /// The tokens are the argument {found}.
    void Report(std::int32_t code, STokens at, std::initializer_list<SPlain> plain = {}, SDetails more = {},
                std::int32_t severity = OfKind);
    void Report(std::int32_t code, TTokenIndex at, std::initializer_list<SPlain> plain = {},
                SDetails more = {}, std::int32_t severity = OfKind)
    {
        Report(code, {at, at + 1}, plain, std::move(more), severity);
    }
    /// Something is missing before a token, which is the argument {found}.
    void Missing(std::int32_t code, TTokenIndex before, const wchar_t* insert,
                 std::initializer_list<SPlain> plain = {}, SDetails more = {});
    /// A name that no list has. An empty `nearest` is none.
    void Unknown(std::int32_t code, SMarkupSpan name, std::string_view nearest,
                 std::initializer_list<SPlain> plain = {}, std::int32_t severity = OfKind);

    SFix Remove(STokens tokens) const { return m_report.Fix(EFix::Remove, m_text.SpanOf(tokens), L""); }
    CMarkupReport& Plain() { return m_report; }

private:
    /// The severity of the catalogue.
    static constexpr std::int32_t OfKind = 0;

    void Add(std::int32_t code, SMarkupSpan span, SDetails details, std::int32_t severity);
    void Fill(SDetails& details, SMarkupSpan found, std::initializer_list<SPlain> plain) const;

    CMarkupReport& m_report;
    const CStyleText& m_text;
};

/// The listed name that is most like another; empty: none is near.
class CNearestName
{
public:
    explicit CNearestName(std::string_view wanted);
    ~CNearestName();

    void Offer(std::string_view name);
    std::string Get() const;

private:
    struct SNames;
    std::unique_ptr<SNames> m_names;
};

} // namespace Kesh::CodeAnalyzer
