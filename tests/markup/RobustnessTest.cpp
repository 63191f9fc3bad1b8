#include "SyntaxParser/CompletionData.h"
#include "markup/MarkupTestText.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <random>
#include <thread>

namespace Kesh::SyntaxParser {
namespace {

constexpr std::size_t Million = 1'000'000;
/// Characters; at this length whatever is not linear takes minutes.
constexpr std::size_t Length = 300'000;
/// Tags lie at most so deep, and their attributes below them.
constexpr std::uint32_t MaxDepth = 513;

std::wstring Repeat(std::wstring_view part, std::size_t count)
{
    std::wstring text;
    text.reserve(part.size() * count);
    while (count-- != 0)
        text += part;
    return text;
}

/// What holds for every tree of `text`, whatever is in it.
void ExpectSound(const SSemanticTree& tree, std::wstring_view text)
{
    std::vector<std::size_t> lineStarts = {0};
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == L'\n')
            lineStarts.push_back(i + 1);
    }
    const auto offset = [&](CIterator pos) {
        return lineStarts.at(static_cast<std::size_t>(pos.y)) + static_cast<std::size_t>(pos.x);
    };

    std::vector<std::uint32_t> depth(tree.nodes.size(), 0);
    std::size_t reached = 1;
    std::size_t last = 0;
    for (TSemanticIndex i = 0; i < tree.nodes.size(); ++i) {
        const SSemanticTreeNode& node = tree.nodes[i];
        for (TSemanticIndex child = node.firstChild; child != NoSemanticNode;
             child = tree.nodes[child].nextSibling) {
            ASSERT_GT(child, i);
            depth[child] = depth[i] + 1;
            ++reached;
        }
        ASSERT_LE(depth[i], MaxDepth);
        if (i == 0)
            continue;
        const std::size_t begin = offset(node.span.start);
        const std::size_t end = offset(node.span.end);
        ASSERT_LE(last, begin) << "not in document order";
        ASSERT_LT(begin, end);
        ASSERT_LE(end, text.size());
        const std::wstring_view written = text.substr(begin, end - begin);
        if (node.kind == SemanticCss)
            ASSERT_FALSE(node.name.empty());
        else if (node.kind == SemanticAttribute || node.kind == SemanticDynamicAttribute)
            ASSERT_EQ(node.name, written);
        else
            ASSERT_EQ(L"<" + node.name, written);
        last = begin;
    }
    ASSERT_EQ(reached, tree.nodes.size());
}

SMarkupTrees BuildSound(std::wstring_view text, EMarkup markup)
{
    SMarkupTrees trees = BuildMarkupTrees(text, markup, FindIslands(text));
    ExpectSound(trees.html, text);
    ExpectSound(trees.css, text);
    return trees;
}

TEST(Robustness, SurvivesMillionsOfAnything)
{
    const wchar_t* const parts[] = {
        L"<div>",
        L"<b>",
        L"<p>",
        L"<li>",
        L"<table><tr><td>",
        L"<svg>",
        L"<svg><desc>",
        L"<math><mi>",
        L"<a>",
        L"<button>",
        L"<select><option>",
        L"<x>",
        L"<x-y>",
        L"<template>",
        L"<b><div></b>",
        L"<a><p></a></p>",
        L"<",
        L"</",
        L"<!",
        L"<!--",
        L"--",
        L"<![CDATA[",
        L"]]",
        L"<?",
        L"<a ",
        L"<a {{",
        L"<a @a(",
        L"@a(",
        L"@a()",
        L"@endx",
        L"<a {",
        L"{",
        L"{{ }}",
        L"<a <%",
        L"<a {x}",
        L"<a {x}{y}",
        L"<a \"",
        L"<a b='",
        L"'\">",
        L"</div>",
        L"</p></b>",
        L"<ul><li></ul><li>",
        L"<td><tr>",
        L"<style>",
        L"<script><!--<script>",
        L"<plaintext>",
        L"<p style='a{'>",
        L"<p style='&quot;'>",
        L"&",
        L"<a\n",
        L"<a b",
        L"<a =",
        L"\"",
        L"\0",
        L"\xFDD0<",
        L"<?x?>",
        L"<<?x?>",
        L"<a <?x?>",
        L"<a <?x?>=",
        L"<a<?x?>>",
        L"<style>a{b:c}</style>",
        L"<p style=a:b>",
    };
    for (const wchar_t* part : parts) {
        const std::wstring_view view(part, std::max<std::size_t>(std::wcslen(part), 1));
        const std::wstring body = Repeat(view, Length / view.size());
        for (const wchar_t* start : {L"", L"<style>", L"<p a=\"", L"<p style=\"", L"<div ", L"<li><table>"})
            BuildSound(start + body, EMarkup::Html);
    }
}

