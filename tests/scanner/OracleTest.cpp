#include "Kesh/SyntaxParser/Regions.h"
#include "SyntaxParser/PhpScanner.h"
#include "SyntaxParser/SPDocument.h"
#include "SyntaxParser/SourceText.h"

#include <QDirIterator>
#include <QProcess>
#include <fstream>
#include <gtest/gtest.h>
#include <iostream>
#include <iterator>
#include <sstream>

namespace Kesh::SyntaxParser {

namespace {

/// Fewer files than this prove nothing.
constexpr int LeastFiles = 300;

struct SCut
{
    std::string kind;
    std::size_t length;
};

/// What a region is called in the oracle's terms; several names where the region source may carry it so.
class CCuts : public IStateRegionHandler
{
public:
    CCuts()
    {
        const SPhpRegionDefs& php = GetDefRegions()->Php;
        m_names[php.TagDefs[PhpTag::Opening]] = "open-tag";
        m_names[php.TagDefs[PhpTag::Closing]] = "close-tag";
        m_names[php.TokenDefs[PhpToken::Outside]] = "html";
        for (int i : {PhpToken::Keyword, PhpToken::PrefixWord, PhpToken::ArgumentWord, PhpToken::ConstantWord,
                      PhpToken::Word})
            m_names[php.TokenDefs[i]] = "word";
        for (int i : {PhpToken::Opening, PhpToken::Closing})
            m_names[php.TokenDefs[i]] = "bracket";
        for (int i : {PhpToken::Comma, PhpToken::Arrow, PhpToken::Semicolon, PhpToken::DoubleArrow,
                      PhpToken::Assign, PhpToken::Dot})
            m_names[php.TokenDefs[i]] = "operator";
        m_names[php.TokenDefs[PhpToken::StringStart]] = "string-start";
        m_names[php.TokenDefs[PhpToken::StringContent]] = "string";
        m_names[php.TokenDefs[PhpToken::StringEnd]] = "string-end";
        m_names[php.TokenDefs[PhpToken::Heredoc]] = "heredoc";
        m_names[php.TokenDefs[PhpToken::Number]] = "number";
        m_names[php.VarDefs[PhpVar::Variable]] = "variable";
        m_names[php.VarDefs[PhpVar::ExtraDollar]] = "operator";
        m_names[php.VarDefs[PhpVar::PropertyWord]] = "word";
        for (int i : {PhpExtra::Function, PhpExtra::CalledWord, PhpExtra::DeclaredName})
            m_names[php.ExtraDefs[i]] = "word";
        m_names[php.ClassDefs[PhpClass::Class]] = m_names[php.InterfaceDefs[PhpInterface::Interface]] =
            "word";
        for (int i = 1; i < PhpComment::Annotation; ++i)
            m_names[php.CommentDefs[i]] = "comment";
        m_names[php.CommentDefs[PhpComment::Annotation]] = "annotation";
    }

    int AddRegion(CRegion* region) override
    {
        std::string name = m_names[region->definition];
        if (region->definition == GetDefRegions()->Php.TokenDefs[PhpToken::Text])
            name =
                region->text.find_first_not_of(L" \t\r\n") == std::wstring_view::npos ? "blank" : "operator";
        cuts.push_back({name, region->text.size()});
        texts.emplace_back(region->text);
        return 0;
    }
    void Init(boost::shared_ptr<IReader>) override {}
    bool BeforeParse(const STextChange&, boost::shared_ptr<IReader>) override { return true; }
    void AfterParse() override {}
    void SendRegsEnd() override {}
    std::wstring GetSRName() override { return L"cuts"; }
    CIterator GetStartPos() override { return {}; }
    CIterator GetEndPos() override { return {}; }

