#include "ErrorPanel.h"
#include "Files/FilePath.h"
#include "WorkbenchFixture.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLabel>
#include <QProcess>
#include <QTest>
#include <gmock/gmock.h>

using namespace Kesh;

namespace {

/// A project whose errors are partly not wanted: by comments, by its settings, by its baseline.
class Silenced : public CWorkbenchTest
{
protected:
    Silenced()
    {
        m_folder.Write(L"p/a.php", "<?php\nelse; // code-analyzer-ignore 252\nelse;\n"
                                   "$a = 1; // code-analyzer-ignore\n");
        m_folder.Write(L"p/b.php", "<?php\n  else;\n$caf\xE9;\nelse;\n");
        m_folder.Write(L"p/clean.php", "<?php\n// code-analyzer-ignore 901, 252\n$a = 1;\n");
        m_folder.Write(L"p/typo.php", "<?php\n$a = 1; // Code-Analyzer-Ignore\n");
        m_folder.Write(L"p/c.html", "<pp>\n<!-- code-analyzer-ignore -->\n<qq>\n");
        m_folder.Write(L"p/old/d.php", "<?php\nelse;\n");
        m_folder.Write(L"p/warn.php", "<?php\nelse;\nif ($a);\n");
        m_folder.Write(L"p/base.json", R"({"version": 1, "findings": [
            {"file": "b.php", "code": 252, "line": "else;"}, {"file": "c.html", "code": 2001, "line": "<pp>"}]})");
        WriteSettings(R"({"grammar": false, "exclude": ["old"], "baseline": "base.json",
            "codes": {"901": "off"}, "overrides": [{"paths": ["warn.php"], "codes": {"252": "warning"}}]})");
    }
    void WriteSettings(const std::string& text) { m_folder.Write(L"p/code-analyzer.json", text); }
    /// What the command line says of the project.
    std::vector<std::string> Checked()
    {
        QProcess program;
        program.setWorkingDirectory(Host::PathToQt(m_folder.Path(L"p")));
        program.start(CHECK_PROGRAM, {"check", "--format", "json", "."});
        program.waitForFinished();
        std::vector<std::string> lines;
        for (const QJsonValue& value : QJsonDocument::fromJson(program.readAllStandardOutput()).array()) {
            const QJsonObject finding = value.toObject();
            lines.push_back(QStringLiteral("%1:%2 %3 %4")
                                .arg(finding["file"].toString().remove(QStringLiteral("./")))
                                .arg(finding["startLine"].toInt())
                                .arg(finding["code"].toInt())
                                .arg(finding["severity"].toString())
                                .toStdString());
        }
        std::sort(lines.begin(), lines.end());
        return lines;
    }
    /// What the list shows.
    std::vector<std::string> Listed()
    {
        auto* panel = Window().findChild<Workbench::CErrorPanel*>();
        std::vector<std::string> lines;
        for (int i = 0; i < Bar()->topLevelItemCount(); ++i) {
            const QTreeWidgetItem* item = Bar()->topLevelItem(i);
            if (const auto row = panel->GetRow(item))
                lines.push_back(QStringLiteral("%1:%2 %3 %4")
                                    .arg(Host::PathToQt(row->file.substr(m_folder.Path(L"p").size() + 1)))
                                    .arg(row->error.pos.start.y + 1)
                                    .arg(row->error.code)
                                    .arg(QLatin1String(
                                        row->error.type == CodeAnalyzer::SeverityError ? "error" : "warning"))
                                    .toStdString());
        }
        std::sort(lines.begin(), lines.end());
        return lines;
    }
    void ExpectTheSame(const char* when)
    {
        const std::vector<std::string> checked = Checked();
        EXPECT_TRUE(WaitFor([&] { return Listed() == checked; }));
        EXPECT_EQ(Listed(), checked) << when;
        const auto errors = std::count_if(checked.begin(), checked.end(),
                                          [](const std::string& line) { return line.ends_with(" error"); });
        const QString counts = QStringLiteral("Errors: %1, warnings: %2")
                                   .arg(errors)
                                   .arg(static_cast<qlonglong>(checked.size()) - errors);
        EXPECT_TRUE(WaitFor([&] { return Window().findChild<QLabel*>("errorCounts")->text() == counts; }))
            << counts.toStdString();
    }
};

TEST_F(Silenced, TheListShowsWhatTheCommandLineSays)
{
    ASSERT_GT(Checked().size(), 5u);
    OpenProject(m_folder.Path(L"p"));
    ExpectTheSame("opened");
    EXPECT_THAT(Listed(), ::testing::Contains("clean.php:2 9001 warning"));
    EXPECT_THAT(Listed(), ::testing::Contains("typo.php:2 9002 warning"));
    ASSERT_TRUE(Window().CloseProject());
    EXPECT_TRUE(WaitForRows(0));
    OpenProject(m_folder.Path(L"p"));
    ExpectTheSame("opened again");
    WriteSettings(R"({"grammar": false})");
    Trigger("&Look for new files");
    ASSERT_TRUE(WaitFor([&] {
        const auto rules = Window().GetErrorWatch()->GetRules()->For(m_folder.Path(L"p/"));
        return !rules->settings.grammar.value_or(true) && rules->settings.exclude.empty();
    }));
    ExpectTheSame("with other settings");
}

TEST_F(Silenced, TypingAndMendingChangesWhatIsSilent)
{
    OpenProject(m_folder.Path(L"p"));
    auto& editor = Open(m_folder.Path(L"p/a.php"));
    ASSERT_TRUE(WaitFor([&] { return Underlines(editor) == QStringList{"2:0-2:4"}; }));
    EXPECT_EQ(Underlines(editor, true).size(), 1) << "a comment that ignores nothing";
    editor.insertAt(" // code-analyzer-ignore", 2, 5);
    EXPECT_TRUE(WaitFor([&] { return Underlines(editor).isEmpty(); }));
    Trigger("&Save");
    ExpectTheSame("a comment more");
    editor.SetContent(L"<?php\nelse;\n");
    editor.setModified(true);
    emit editor.textChanged();
    EXPECT_TRUE(
        WaitFor([&] { return Underlines(editor).size() == 1 && Underlines(editor, true).isEmpty(); }));
    Trigger("&Save");
    ExpectTheSame("all comments gone");
}

} // namespace
