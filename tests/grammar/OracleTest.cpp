#include "Diagnose.h"

#include "SyntaxParser/PhpLexer.h"
#include "SyntaxParser/SourceText.h"

#include <QDirIterator>
#include <QString>
#include <QTemporaryDir>
#include <algorithm>
#include <gtest/gtest.h>
#include <iostream>
#include <random>
#include <sstream>

namespace Kesh::Tests {

namespace {

std::vector<std::string> InstalledFiles()
{
    std::vector<std::string> files;
    QDirIterator it("/usr/share/php", {"*.php"}, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext())
        files.push_back(it.next().toStdString());
    std::sort(files.begin(), files.end());
    return files;
}

std::vector<std::string> Snippets()
{
    std::vector<std::string> snippets{""};
    std::istringstream lines(ReadBytes(SOURCE_DIR "/tests/grammar/snippets.txt"));
    for (std::string line; std::getline(lines, line);) {
        if (line == "----")
            snippets.emplace_back();
        else
            snippets.back() += line + "\n";
    }
    return snippets;
}

/// A slip that a person could make: a token lost, doubled or cut short, or its neighbour taken for it.
struct SSlip
{
    std::string text;
    int line = 0;   ///< from 1
    int before = 0; ///< the line of the token before, behind which something may be missing now
    std::string source{};
};

SSlip MakeSlip(const std::string& source, std::mt19937& random)
{
    const std::wstring text = SyntaxParser::DecodeSource(source);
    SyntaxParser::CPhpLexer lexer(text);
    struct SPiece
    {
        std::size_t begin, end;
    };
    std::vector<SPiece> pieces;
    using enum SyntaxParser::EPhpToken;
    for (;;) {
        const auto token = lexer.Next();
        if (token == End)
            break;
        if (token == Html || token == Blank || token == CloseTag || token == OpenTag ||
            (token >= LineComment && token <= Attribute))
            continue;
        pieces.push_back({static_cast<std::size_t>(lexer.Begin() - text.data()),
                          static_cast<std::size_t>(lexer.Cursor() - text.data())});
        if (token == SingleQuote || token == DoubleQuote) {
            const wchar_t* close = lexer.FindQuote(lexer.Cursor(), lexer.Cursor()[-1]).end;
            lexer.SetCursor(std::min(close + 1, lexer.Limit()));
            pieces.back().end = static_cast<std::size_t>(lexer.Cursor() - text.data());
        }
    }
    if (pieces.size() < 8)
        return {};
    const std::size_t at = random() % (pieces.size() - 1);
    const auto [begin, end] = pieces[at];
    const std::wstring token = text.substr(begin, end - begin);
    std::wstring changed = text;
    switch (random() % 4) {
    case 0: changed.erase(begin, end - begin); break;
    case 1: changed.insert(end, L" " + token); break;
    case 2: changed.erase(end - 1, 1); break;
    default: {
        const auto [nextBegin, nextEnd] = pieces[at + 1];
        changed = text.substr(0, begin) + text.substr(nextBegin, nextEnd - nextBegin) +
                  text.substr(end, nextBegin - end) + token + text.substr(nextEnd);
    }
    }
    const auto lineAt = [&](std::size_t place) {
        return static_cast<int>(
            std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(place), L'\n') + 1);
    };
    return {QString::fromStdWString(changed).toStdString(), lineAt(begin),
            at > 0 ? lineAt(pieces[at - 1].end) : 1};
}

} // namespace

TEST(GrammarOracle, AcceptsEveryInstalledFile)
{
    const std::vector<std::string> files = InstalledFiles();
    ASSERT_GE(files.size(), 300U) << "install php-twig and php-symfony-console";
    std::vector<std::string> suspects;
    for (const std::string& file : files) {
        EXPECT_TRUE(Diagnose(ReadBytes(file), 0).empty()) << file;
        if (!Diagnose(ReadBytes(file), PhpVersion()).empty())
            suspects.push_back(file);
    }
    // Some hold what only another PHP takes.
    const std::vector<SPhpVerdict> verdicts = AskPhp(suspects);
    for (std::size_t i = 0; i < suspects.size(); ++i)
        EXPECT_FALSE(verdicts[i].accepts) << suspects[i];
}

TEST(GrammarOracle, JudgesSnippetsAsPhpDoes)
{
    const QTemporaryDir folder;
    std::vector<std::string> files;
    const std::vector<std::string> snippets = Snippets();
    for (const std::string& snippet : snippets) {
        files.push_back(folder.filePath(QString::number(files.size()) + ".php").toStdString());
        WriteBytes(files.back(), "<?php\n" + snippet);
    }
    const std::vector<SPhpVerdict> verdicts = AskPhp(files);
    for (std::size_t i = 0; i < files.size(); ++i) {
        const std::string ours = Describe("<?php\n" + snippets[i], PhpVersion());
        EXPECT_EQ(ours.empty(), verdicts[i].accepts) << snippets[i] << ours << verdicts[i].line;
    }
}

// Slips in real files: the same verdict as PHP's, and the place between the slip and where PHP notices.
TEST(GrammarOracle, JudgesSlipsAsPhpDoes)
{
    constexpr std::size_t slips = 300;
    std::mt19937 random(20260501);
    const QTemporaryDir folder;
    const std::vector<std::string> sources = InstalledFiles();
    std::vector<std::string> files;
    std::vector<SSlip> made;
    while (files.size() < slips) {
        const std::string& path = sources[random() % sources.size()];
        const std::string source = ReadBytes(path);
        if (source.size() < 1000 || source.size() > 40000)
            continue;
        const SSlip slip = MakeSlip(source, random);
        if (slip.text.empty())
            continue;
        files.push_back(folder.filePath(QString::number(files.size()) + ".php").toStdString());
        WriteBytes(files.back(), slip.text);
        made.push_back(slip);
        made.back().source = path;
    }
    const std::vector<SPhpVerdict> verdicts = AskPhp(files);
    int parseErrors = 0;
    int placed = 0;
    int near = 0;
    for (std::size_t i = 0; i < files.size(); ++i) {
        const auto ours = Diagnose(made[i].text, PhpVersion());
        EXPECT_EQ(ours.empty(), verdicts[i].accepts)
            << "slip in line " << made[i].line << " of\n"
            << " of " << made[i].source << ": " << Describe(made[i].text, PhpVersion());
        if (verdicts[i].accepts || verdicts[i].parses || ours.empty())
            continue;
        ++parseErrors;
        const auto line = static_cast<int>(ours.front().error.pos.start.y) + 1;
        const bool isPlaced = std::min(made[i].before, verdicts[i].line) <= line &&
                              line <= std::max(made[i].line, verdicts[i].line);
        if (!isPlaced)
            std::cout << made[i].source << " slip " << made[i].line << " php " << verdicts[i].line << " ours "
                      << Describe(made[i].text, PhpVersion()) << "\n";
        placed += isPlaced;
        near += std::abs(line - made[i].line) <= 1;
    }
    std::cout << parseErrors << " parse errors, " << placed << " placed between slip and PHP's line, " << near
              << " within a line of the slip\n";
    EXPECT_GE(parseErrors, 150);
    EXPECT_GE(placed, parseErrors * 98 / 100);
    EXPECT_GE(near, parseErrors * 85 / 100);
}

} // namespace Kesh::Tests
