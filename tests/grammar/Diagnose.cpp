#include "Diagnose.h"

#include "Grammar/PhpGrammarChecker.h"
#include "SyntaxParser/SPDocument.h"
#include "SyntaxParser/SourceText.h"
#include "SyntaxParser/TextReader.h"

#include <QProcess>
#include <QRegularExpression>
#include <boost/make_shared.hpp>
#include <fstream>
#include <gtest/gtest.h>
#include <map>

namespace Kesh::Tests {

using namespace SyntaxParser;

CDiagnoser::CDiagnoser()
    : m_reader(boost::make_shared<CTextReader>(std::wstring())),
      m_document(MakeSPDocument(m_reader, {L"/a.php", L"PHPSPDocFactory"})),
      m_checker(std::make_unique<CodeAnalyzer::CPhpGrammarChecker>())
{
    EXPECT_TRUE(m_checker->Follow(*m_document));
}

CDiagnoser::~CDiagnoser() = default;

const std::vector<CodeAnalyzer::SGrammarDiagnostic>& CDiagnoser::Diagnose(std::string_view text, int version,
                                                                          const std::wstring& versionFrom)
{
    m_reader->SetText(DecodeSource(text));
    m_checker->Expect(true, version, versionFrom);
    m_document->Parse(true);
    EXPECT_TRUE(m_checker->HasVerdict());
    return m_checker->Diagnostics();
}

namespace {

std::string Listed(const std::vector<CodeAnalyzer::SGrammarDiagnostic>& diagnostics, std::int64_t shift)
{
    std::string result;
    const auto place = [shift](const CIterator& p) {
        return std::to_string(p.y) + ":" + std::to_string(p.y == 0 ? p.x - shift : p.x);
    };
    for (const auto& diagnostic : diagnostics)
        result += (result.empty() ? "" : " ") + std::to_string(diagnostic.error.code) + " " +
                  place(diagnostic.error.pos.start) + "-" + place(diagnostic.error.pos.end);
    return result;
}

} // namespace

std::string CDiagnoser::Describe(std::string_view text)
{
    return Listed(Diagnose(text), 0);
}

std::vector<CodeAnalyzer::SGrammarDiagnostic> Diagnose(std::string_view text, int version)
{
    return CDiagnoser().Diagnose(text, version);
}

std::string Describe(std::string_view text, int version)
{
    constexpr std::string_view tag = "<?php ";
    const bool tagged = text.find("<?") != std::string_view::npos;
    return Listed(Diagnose((tagged ? std::string() : std::string(tag)) + std::string(text), version),
                  tagged ? 0 : static_cast<std::int64_t>(tag.size()));
}

int PhpVersion()
{
    static const int version = [] {
        QProcess php;
        php.start("php", {"-n", "-r", "echo PHP_MAJOR_VERSION * 100 + PHP_MINOR_VERSION;"});
        EXPECT_TRUE(php.waitForFinished(-1)) << "php-cli is needed";
        return php.readAll().toInt();
    }();
    return version;
}

std::vector<SPhpVerdict> AskPhp(const std::vector<std::string>& files)
{
    QProcess php;
    php.setProcessChannelMode(QProcess::MergedChannels);
    // A status of 255, which PHP ends with, would end xargs too.
    php.start("xargs",
              {"-d", "\\n", "-P", "2", "-n", "1", "sh", "-c",
               "php -n -d short_open_tag=1 -d display_errors=1 -d log_errors=0 -l \"$1\" || :", "sh"});
    for (const std::string& file : files)
        php.write((file + "\n").c_str());
    php.closeWriteChannel();
    EXPECT_TRUE(php.waitForFinished(-1)) << "php-cli is needed";

    std::map<QString, SPhpVerdict> verdicts;
    static const QRegularExpression good("^No syntax errors detected in (.*)$");
    static const QRegularExpression bad("^(Parse|Fatal) error: .* in (/\\S+) on line (\\d+)$");
    for (const QString& line : QString::fromLatin1(php.readAll()).split('\n')) {
        if (const auto match = good.match(line); match.hasMatch())
            verdicts[match.captured(1)] = {true, true, 0};
        else if (const auto error = bad.match(line); error.hasMatch())
            verdicts.try_emplace(error.captured(2),
                                 SPhpVerdict{false, error.captured(1) == "Fatal", error.captured(3).toInt()});
    }
    std::vector<SPhpVerdict> result;
    for (const std::string& file : files) {
        const auto found = verdicts.find(QString::fromStdString(file));
        EXPECT_NE(found, verdicts.end()) << "PHP said nothing of " << file;
        result.push_back(found == verdicts.end() ? SPhpVerdict{} : found->second);
    }
    return result;
}

std::string ReadBytes(const std::string& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void WriteBytes(const std::string& path, std::string_view bytes)
{
    std::ofstream(path, std::ios::binary) << bytes;
}

} // namespace Kesh::Tests
