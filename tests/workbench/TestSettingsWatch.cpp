// What a project's settings say holds as soon as they say it, whoever has written them.
#include "Files/FilePath.h"
#include "MessageStrip.h"
#include "Preferences.h"
#include "WorkbenchFixture.h"

#include <QDockWidget>
#include <QLabel>
#include <QTest>
#include <filesystem>
#include <gmock/gmock.h>

using namespace Kesh;
namespace fs = std::filesystem;

namespace {

class SettingsWatch : public CWorkbenchTest
{
protected:
    /// As most programs do: another file takes the place of the old one.
    void Replace(const std::wstring& name, const std::string& bytes)
    {
        m_folder.Write(L"new", bytes);
        fs::rename(Host::PathToBytes(m_folder.Path(L"new")), Host::PathToBytes(m_folder.Path(name)));
    }
};

TEST_F(SettingsWatch, ChangesAreAppliedByThemselves)
{
    m_folder.Write(L"p/a.php", "<?php\nif ($a);\n$b?->c();\n");
    m_folder.Write(L"p/sub/b.php", "<?php\nelse;\n");
    m_settings->GetStore().setValue("Workbench/grammar", true);
    OpenWindow();
    OpenProject(m_folder.Path(L"p"));
    const auto shows = [&](const char* what, int rows) {
        EXPECT_TRUE(WaitForRows(rows)) << what << ": " << Rows().join('\n').toStdString();
    };
    const int all = Bar()->topLevelItemCount();
    ASSERT_EQ(all, 2);
    Replace(L"p/code-analyzer.json", R"({"exclude": ["sub"]})");
    shows("the first settings", all - 1);
    m_folder.Write(L"p/code-analyzer.json", R"({"exclude": ["sub"], "codes": {"901": "off"}})");
    shows("written in place", all - 2);
    Replace(L"p/code-analyzer.json", "{\n\"exclude\": [\n");
    ASSERT_TRUE(WaitFor([&] { return Strip().contains("code-analyzer.json:"); }));
    shows("broken: as before", all - 2);
    Replace(L"p/code-analyzer.json", R"({"extends": "../base.json"})");
    ASSERT_TRUE(WaitFor([&] { return Strip().contains("base.json"); })) << Strip().toStdString();
    Replace(L"p/code-analyzer.json", R"({"extends": "sub/base.json"})");
    m_folder.Write(L"p/sub/base.json", R"({"codes": {"901": "off"}})");
    Trigger("&Look for new files");
    shows("mended", all - 1);
    EXPECT_EQ(Strip(), QString()) << "it is no problem any more";
    m_folder.Write(L"p/sub/base.json", R"({})");
    shows("what it adds to", all);
    m_folder.Write(L"p/composer.json", R"({"require": {"php": "^7.4"}})");
    shows("the version of PHP", all + 1);
    fs::remove(Host::PathToBytes(m_folder.Path(L"p/composer.json")));
    shows("the version is gone", all);
    Replace(L"p/code-analyzer.json", R"({"baseline": "old.json"})");
    ASSERT_TRUE(WaitFor([&] { return Strip().contains("old.json"); }));
    fs::remove(Host::PathToBytes(m_folder.Path(L"p/code-analyzer.json")));
    shows("none", all);
    EXPECT_TRUE(WaitFor([&] { return Strip().isEmpty(); }));
}

TEST_F(SettingsWatch, OtherFilesBotherNobody)
{
    m_folder.Write(L"p/a.php", "<?php\nelse;\n");
    m_folder.Write(L"p/code-analyzer.json", "{}");
    OpenProject(m_folder.Path(L"p"));
    int begun = 0; // checks of the project
    const auto watch = QObject::connect(&Window().GetFrame(), &Workbench::CMainFrame::progressTextChanged,
                                        [&](const QString& text) { begun += !text.isEmpty(); });
    m_folder.Write(L"p/notes.txt", "x");
    fs::permissions(Host::PathToBytes(m_folder.Path(L"p/a.php")), fs::perms::owner_all);
    QTest::qWait(600);
    EXPECT_EQ(begun, 0);
    QObject::disconnect(watch);
}

TEST_F(SettingsWatch, AProjectsSettingsHoldInTheWindowToo)
{
    m_folder.Write(L"project/a.php", "<?php\nif ($a);\nelse; else;\n");
    m_folder.Write(L"project/old/b.php", "<?php\nelse;\n");
    m_folder.Write(L"project/code-analyzer.json", R"({"codes": {"901": "off"}, "exclude": ["old"]})");
    OpenProject(m_folder.Path(L"project"));
    auto* counts = Window().findChild<QLabel*>("errorCounts");
    ASSERT_TRUE(WaitFor([&] { return counts->text() == "Errors: 1, warnings: 0"; }))
        << counts->text().toStdString();
    EXPECT_TRUE(WaitForRows(1)) << Bar()->topLevelItemCount();
    m_folder.Write(L"project/code-analyzer.json", "{");
    ASSERT_TRUE(Window().CloseProject());
    OpenProject(m_folder.Path(L"project"));
    EXPECT_TRUE(WaitFor([&] { return Area().GetMessageStrip().GetText().contains("code-analyzer.json:1"); }));
    EXPECT_TRUE(WaitForRows(4)) << "as if there were none";
}

TEST_F(SettingsWatch, TheUsersOwnNamesAreAcceptedAfterAChange)
{
    Open(m_folder.Write(L"page.html", "<mytag myattr=\"1\">x</mytag>\n<p other=\"\">\n"));
    ASSERT_TRUE(WaitForRows(2));
    Workbench::SChoices choices = Workbench::CPreferences(*m_settings).GetChoices();
    choices.customTags = QStringList{"MyTag"};
    choices.customAttributes = QStringList{"MYATTR"};
    Window().ApplyChoices(choices);
    ASSERT_NE(Bar(), nullptr);
    EXPECT_TRUE(WaitForRows(1)) << Rows().join('\n').toStdString();
    choices.customTags.clear();
    choices.customAttributes.clear();
    Window().ApplyChoices(choices);
    EXPECT_TRUE(WaitForRows(2)) << "a name that was taken away is unknown again";
    EXPECT_EQ(Window().GetFrame().GetDocks().size(), 1);
}

TEST_F(SettingsWatch, PatternsAndPresetsOfNamesAreAcceptedAfterAChange)
{
    Open(m_folder.Write(L"page.html", "<p mine-a=\"1\" @click=\"2\">x</p>\n"));
    ASSERT_TRUE(WaitForRows(2));
    Workbench::SChoices choices = Workbench::CPreferences(*m_settings).GetChoices();
    choices.customAttributes = QStringList{"Mine-*"};
    Window().ApplyChoices(choices);
    EXPECT_TRUE(WaitForRows(1)) << Rows().join('\n').toStdString();
    choices.presets = QStringList{"vue"};
    Window().ApplyChoices(choices);
    EXPECT_TRUE(WaitForRows(0)) << Rows().join('\n').toStdString();
    EXPECT_EQ(Workbench::CPreferences(*m_settings).GetChoices(), choices);
    choices.customAttributes.clear();
    choices.presets.clear();
    Window().ApplyChoices(choices);
    EXPECT_TRUE(WaitForRows(2)) << "what was taken away is unknown again";
}

} // namespace