TEST(Robustness, SurvivesMillionsOfAnythingInCss)
{
    const wchar_t* const parts[] = {
        L"{",       L"}",    L"(",   L")",     L"[",      L"a{",      L"a{b:",  L"a:not(", L":is(a,",
        L"@media{", L"@",    L"@x ", L"--a:{", L"--a:",   L"a:b{",    L"a: b{", L"a ",     L"a,",
        L"a ;",     L"/*",   L"*/",  L"/",     L"\"",     L"'\n",     L"\\",    L"url(",   L"url( \"",
        L"URL(x",   L"1",    L"1e",  L"#",     L".",      L":",       L";",     L"-",      L"--",
        L"-->",     L"<!--", L"]]",  L"<?x?>", L"<?x?> ", L"a<?x?>:", L"a{}",   L"*",      L"|",
        L"&",       L"!",    L"%",   L"from{", L"\0",     L"\n",      L"a\\\n", L"\\a ",
    };
    for (const wchar_t* part : parts) {
        const std::wstring_view view(part, std::max<std::size_t>(std::wcslen(part), 1));
        const std::wstring body = Repeat(view, Length / view.size());
        for (const wchar_t* start : {L"", L"a{", L"@keyframes x{", L"a:not(", L"--x:"})
            BuildSound(start + body, EMarkup::Css);
    }
}

TEST(Robustness, CapsDepth)
{
    const SMarkupTrees trees =
        BuildSound(Repeat(L"<div>", Million) + Repeat(L"</div>", Million), EMarkup::Html);
    EXPECT_EQ(trees.html.nodes.size(), Million + 1);
    const SMarkupTrees attributes = BuildSound(L"<p" + Repeat(L" a=1", Million) + L">", EMarkup::Html);
    EXPECT_EQ(attributes.html.nodes.size(), Million + 2);
}

TEST(Robustness, BuildsOnManyThreads)
{
    const std::string text =
        "<table><tr><td style='top:0'><style>a{left:0}</style><my-tag><p><? x ?></table>";
    std::vector<std::string> results(8);
    std::vector<std::thread> threads;
    for (std::string& result : results) {
        threads.emplace_back([&] {
            for (int round = 0; round < 100; ++round) {
                const SMarkupTrees trees = BuildTrees(text, EMarkup::Html);
                const IAttributeSource* attributes = GetBuiltInCompletionData()->GetAttributeSource();
                result = PrintHtml(trees.html) + PrintCss(trees.css) +
                         std::to_string(attributes->GetAttributes(L"A").size());
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(std::count(results.begin(), results.end(), results[0]), 8);
    EXPECT_NE(results[0].find("p:top e:a p:left"), std::string::npos) << results[0];
}

TEST(Robustness, SurvivesEveryCutOfAText)
{
    const std::wstring text =
        L"<!DOCTYPE html><html "
        L"lang=\"de\"><head><style>a:not(.b)>c{d:url(e);f:\"g\"}@media(h){i{--j:{k}}}/*l*/</style>"
        L"<script><!-- <script>m</script> --></script></head><body <?= n ?> class='o<?= p ?>'><!-- q "
        L"--><ul><li>r<li "
        L"style=\"s:&quot;t&quot;;u:v\">w</ul><svg><path "
        L"d=x/><![CDATA[y]]></svg><table><tr><td>z</table></body>";
    for (std::size_t i = 0; i < text.size(); ++i) {
        BuildSound(text.substr(0, i), EMarkup::Html);
        BuildSound(text.substr(i), EMarkup::Html);
        BuildSound(text.substr(i), EMarkup::Css);
    }
}

TEST(Robustness, SurvivesRandomText)
{
    const std::wstring_view pieces[] = {
        L"<",      L">",         L"</",       L"/>",       L"<!--",   L"-->",    L"<div",
        L"</div>", L"<p>",       L"<b>",      L"</b>",     L"<table", L"<td>",   L"<svg>",
        L"</svg>", L" ",         L"\n",       L"=",        L"\"",     L"'",      L"style",
        L"<style", L"</style>",  L"<script>", L"</script", L"{",      L"}",      L"(",
        L")",      L"[",         L"]",        L":",        L";",      L",",      L"a",
        L"-",      L"@media",    L"--x",      L"\\",       L"/*",     L"*/",     L"url(",
        L"<?",     L"?>",        L"&quot;",   L"\x1F600",  L"\xFDD0", L"#",      L"<li>",
        L"<a",     L"<![CDATA[", L"]]>",      L"<math>",   L"<mi>",   L"<desc>", std::wstring_view(L"\0", 1),
    };
    std::mt19937 random(1);
    for (int round = 0; round < 3000; ++round) {
        std::wstring text;
        for (std::size_t count = random() % 200; count != 0; --count)
            text += pieces[random() % std::size(pieces)];
        BuildSound(text, EMarkup::Html);
        BuildSound(text, EMarkup::Css);
    }
    // Code units that are no characters, and islands that promise more text than there is.
    std::wstring units(5000, L'<');
    for (wchar_t& unit : units)
        unit = static_cast<wchar_t>(random() % 3 == 0 ? random() : random() % 0x7F);
    for (EMarkup markup : {EMarkup::Html, EMarkup::Css})
        ExpectSound(BuildMarkupTrees(units, markup, {{10, 20}, {4990, 6000}}).html, units);
}

} // namespace
} // namespace Kesh::SyntaxParser
