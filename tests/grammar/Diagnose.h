#pragma once

#include "Grammar/GrammarDiagnostic.h"

#include <boost/shared_ptr.hpp>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Kesh::CodeAnalyzer {
class CPhpGrammarChecker;
}
namespace Kesh::SyntaxParser {
class CTextReader;
class ISPDocument;
} // namespace Kesh::SyntaxParser

namespace Kesh::Tests {

/// Checks one text after another, as an editor and `check` do.
class CDiagnoser
{
public:
    CDiagnoser();
    ~CDiagnoser();

    /// Until the next text.
    const std::vector<CodeAnalyzer::SGrammarDiagnostic>& Diagnose(std::string_view text, int version = 0,
                                                                  const std::wstring& versionFrom = {});
    /// As the function below, without a tag that does not count.
    std::string Describe(std::string_view text);

private:
    boost::shared_ptr<SyntaxParser::CTextReader> m_reader;
    boost::shared_ptr<SyntaxParser::ISPDocument> m_document;
    std::unique_ptr<CodeAnalyzer::CPhpGrammarChecker> m_checker;
};

/// What the grammar check says of a text in UTF-8, through the real lexer. Version as IGrammarCheck takes it.
std::vector<CodeAnalyzer::SGrammarDiagnostic> Diagnose(std::string_view text, int version = 0);
/// The same as "code line:column-line:column", 0-based, joined by blanks; "<?php " is put before a text that
/// has no tag, and does not count.
std::string Describe(std::string_view text, int version = 0);

/// The version of the PHP that is there, which is the oracle, as IGrammarCheck takes it.
int PhpVersion();
/// What `php -l` says of a file.
struct SPhpVerdict
{
    bool accepts = false;
    bool parses = false; ///< rejected by PHP's parser, not by a rule of its compiler
    int line = 0;        ///< of the first error, from 1
};
/// Of each file, in order; several at a time.
std::vector<SPhpVerdict> AskPhp(const std::vector<std::string>& files);

std::string ReadBytes(const std::string& path);
void WriteBytes(const std::string& path, std::string_view bytes);

} // namespace Kesh::Tests
