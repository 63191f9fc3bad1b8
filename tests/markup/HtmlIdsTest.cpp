// Ids that are given twice, and those that only seem to be.

#include "markup/MarkupDiagnoser.h"

#include <gtest/gtest.h>

namespace Kesh::Tests {
namespace {

struct SCase
{
    const char* text;
    const char* found; ///< of 2208
};

void ExpectIds(const wchar_t* path, const wchar_t* factory, std::initializer_list<SCase> cases)
{
    CMarkupDiagnoser diagnoser(path, factory);
    for (const SCase& test : cases)
        EXPECT_EQ(diagnoser.Describe(test.text, 2208, 2208), test.found) << test.text;
}

TEST(HtmlIds, OfADocumentAreGivenOnce)
{
    ExpectIds(L"/a.html", L"HTMLSPDocFactory",
              {
                  {"<p id=a><p id='a'>", "2208 0:15-0:16"},
                  {"<p id=a><p id=b><p id=A><p id><p id><p id=''><p id=''>", ""},
                  {"<p ID=a>\n<p Id=\"a\">\n<p iD=a>", "2208 1:7-1:8 2208 2:6-2:7"},
                  {"<p id=é><svg><g id=é></svg>", "2208 0:19-0:20"},
                  // What is not shown with the rest, and what is no element.
                  {"<p id=a><template><p id=a></template><noscript><p id=a></noscript>", ""},
                  {"<template><p id=a></template><p id=b><p id=b>", "2208 0:43-0:44"},
                  {"<p id=a><!-- <p id=a> --><script>'<p id=a>'</script><textarea><p id=a></textarea>", ""},
                  {"<p data-id=a for=a id=a>", ""},
                  // Scripts fill these in, or choose.
                  {"<p id='${a}'><p id='${a}'><p id='a[]'><p id='a[]'><p id={{a}}><p id={{a}}>", ""},
                  {"<p v-if=x id=a><p v-else id=a>", ""},
                  {"<x:if a=b><p id=a></x:if><p id=a>", ""},
                  {"<p *ngIf='x' id=a><p id=a>", ""},
                  // XML has ids of its own.
                  {"<?xml version='1.0'?><a id='a'/><b id='a'/>", ""},
              });
}

TEST(HtmlIds, OfATemplateMayStandInBranchesThatExcludeEachOther)
{
    ExpectIds(
        L"/a.php", L"PHPSPDocFactory",
        {
            {"<p id=a><?php f() ?><p id=a>", "2208 0:26-0:27"},
            {"<p id=a><?php if ($x): ?><p id=a><?php endif ?>", "2208 0:31-0:32"},
            {"<?php if ($x) { ?><p id=a><p id=a><?php } ?>", "2208 0:32-0:33"},
            {"<?php if ($x): ?><p id=a><?php else: ?><p id=a><?php endif ?>", ""},
            {"<?php if ($x): ?><p id=a><?php elseif ($y): ?><p id=a><?php endif ?><p id=b>", ""},
            {"<?php if ($x): ?><p id=a><?php endif; if (!$x): ?><p id=a><?php endif ?>", ""},
            // The first one may have left, or be missing.
            {"<?php if ($x) { ?><p id=a><?php return; } ?><p id=a>", ""},
            {"<p id=a><?php return ?><p id=a>", ""},
            {"<?php switch ($x) { case 1: ?><p id=a><?php break; case 2: ?><p id=a><?php } ?>", ""},
            {"<?php switch ($x) { case 1: { ?><p id=a><?php break; } case 2: { ?><p id=a><?php } } ?>", ""},
            {"<?php try { ?><p id=a><?php } catch (E $e) { ?><p id=a><?php } ?>", ""},
            // A loop shows once what is written once, as far as anybody knows; twice is twice.
            {"<?php foreach ($x as $y): ?><p id=a><?php endforeach ?>", ""},
            {"<?php foreach ($x as $y): ?><p id=a><p id=a><?php endforeach ?>", "2208 0:42-0:43"},
            // Each function prints when it is called.
            {"<p id=a><?php function f() { ?><p id=a><?php } function g() { ?><p id=a><?php }", ""},
            {"<?php function f() { ?><p id=a><?php if ($x) { ?><p id=a><?php } }", "2208 0:55-0:56"},
            {"<p id=a><?php $f = function () { ?><p id=a><?php }; ?>", ""},
            // Islands make other ids of them.
            {"<p id='a<?= $i ?>'><p id='a<?= $i ?>'><p <?= $x ?>id=b><p id='<?= $i ?>'><p id='<?= $i ?>'>",
             ""},
            // What is printed is there; what one of several strings prints may not be.
            {"<p id=a><?php echo '<p id=\"a\">'; ?>", "2208 0:27-0:28"},
            {"<?php echo $x ? '<p id=\"a\">' : '<p id=\"a\">'; ?>", ""},
            {"<?php $x = '<p id=\"a\">'; $y = '<p id=\"a\">'; ?>", ""},
            {"<?php echo match ($x) { 1 => '<p id=\"a\">', 2 => '<p id=\"a\">' }; ?>", ""},
            // Branches in a tag.
            {"<p <?php if ($x): ?>id=a<?php else: ?>id=a<?php endif ?>>", ""},
            {"{% if x %}<p id=a>{% else %}<p id=a>{% endif %}", ""},
        });
}

TEST(HtmlIds, TheFirstOneIsNamedAndManyTakeNoTime)
{
    CMarkupDiagnoser diagnoser;
    const auto& found = diagnoser.Diagnose("<p id=a>\n<p id=a>\n<p id=a>", 2208, 2208);
    ASSERT_EQ(found.size(), 2u);
    for (const CodeAnalyzer::SDiagnostic& record : found) {
        ASSERT_EQ(record.details.related.size(), 1u);
        EXPECT_EQ(record.details.related.front().pos.start.y, 0);
        EXPECT_EQ(record.error.type, CodeAnalyzer::SeverityError);
    }
    std::string deep;
    for (int i = 0; i < 20000; ++i)
        deep += "<?php if ($x" + std::to_string(i) + ") { ?><p id=a" + std::to_string(i % 7) + ">";
    EXPECT_EQ(diagnoser.Diagnose(deep, 2208, 2208).size(), 0u) << "not sound";
    for (int i = 0; i < 20000; ++i)
        deep += "<?php } ?>";
    EXPECT_EQ(diagnoser.Diagnose(deep, 2208, 2208).size(), 20000u - 7u);
}

} // namespace
} // namespace Kesh::Tests
