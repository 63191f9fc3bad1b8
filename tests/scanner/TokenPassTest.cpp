#include "SyntaxParser/PhpScanner.h"
#include "SyntaxParser/PhpTokenPass.h"

#include <QDirIterator>
#include <QFile>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

namespace Kesh::SyntaxParser {

namespace {

/// What a pass hands on, in one string.
class CTokens final : public ITokenHandler
{
public:
    bool BeginTokens() override { return true; }
    void AddToken(const SPhpToken& token) override
    {
        Add(static_cast<int>(token.kind), token.start, token.end);
        all.append(token.text);
    }
    void EndTokens(CIterator end) override { Add(-1, end, end); }

    std::wstring all;

private:
    void Add(int kind, CIterator start, CIterator end)
    {
        for (const std::int64_t number : {std::int64_t{kind}, start.x, start.y, end.x, end.y})
            all += std::to_wstring(number) + L' ';
    }
};

std::wstring Islands(const std::vector<SIsland>& islands)
{
    std::wstring all;
    for (const SIsland& island : islands)
        all += std::to_wstring(island.begin) + L'-' + std::to_wstring(island.end) + L' ';
    return all;
}

void ExpectAlike(const std::wstring& text, const std::string& name)
{
    CTokens scanned;
    CTokens passed;
    std::vector<SIsland> scannedIslands;
    std::vector<SIsland> passedIslands;
    EXPECT_TRUE(CPhpScanner(text, {}, {&scanned}).Run(&scannedIslands));
    EXPECT_TRUE(CPhpTokenPass(text, {&passed}, true).Run(&passedIslands));
    EXPECT_EQ(passed.all == scanned.all, true) << name;
    EXPECT_EQ(Islands(passedIslands), Islands(scannedIslands)) << name;
}

} // namespace

// Tokens are the same whether regions are made or not: of real files, and of such with pieces cut out.
TEST(TokenPass, HandsOnWhatTheScannerDoes)
{
    std::mt19937 random(7);
    int files = 0;
    QDirIterator it("/usr/share/php/Symfony", {"*.php"}, QDir::Files, QDirIterator::Subdirectories);
    while (it.hasNext()) {
        QFile file(it.next());
        ASSERT_TRUE(file.open(QIODevice::ReadOnly));
        const std::wstring text = QString::fromUtf8(file.readAll()).toStdWString();
        const std::string name = file.fileName().toStdString();
        ++files;
        ExpectAlike(text, name);
        std::wstring damaged = text;
        for (int i = 0; i < 8 && !damaged.empty(); ++i)
            damaged.erase(random() % damaged.size(), 1 + random() % 3);
        ExpectAlike(damaged, name + ", damaged");
    }
    EXPECT_GT(files, 100) << "install php-symfony-console";
    for (const wchar_t* text :
         {L"", L"<p>", L"<?php", L"<?php __halt_compiler(); <?= ?> x", L"<?php __halt_compiler() ?>\n<?= 1",
          L"a\n<?= <<<X\n $a\n  X . `b\n` ?>\nc<? yield\nfrom #[A\n('b')] 1; /* d\n",
          L"<?php \"a{$b[\"\n\"]}", L"<?\n'"})
        ExpectAlike(text, QString::fromWCharArray(text).toStdString());
}

} // namespace Kesh::SyntaxParser
