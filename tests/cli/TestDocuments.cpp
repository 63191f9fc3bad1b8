// What the documents promise about errors is what the program reports.

#include "Kesh/CodeAnalyzer/Catalog.h"
#include "TempFolder.h"

#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <set>
#include <vector>

using namespace Kesh::CodeAnalyzer;
using nlohmann::json;

namespace {

json Check(const QStringList& arguments, const QByteArray& input = {})
{
    QProcess process;
    process.setWorkingDirectory(SOURCE_DIR);
    process.start(PROGRAM, QStringList{"check", "--format", "json"} + arguments);
    process.write(input);
    process.closeWriteChannel();
    EXPECT_TRUE(process.waitForFinished(60000));
    return json::parse(process.readAllStandardOutput().toStdString());
}

/// An option for what only the check of a whole project finds.
const QString AsProject = "project";

json CheckExample(const QString& php, const QStringList& options)
{
    if (options.contains(AsProject)) {
        CTempFolder folder;
        folder.Write(L"a.php", ("<?php " + php).toStdString());
        QProcess process;
        process.start(PROGRAM, {"project", "--format", "json", Kesh::Host::PathToQt(folder.Path(L""))});
        EXPECT_TRUE(process.waitForFinished(60000));
        return json::parse(process.readAllStandardOutput().toStdString());
    }
    return Check(QStringList{"--stdin-path", "a.php", "-"} + options, ("<?php " + php).toUtf8());
}

/// How the example of a section is checked: the statement parsers alone have codes below 1000.
QStringList OptionsOf(const QRegularExpressionMatch& section)
{
    static const QRegularExpression version("`(--php-version) ([0-9.]+)`");
    const auto named = version.match(section.captured(0));
    if (named.hasMatch())
        return {named.captured(1), named.captured(2)};
    if (section.captured(0).contains("when the whole project was checked"))
        return {AsProject};
    return section.captured(1).toInt() < 1000 ? QStringList{"--no-grammar"} : QStringList();
}

QString TextOf(const char* name)
{
    QFile file(QString(SOURCE_DIR) + name);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << name;
    return QString::fromUtf8(file.readAll());
}

/// The rows of a table in the list of errors.
QRegularExpressionMatchIterator RowsOfErrors(const QString& pattern)
{
    const QRegularExpression row(pattern, QRegularExpression::MultilineOption);
    return row.globalMatch(TextOf("/docs/errors.md"));
}

/// What a list of errors has in any language: for each section its title, its severity, whether it says what
/// mends the error, and, letter for letter, its code; for each row of a table its code.
struct SListed
{
    QString heading; ///< "1001: Expected ';' (error)"
    std::vector<std::string> code;
    bool operator==(const SListed&) const = default;
};

std::vector<SListed> ListedIn(const QString& list, const QString& error, const QString& warning,
                              const QString& mend)
{
    static const QRegularExpression title("^\\*\\*(.*)\\*\\* \\((.*)\\)$",
                                          QRegularExpression::MultilineOption);
    static const QRegularExpression block("```php\n([^`]*)\n```");
    static const QRegularExpression row("^\\| (\\d+) \\| (`.*?[^\\\\]`) \\|",
                                        QRegularExpression::MultilineOption);
    std::vector<SListed> listed;
    for (const QString& section : list.split("\n## ").mid(1)) {
        SListed& found = listed.emplace_back();
        const auto named = title.match(section);
        if (named.hasMatch() && section.contains("\n```\n\n" + mend + ' '))
            found.heading = section.section('\n', 0, 0) + ": " + named.captured(1) +
                            (named.captured(2) == error     ? " (error)"
                             : named.captured(2) == warning ? " (warning)"
                                                            : "");
        for (auto blocks = block.globalMatch(section); blocks.hasNext();)
            found.code.push_back(blocks.next().captured(1).toStdString());
        for (auto rows = row.globalMatch(section); rows.hasNext();) {
            const auto match = rows.next();
            found.code.push_back((match.captured(1) + ' ' + match.captured(2)).toStdString());
        }
    }
    return listed;
}

} // namespace

TEST(Documents, EveryExampleOfAnErrorGivesIt)
{
    std::set<int> explained;
    for (auto sections = RowsOfErrors(
             R"(^## (\d+)\n\n\*\*(.*)\*\* \((error|warning)\)\n\n(?:(?!\n## )[^`]|`(?!``))+?\n\n)"
             R"(```php\n([^`]*)\n```\n\nTo fix it: \S)");
         sections.hasNext();) {
        const auto match = sections.next();
        const int code = match.captured(1).toInt();
        explained.insert(code);
        const SDiagnosticKind* kind = FindKind(code);
        ASSERT_NE(kind, nullptr) << code;
        EXPECT_EQ(match.captured(2).toStdString(), kind->title);
        const json records = CheckExample(match.captured(4), OptionsOf(match));
        ASSERT_FALSE(records.empty()) << match.captured(4).toStdString();
        for (const json& record : records) {
            EXPECT_EQ(record["code"], code) << match.captured(4).toStdString();
            EXPECT_EQ(record["severity"], match.captured(3).toStdString());
            // All that the message has a place for is known.
            EXPECT_TRUE(*kind->message == 0 || record["message"] != kind->title) << record.dump();
        }
    }
    // Every code that is ever reported has its section, and no section is of another form.
    for (const SDiagnosticKind& kind : Catalog)
        EXPECT_EQ(explained.count(kind.code), kind.code != 103 && kind.code != 253 ? 1U : 0U) << kind.code;
    std::size_t headings = 0;
    for (auto rows = RowsOfErrors("^## \\d"); rows.hasNext(); rows.next())
        ++headings;
    EXPECT_EQ(explained.size(), headings);
}

