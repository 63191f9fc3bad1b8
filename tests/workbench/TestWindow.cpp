#include "CodeEditor.h"
#include "EditorTheme.h"
#include "ErrorHelp.h"
#include "Files/FilePath.h"
#include "FindBar.h"
#include "Kesh/CodeAnalyzer/Catalog.h"
#include "Languages.h"
#include "MessageStrip.h"
#include "Preferences.h"
#include "SettingsDialog.h"
#include "Severity.h"
#include "WorkbenchFixture.h"

#include <QAbstractItemView>
#include <QAccessible>
#include <QAction>
#include <QComboBox>
#include <QDockWidget>
#include <QHeaderView>
#include <QLabel>
#include <QMenuBar>
#include <QRegularExpression>
#include <QTest>
#include <Qsci/qscilexer.h>
#include <QtMath>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>

using namespace Kesh;

namespace {

class Window : public CWorkbenchTest
{
};

class CCloseEvents final : public QObject
{
public:
    bool eventFilter(QObject*, QEvent* event) override
    {
        m_count += event->type() == QEvent::Close;
        return false;
    }
    int m_count = 0;
};

TEST_F(Window, ThePlugInsMenuEntryShowsTheErrors)
{
    QDockWidget* dock = CWorkbenchTest::Window().GetFrame().GetDocks().first();
    dock->hide();
    QAction* show = nullptr;
    for (QAction* top : CWorkbenchTest::Window().menuBar()->actions())
        if (top->text() == "&Tools")
            show = top->menu()->actions().first()->menu()->actions().first();
    ASSERT_NE(show, nullptr);
    EXPECT_EQ(show->text(), "Show errors");
    show->trigger();
    EXPECT_TRUE(dock->isVisible());
    EXPECT_EQ(dock->windowTitle(), "Errors");
}

TEST_F(Window, LayoutColumnsAndRecentProjectsOutliveTheWindow)
{
    std::filesystem::create_directory(Host::PathToBytes(m_folder.Path(L"project")));
    OpenProject(m_folder.Path(L"project"));
    Bar()->header()->resizeSection(1, 333);
    CWorkbenchTest::Window().findChild<QDockWidget*>("projectTree")->hide();
    ASSERT_TRUE(CloseByUser());
    OpenWindow();
    EXPECT_EQ(Bar()->header()->sectionSize(1), 333);
    EXPECT_TRUE(CWorkbenchTest::Window().findChild<QDockWidget*>("projectTree")->isHidden());
    EXPECT_EQ(Workbench::CPreferences(*m_settings).GetRecentProjects(),
              QStringList{Host::PathToQt(m_folder.Path(L"project"))});
}

TEST_F(Window, TheSessionComesBack)
{
    const std::wstring a =
        m_folder.Write(L"project/a.php", "<?php\nfunction f()\n{\n    return 1;\n}\n$a = 1;\n");
    const std::wstring b = m_folder.Write(L"project/b.php", "<?php\n");
    const std::wstring gone = m_folder.Write(L"gone.php", "<?php\n");
    OpenProject(m_folder.Path(L"project"));
    Workbench::CCodeEditor& first = Open(a);
    first.SetFolds({2});
    ASSERT_EQ(first.contractedFolds(), QList<int>{2});
    first.SetCaretPosition({3, 5});
    Open(gone);
    Open(b);
    Area().GetTabs().setCurrentIndex(0);
    ASSERT_TRUE(CloseByUser());
    std::filesystem::remove(Host::PathToBytes(gone));
    OpenWindow();
    EXPECT_EQ(Area().GetTabs().count(), 0) << "a path on the command line has it start afresh";
    CWorkbenchTest::Window().Begin();
    ASSERT_TRUE(WaitFor([&] { return Project().IsOpened(); }));
    ASSERT_EQ(Area().GetTabs().count(), 2);
    EXPECT_EQ(Area().GetCurrent()->GetPath(), a);
    EXPECT_EQ(Area().GetCurrentEditor()->GetCaretPosition(), (SyntaxParser::CIterator{3, 5}));
    EXPECT_EQ(Area().GetCurrentEditor()->contractedFolds(), QList<int>{2});
    EXPECT_EQ(Area().GetMessageStrip().GetText(), QString()) << "nothing is said of what is gone";
}

// The window goes at once, the program when the project's errors are on disk.
TEST_F(Window, ClosingWaitsForWhatIsKept)
{
    m_folder.Write(L"project/a.php", "<?php\nelse;\n");
    OpenProject(m_folder.Path(L"project"));
    ASSERT_TRUE(WaitForRows(1));
    auto held = Project().GetProjectData();
    EXPECT_FALSE(CWorkbenchTest::Window().close());
    EXPECT_FALSE(CWorkbenchTest::Window().isVisible());
    QTest::qWait(100);
    EXPECT_TRUE(CWorkbenchTest::Window().GetApplication().Project().IsDataHeld());
    CCloseEvents closings;
    CWorkbenchTest::Window().installEventFilter(&closings);
    held.reset();
    EXPECT_TRUE(WaitFor([&] { return closings.m_count > 0; })) << "it goes on by itself";
    EXPECT_FALSE(CWorkbenchTest::Window().isVisible());
    EXPECT_THAT(Host::ReadFileBytes(m_folder.Path(L"project/.code-analyzer/errors")),
                ::testing::HasSubstr("a.php"));
}

TEST_F(Window, WhatCannotBeKeptBringsTheWindowBack)
{
    const std::wstring file = m_folder.Write(L"project/a.php", "<?php\nelse;\n");
    m_folder.Write(L"project/.code-analyzer", "in the way");
    OpenProject(m_folder.Path(L"project"));
    Open(file);
    EXPECT_FALSE(CWorkbenchTest::Window().close());
    const auto said = [this] { return Area().GetMessageStrip().GetText(); };
    ASSERT_TRUE(WaitFor([&] { return CWorkbenchTest::Window().isVisible(); }));
    EXPECT_EQ(said(), "The project's errors could not be kept: Not a directory");
    EXPECT_FALSE(Project().IsOpened());
    EXPECT_TRUE(CWorkbenchTest::Window().close()) << "it has been said";
    const Workbench::SSession session = Workbench::CPreferences(*m_settings).GetSession();
    EXPECT_EQ(session.project, Host::PathToQt(m_folder.Path(L"project")));
    ASSERT_EQ(session.files.size(), 1u);
}

TEST_F(Window, TheDialogChangesWhatTheUserChooses)
{
    Workbench::SChoices choices;
    choices.customTags = QStringList{"x-a"};
    choices.columnWidths = {100, 200, 300};
    Workbench::CSettingsDialog dialog(choices, Workbench::GetLanguages({}), &CWorkbenchTest::Window());
    EXPECT_EQ(dialog.GetChoices(), choices) << "showing them changes nothing";
    dialog.findChild<QWidget*>("customTags")->setFocus();
    dialog.show();
    choices.appearance = Workbench::EAppearance::Dark;
    choices.fontSize = 14;
    choices.checksMarkup = false;
    CWorkbenchTest::Window().ApplyChoices(choices);
    EXPECT_EQ(Workbench::CPreferences(*m_settings).GetChoices(), choices);
    EXPECT_EQ(Bar()->header()->sectionSize(1), 200);
}

TEST_F(Window, GermanTextsReplaceTheKeys)
{
    Workbench::SChoices choices;
    choices.language = "de";
    Workbench::CPreferences(*m_settings).SetChoices(choices);
    OpenWindow();
    EXPECT_EQ(CWorkbenchTest::Window().menuBar()->actions().first()->text(), "&Datei");
    EXPECT_EQ(Bar()->headerItem()->text(1).trimmed(), "Datei");
    EXPECT_EQ(CWorkbenchTest::Window().GetFrame().GetDocks().first()->windowTitle(), "Fehler");
    Open(m_folder.Write(L"seite.html", "<html>\n<bdy>\n"));
    ASSERT_TRUE(WaitForRows(1));
    EXPECT_THAT(Rows()[0].toStdString(), ::testing::StartsWith("Fehler|"));
}

TEST_F(Window, WhatMendsIsNamedInGermanToo)
{
    Workbench::SChoices choices;
    choices.language = "de";
    Workbench::CPreferences(*m_settings).SetChoices(choices);
    OpenWindow();
    auto* help = CWorkbenchTest::Window().findChild<Workbench::CErrorHelp*>();
    const auto& editor = Open(
        m_folder.Write(L"a.php", "<strng>x</strng>\n<?php\n// code-analyzer-ignore 302\n$a = 1\n$b = 2;\n"));
    // A missing character, and what is idle.
    ASSERT_TRUE(WaitFor([&] { return Underlines(const_cast<Workbench::CCodeEditor&>(editor)).size() == 2; }));
    std::set<std::string> titles;
    for (int line = 0; line < 5; ++line) {
        Area().GetCurrentEditor()->SetCaretPosition({1, line});
        for (const Findings::SQuickFix& fix : help->GetFixes()) {
            const QString title = Workbench::CErrorHelp::TitleOf(fix);
            EXPECT_FALSE(title.contains(QRegularExpression("^(Insert|Remove|Replace|Add|Ignore) ")))
                << "not translated";
            titles.insert(title.toStdString());
        }
    }
    EXPECT_THAT(titles,
                ::testing::IsSupersetOf({"Durch 'strong' ersetzen", "Fehler 2001 hier ignorieren",
                                         "Fehler 2001 in diesem Projekt ignorieren",
                                         "'strng' zu den eigenen Namen des Projekts hinzuf\xC3\xBCgen"}));
    EXPECT_GE(titles.size(), 6u);
}

TEST_F(Window, DarkColoursAreLegible)
{
    Workbench::SChoices choices;
    choices.appearance = Workbench::EAppearance::Dark;
    CWorkbenchTest::Window().ApplyChoices(choices);
    Open(m_folder.Write(L"page.php",
                        "<html>\n<!-- comment -->\n<p class=\"a\">text</p>\n<?php\n// note\nif ($a === 'x') "
                        "{\n    echo \"$b[1] text\", 12.5; # more\n}\n?>\n<zz>\n"));
    ASSERT_TRUE(WaitForRows(1));
    QTest::qWait(100);
    choices.appearance = Workbench::EAppearance::System;
    CWorkbenchTest::Window().ApplyChoices(choices);
}

TEST_F(Window, OnlyBracketsAreMatched)
{
    auto& editor = Open(m_folder.Write(L"a.php", "<?php f($a->b[1], {2}); // <\n"));
    // The widget keeps what it highlights to itself; it tells only by its looks.
    const auto lookOf = [&](int column, bool focused) {
        editor.SetCaretPosition({focused ? column : 28, 0});
        QTest::qWait(30);
        editor.setCaretLineVisible(false);
        return editor.grab(QRect(PointOf(editor, 0, column), QSize(8, 14))).toImage();
    };
    editor.setCaretWidth(0);
    const struct
    {
        int column;
        bool isBracket;
    } cases[] = {{0, false}, {7, true},  {11, false}, {13, true},
                 {15, true}, {18, true}, {20, true},  {21, true}};
    for (const auto& [column, isBracket] : cases)
        EXPECT_EQ(lookOf(column, true) != lookOf(column, false), isBracket) << column;
}

TEST_F(Window, TodaysWordsAreColoured)
{
    auto& editor = Open(m_folder.Write(
        L"a.php",
        "<?php\nnamespace A; final readonly class B { public const C = 1; } enum D {} match fn foo\n"));
    editor.SendScintilla(QsciScintillaBase::SCI_COLOURISE, 0UL, -1L);
    const auto styleOf = [&](const char* word) {
        return editor.SendScintilla(QsciScintillaBase::SCI_GETSTYLEAT,
                                    static_cast<unsigned long>(editor.text().indexOf(word)));
    };
    const long keyword = styleOf("class");
    for (const char* word : {"namespace", "final", "readonly", "public", "const", "enum", "match", "fn"})
        EXPECT_EQ(styleOf(word), keyword) << word;
    EXPECT_NE(styleOf("foo"), keyword);
}

TEST_F(Window, EverythingHasANameForThoseWhoDoNotSee)
{
    Open(m_folder.Write(L"a.php", "<?php\n"));
    Area().GetFindBar().Open();
    int named = 0;
    for (QWidget* widget : CWorkbenchTest::Window().findChildren<QWidget*>()) {
        // What is inside a combo box or a view speaks through it.
        const bool isPart = qobject_cast<QAbstractItemView*>(widget->parentWidget()) ||
                            qobject_cast<QComboBox*>(widget->parentWidget()) ||
                            qobject_cast<QAbstractScrollArea*>(widget->parentWidget());
        if (!widget->isVisible() || !(widget->focusPolicy() & Qt::TabFocus) || isPart)
            continue;
        QAccessibleInterface* face = QAccessible::queryAccessibleInterface(widget);
        ASSERT_NE(face, nullptr);
        EXPECT_FALSE(face->text(QAccessible::Name).isEmpty())
            << widget->metaObject()->className() << ' ' << widget->objectName().toStdString();
        EXPECT_NE(face->role(), QAccessible::NoRole);
        ++named;
    }
    EXPECT_GT(named, 8);
}

double ContrastOf(const QColor& first, const QColor& second)
{
    const auto luminance = [](const QColor& c) {
        const auto linear = [](double v) {
            return v <= 0.03928 ? v / 12.92 : std::pow((v + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(c.redF()) + 0.7152 * linear(c.greenF()) + 0.0722 * linear(c.blueF());
    };
    const double a = luminance(first) + 0.05, b = luminance(second) + 0.05;
    return std::max(a, b) / std::min(a, b);
}

TEST(Theme, TextCanBeReadInBothAppearances)
{
    using Role = QPalette::ColorRole;
    const std::pair<Role, Role> pairs[] = {
        {QPalette::Text, QPalette::Base},          {QPalette::WindowText, QPalette::Window},
        {QPalette::ButtonText, QPalette::Button},  {QPalette::ToolTipText, QPalette::ToolTipBase},
        {QPalette::Link, QPalette::Window},        {QPalette::HighlightedText, QPalette::Highlight},
        {QPalette::Text, QPalette::AlternateBase}, {QPalette::PlaceholderText, QPalette::Base},
        {QPalette::Link, QPalette::Base}};
    for (const Workbench::EAppearance appearance :
         {Workbench::EAppearance::Light, Workbench::EAppearance::Dark}) {
        const QPalette palette = Workbench::MakePalette(appearance, QPalette());
        for (const auto& [text, ground] : pairs)
            EXPECT_GE(ContrastOf(palette.color(text), palette.color(ground)), 4.5)
                << static_cast<int>(appearance) << ' ' << text << " on " << ground;
        for (const Workbench::ESeverity severity :
             {Workbench::ESeverity::Error, Workbench::ESeverity::Warning})
            for (const Role ground : {QPalette::Base, QPalette::Window}) {
                const QColor color = palette.color(ground);
                EXPECT_GE(ContrastOf(Workbench::ColorOf(severity, color), color), 4.5);
            }
        Workbench::CCodeEditor editor;
        editor.setPalette(palette);
        editor.SetLanguageByPath(L"a.php");
        Workbench::ApplyTheme(editor, 10);
        for (int style = 0; style < 128; ++style)
            if (!editor.lexer()->description(style).isEmpty()) {
                EXPECT_GE(ContrastOf(editor.lexer()->color(style), editor.lexer()->paper(style)), 4.5)
                    << editor.lexer()->description(style).toStdString();
            }
    }
}

TEST(Theme, MadeLegibleColoursHaveContrast)
{
    for (const QColor& background :
         {QColor(Qt::white), QColor(30, 30, 30), QColor(Qt::black), QColor(120, 120, 120)})
        for (const QColor& color :
             {QColor(0, 0, 128), QColor(255, 255, 0), QColor(127, 0, 127), background}) {
            const QColor legible = Workbench::MakeLegible(color, background);
            EXPECT_GE(ContrastOf(legible, background), 4.5)
                << color.name().toStdString() << " on " << background.name().toStdString();
        }
    EXPECT_EQ(Workbench::MakeLegible(Qt::black, Qt::white), QColor(Qt::black)) << "what is legible stays";
}

/// The texts that the sources look up.
std::set<std::string> KeysInSources()
{
    std::set<std::string> keys;
    const QRegularExpression call(
        R"re((?:LoadStr|Tr|MakeNote|AddAction|button|edit|zoom)\s*\(\s*(?:menu,\s*)?((?:"(?:[^"\\]|\\.)*"\s*)+))re");
    // Features of PHP's versions, and what is at a related place.
    const QRegularExpression row(R"re(PHP_FEATURE\(\w+, \d+, \d+, "([^"]+)"|"([A-Z][^"]* here)")re");
    const QRegularExpression piece(R"re("((?:[^"\\]|\\.)*)")re");
    for (const char* folder : {"/apps/workbench", "/CodeAnalyzer"})
        for (const auto& entry :
             std::filesystem::recursive_directory_iterator(SOURCE_DIR + std::string(folder))) {
            if (!entry.is_regular_file())
                continue;
            std::ifstream file(entry.path());
            const std::string text((std::istreambuf_iterator<char>(file)), {});
            for (auto rows = row.globalMatch(QString::fromStdString(text)); rows.hasNext();) {
                const auto match = rows.next();
                QString key = match.captured(1).isEmpty() ? match.captured(2) : match.captured(1);
                keys.insert(key.replace("?\\?", "??").toStdString());
            }
            for (auto calls = call.globalMatch(QString::fromStdString(text)); calls.hasNext();) {
                QString key;
                for (auto pieces = piece.globalMatch(calls.next().captured(1)); pieces.hasNext();)
                    key += pieces.next().captured(1);
                keys.insert(key.toStdString());
            }
        }
    return keys;
}

TEST(Translation, GermanKnowsEveryText)
{
    QString problem;
    const auto german = Workbench::LoadLanguage("de", {}, problem);
    EXPECT_EQ(problem, QString());
    std::set<std::string> keys = KeysInSources();
    EXPECT_GT(keys.size(), 80u) << "the search finds the calls";
    // Looked up through tables and commands, not by a call that the search sees.
    for (const char* key :
         {"Type     ", "File     ", "Description      ", "Errors", "&Tools", "Code validator", "Show errors",
          "Check project...", "Udefined error", "Insert '{what}'", "Remove '{what}'", "Replace by '{what}'",
          "Add '{what}' to the project's own names", "Remove this line", "Remove this comment",
          "Ignore error {what} here", "Ignore error {what} in this project", "the end of the file"})
        keys.insert(key);
    for (const CodeAnalyzer::SDiagnosticKind& kind : CodeAnalyzer::Catalog)
        for (const char* key : {kind.title, kind.message})
            if (*key)
                keys.insert(key);
    for (const std::string& key : keys)
        EXPECT_FALSE(german->Translate(key.c_str()).empty()) << '"' << key << '"';
}

TEST(Translation, ABadFileIsNamedAndEnglishIsUsed)
{
    const CTempFolder folder;
    folder.Write(L"xx.json", "{");
    QString problem;
    const auto texts = Workbench::LoadLanguage("xx", Host::PathToQt(folder.Path()), problem);
    EXPECT_TRUE(problem.contains("xx.json"));
    EXPECT_EQ(texts->Translate("Errors"), L"");
    problem.clear();
    Workbench::LoadLanguage("yy", Host::PathToQt(folder.Path()), problem);
    EXPECT_FALSE(problem.isEmpty());
}

} // namespace
