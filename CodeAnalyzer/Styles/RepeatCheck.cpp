#include "Styles/RepeatCheck.h"

#include "Styles/ValueParts.h"

#include <algorithm>

namespace Kesh::CodeAnalyzer {

namespace {

constexpr std::size_t LongestKind = 200;

// Properties whose words came one after another, so that sheets give an older one first.
constexpr std::string_view WithFallbacks[] = {"display",
                                              "word-break",
                                              "overflow-wrap",
                                              "word-wrap",
                                              "position",
                                              "cursor",
                                              "overflow",
                                              "overflow-x",
                                              "overflow-y",
                                              "width",
                                              "height",
                                              "min-width",
                                              "max-width",
                                              "min-height",
                                              "max-height",
                                              "text-align",
                                              "font-family",
                                              "font",
                                              "src",
                                              "white-space",
                                              "unicode-bidi",
                                              "clip",
                                              "background-image",
                                              "justify-content",
                                              "align-items",
                                              "list-style-type",
                                              "list-style",
                                              "image-rendering",
                                              "appearance",
                                              "user-select",
                                              "text-decoration",
                                              "vertical-align",
                                              "background",
                                              "content",
                                              "outline",
                                              "color-adjust"};

} // namespace

void CRepeatCheck::Declare(const SStyleDeclaration& declaration)
{
    if (declaration.isHack || declaration.isFaulty || declaration.value.IsEmpty())
        return;
    const std::string name = m_text.NameOf(declaration.name);
    if (name.find_first_of("\\\x7F") != std::string::npos)
        return;
    const auto [earlier, isNew] = m_blocks.back().try_emplace(name, SEarlier{declaration, {}});
    if (isNew)
        return;
    SEarlier& before = earlier->second;
    const std::string kind = KindOf(declaration.value);
    if (!before.kind)
        before.kind = KindOf(before.declaration.value);
    const auto written = [this](const SStyleDeclaration& d) {
        return m_text.Places().Text(m_text.SpanOf(d.value));
    };
    const bool isEqual = written(before.declaration) == written(declaration);
    const bool isSameKind = !kind.empty() && kind == before.kind &&
                            std::ranges::find(WithFallbacks, name) == std::end(WithFallbacks);
    if ((isEqual && !kind.empty()) || isSameKind) {
        SDetails details;
        details.related.push_back(
            m_findings.Plain().Related(m_text[before.declaration.name].span, "The property was given here"));
        details.fixes.push_back(m_findings.Remove(WholeOf(before.declaration)));
        m_findings.Report(Code::RepeatedStyleProperty, declaration.name, {}, std::move(details));
    }
    before = {declaration, kind};
}

// With its semicolon.
STokens CRepeatCheck::WholeOf(const SStyleDeclaration& declaration) const
{
    const TTokenIndex end = m_text.SkipBlanks(declaration.value.end);
    return {declaration.name, m_text.Is(end, EStyleTokenKind::Semicolon) ? end + 1 : declaration.value.end};
}

// Equal for values that every browser reads alike; empty: nobody can tell.
std::string CRepeatCheck::KindOf(STokens value) const
{
    std::string kind;
    for (TTokenIndex i = value.begin; i < value.end && kind.size() < LongestKind; ++i) {
        if (m_text.IsTouched(i))
            return {};
        const std::string text = m_text.NameOf(i);
        switch (m_text.KindOf(i)) {
        case EStyleTokenKind::Ident:
            if (text.starts_with('-') || text.find('\\') != std::string::npos)
                return {};
            kind += 'w';
            break;
        case EStyleTokenKind::Function:
            if (text.starts_with('-') || text == "var")
                return {};
            kind += text + '(';
            break;
        case EStyleTokenKind::Dimension:
            if (text.find('\\') != std::string::npos)
                return {};
            kind += text.substr(UnitOffset(text)) + ' ';
            break;
        case EStyleTokenKind::Space:
        case EStyleTokenKind::Comment: break;
        case EStyleTokenKind::Delim: kind += text; break;
        default: kind += static_cast<char>('A' + static_cast<int>(m_text.KindOf(i)));
        }
    }
    return kind;
}

} // namespace Kesh::CodeAnalyzer