TEST(Documents, TheGermanListHasEveryErrorWithTheSameExample)
{
    const json texts = json::parse(TextOf("/resources/translations/de.json").toStdString());
    std::vector<SListed> expected = ListedIn(TextOf("/docs/errors.md"), "error", "warning", "To fix it:");
    for (SListed& section : expected)
        if (const SDiagnosticKind* kind = FindKind(section.heading.section(':', 0, 0).toInt()))
            section.heading.replace(kind->title, QString::fromStdString(texts.at(kind->title)));
    const auto german = [](const QString& list) { return ListedIn(list, "Fehler", "Warnung", "Abhilfe:"); };
    const QString list = TextOf("/docs/errors.de.md");
    const std::vector<SListed> found = german(list);
    EXPECT_GT(expected.size(), 200U);
    EXPECT_EQ(expected.back().code.size(), 14U);
    ASSERT_EQ(found.size(), expected.size());
    for (std::size_t i = 0; i < found.size(); ++i) {
        EXPECT_EQ(found[i].heading.toStdString(), expected[i].heading.toStdString());
        EXPECT_EQ(found[i].code, expected[i].code) << expected[i].heading.toStdString();
    }
    // No slip goes through.
    const auto damaged = [&](const char* from, const char* to) {
        QString copy = list;
        EXPECT_TRUE(copy.contains(from)) << from;
        return german(copy.replace(from, to));
    };
    EXPECT_NE(damaged("## 1002\n", "### 1002\n"), expected);
    EXPECT_NE(damaged("f(1, 2;", "f(1, 3;"), expected);
    EXPECT_NE(damaged("**')' erwartet** (Fehler)", "**')' erwartet** (Warnung)"), expected);
    EXPECT_NE(damaged("Abhilfe: an der markierten Stelle eine `)`", "An der markierten Stelle eine `)`"),
              expected);
    EXPECT_NE(damaged("`global $a ?>`", "`global $b ?>`"), expected);
}

TEST(Documents, WhatOnlyTheStatementParsersReportIsListedAsItIs)
{
    int count = 0;
    for (auto rows = RowsOfErrors("^\\| (\\d+) \\| `(.*)` \\| [^|]* \\|$"); rows.hasNext(); ++count) {
        const auto match = rows.next();
        const QString example = match.captured(2).replace("\\|", "|");
        for (const json& record : CheckExample(example, {}))
            EXPECT_EQ(record["severity"], "warning") << example.toStdString();
        const json records = CheckExample(example, {"--no-grammar"});
        ASSERT_FALSE(records.empty()) << example.toStdString();
        EXPECT_EQ(records[0]["code"], match.captured(1).toInt()) << example.toStdString();

        QProcess php;
        php.start("php", {"-l"});
        php.write("<?php " + example.toUtf8());
        php.closeWriteChannel();
        ASSERT_TRUE(php.waitForFinished(-1));
        EXPECT_EQ(php.exitCode(), 0) << example.toStdString();
    }
    EXPECT_EQ(count, 14);
}

TEST(Documents, TheExampleSiteHasItsPlantedMistakesAndNoOthers)
{
    const std::set<std::string> planted{
        "config.php:6 1035",           "public/about.html:11 2002", "public/shop.css:12 2502",
        "public/shop.css:16 2501",     "src/Cart.php:17 1001",      "src/Cart.php:26 254",
        "src/Cart.php:30 254",         "src/Cart.php:38 901",       "src/Catalogue.php:6 1013",
        "src/Log.php:11 1013",         "src/Mailer.php:11 1002",    "src/helpers.php:11 1002",
        "src/helpers.php:20 302",      "src/helpers.php:21 302",    "templates/list.phtml:3 2002",
        "templates/list.phtml:10 2001"};
    std::set<std::string> found;
    for (const json& record : Check({"examples"})) {
        const std::string path = record["file"];
        found.insert(path.substr(path.find('/') + 1) + ":" + std::to_string(record["startLine"].get<int>()) +
                     " " + std::to_string(record["code"].get<int>()));
    }
    EXPECT_EQ(found, planted);
}