    std::vector<SCut> cuts;
    std::vector<std::wstring> texts;

private:
    std::map<const ISynRegion*, std::string> m_names;
};

std::string ReadFile(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// The first difference between PHP's cuts of a file and ours; empty when there is none. A return type is one
/// word, and annotations stand for any token.
std::string FirstDifference(const std::string& path, const std::vector<SCut>& expected)
{
    const std::wstring text = DecodeSource(ReadFile(path));
    CCuts ours;
    CPhpScanner(text, {&ours}).Run(nullptr);

    std::size_t offset = 0;
    std::size_t i = 0;
    for (std::size_t k = 0; k < ours.cuts.size(); ++k) {
        const SCut& cut = ours.cuts[k];
        const std::string place = path + " at " + std::to_string(offset) + ": ";
        if (i == expected.size())
            return place + "PHP has nothing more";
        const bool isType = cut.kind == "word" && cut.length > expected[i].length;
        if (isType || cut.kind == "annotation") {
            std::size_t length = 0;
            while (i < expected.size() && length < cut.length)
                length += expected[i++].length;
            if (length != cut.length)
                return place + "a " + cut.kind + " of " + std::to_string(cut.length);
        } else {
            if (cut.kind != expected[i].kind || cut.length != expected[i].length)
                return place + cut.kind + " " + std::to_string(cut.length) + ", in PHP " + expected[i].kind +
                       " " + std::to_string(expected[i].length);
            ++i;
        }
        offset += cut.length;
    }
    return i == expected.size() ? "" : path + ": PHP has more";
}

/// PHP's tokens can only be measured in characters where there are characters.
bool IsUtf8(const std::string& path)
{
    SSourceFormat format;
    DecodeSource(ReadFile(path), format);
    if (!format.valid || format.encoding != EEncoding::Utf8)
        std::cout << "left out, not UTF-8: " << path << "\n";
    return format.valid && format.encoding == EEncoding::Utf8;
}

/// The PHP files that Debian's packages have installed, those of this project, and any in $CORPUS.
std::vector<std::string> RealFiles()
{
    std::vector<std::string> files;
    for (const QString& folder :
         {QString("/usr/share/php"), QString(SOURCE_DIR), qEnvironmentVariable("CORPUS")}) {
        if (folder.isEmpty())
            continue;
        QDirIterator it(folder, {"*.php"}, QDir::Files, QDirIterator::Subdirectories);
        while (it.hasNext()) {
            const std::string file = it.next().toStdString();
            if (file.find("/build/") == std::string::npos && IsUtf8(file))
                files.push_back(file);
        }
    }
    return files;
}

} // namespace

TEST(Oracle, CutsFilesAsPhpDoes)
{
    const std::vector<std::string> files = RealFiles();
    ASSERT_GE(static_cast<int>(files.size()), LeastFiles) << "install php-twig and php-symfony-console";

    QProcess php;
    php.start("php", {"-d", "short_open_tag=1", SOURCE_DIR "/tests/scanner/php-cuts.php"});
    for (const std::string& file : files)
        php.write((file + "\n").c_str());
    php.closeWriteChannel();
    ASSERT_TRUE(php.waitForFinished(-1)) << "php-cli is needed: " << php.errorString().toStdString();
    ASSERT_EQ(php.exitCode(), 0) << php.readAllStandardError().toStdString();

    std::istringstream lines(php.readAllStandardOutput().toStdString());
    std::string file;
    std::vector<SCut> cuts;
    int compared = 0;
    const auto compare = [&] {
        if (file.empty())
            return;
        EXPECT_EQ(FirstDifference(file, cuts), "");
        ++compared;
    };
    for (std::string line; std::getline(lines, line);) {
        const std::size_t blank = line.find(' ');
        const std::string kind = line.substr(0, blank);
        if (kind == "FILE") {
            compare();
            file = line.substr(blank + 1);
            cuts.clear();
        } else {
            cuts.push_back({kind, std::stoul(line.substr(blank + 1))});
        }
    }
    compare();
    EXPECT_EQ(compared, static_cast<int>(files.size()));
}

} // namespace Kesh::SyntaxParser
