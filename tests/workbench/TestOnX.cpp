// On a real X server, with a window manager and real keys; run by on-x.sh.
#include "FindBar.h"
#include "JournalFolder.h"
#include "Languages.h"
#include "Preferences.h"
#include "QuickOpen.h"
#include "SettingsDialog.h"
#include "WorkbenchFixture.h"

#include <QAction>
#include <QDialog>
#include <QLabel>
#include <QListWidget>
#include <QMenu>
#include <QMenuBar>
#include <QProcess>
#include <QScreen>
#include <QTest>
#include <QThread>
#include <QTimer>
#include <QTreeWidget>
#include <chrono>
#include <random>

using namespace Kesh;
using Workbench::CCodeEditor;

namespace {

class OnX : public CWorkbenchTest
{
protected:
    void SetUp() override
    {
        ASSERT_EQ(QGuiApplication::platformName(), "xcb");
        Window().activateWindow();
        ASSERT_TRUE(WaitFor([&] { return Window().isActiveWindow(); }));
    }
    void Do(const QStringList& arguments)
    {
        ASSERT_EQ(QProcess::execute("xdotool", arguments), 0) << arguments.join(' ').toStdString();
        QTest::qWait(30);
    }
    void Press(const QString& key) { Do({"key", "--clearmodifiers", key}); }
    void PointAt(QWidget& widget, const QPoint& point)
    {
        const QPoint place = widget.mapToGlobal(point);
        Do({"mousemove", QString::number(place.x()), QString::number(place.y())});
    }
};

/// As xdotool names it.
QString KeyName(const QKeySequence& sequence)
{
    QString name = sequence.toString(QKeySequence::PortableText);
    name.replace("Ctrl+", "ctrl+").replace("Shift+", "shift+").replace("Alt+", "alt+");
    const QString key = name.section('+', -1);
    if (name.endsWith("++"))
        return name.chopped(1) + "plus";
    if (key == "-")
        return name.chopped(1) + "minus";
    if (key == "/")
        return name.chopped(1) + "slash";
    if (key == ",")
        return name.chopped(1) + "comma";
    return key.size() == 1 ? name.chopped(1) + key.toLower() : name;
}

TEST_F(OnX, EveryShortcutOfTheMenusWorks)
{
    m_folder.Write(L"p/a.php", "<?php\nelse;\n");
    OpenProject(m_folder.Path(L"p"));
    Open(m_folder.Path(L"p/a.php"));
    ASSERT_TRUE(WaitForRows(1));
    QList<QAction*> actions;
    for (QAction* action : Window().findChildren<QAction*>())
        if (!action->shortcut().isEmpty() && action->shortcutContext() != Qt::WidgetShortcut)
            actions.append(action);
    EXPECT_GT(actions.size(), 20);
    QAction* triggered = nullptr;
    for (QAction* action : actions) {
        action->disconnect(SIGNAL(triggered(bool)));
        QObject::connect(action, &QAction::triggered, [&triggered, action] { triggered = action; });
        action->setEnabled(true);
    }
    Area().GetCurrentEditor()->setFocus();
    const QString before = Area().GetCurrentEditor()->text();
    for (QAction* action : actions) {
        triggered = nullptr;
        Press(KeyName(action->shortcut()));
        EXPECT_TRUE(QTest::qWaitFor([&] { return triggered == action; }, 2000))
            << action->text().toStdString() << ' ' << KeyName(action->shortcut()).toStdString();
    }
    EXPECT_EQ(Area().GetCurrentEditor()->text(), before);
}

TEST_F(OnX, EditingKeysDoWhatTheMenuSays)
{
    CCodeEditor& editor = Open(m_folder.Write(L"a.php", "one"));
    editor.setFocus();
    const struct
    {
        const char* key;
        const char* text;
    } steps[] = {{"End", "one"},    {"x", "onex"},      {"ctrl+z", "one"},      {"ctrl+shift+z", "onex"},
                 {"ctrl+z", "one"}, {"ctrl+y", "onex"}, {"shift+Home", "onex"}, {"ctrl+c", "onex"},
                 {"ctrl+x", ""},    {"ctrl+v", "onex"}, {"ctrl+v", "onexonex"}};
    for (const auto& [key, text] : steps) {
        Press(key);
        EXPECT_TRUE(QTest::qWaitFor([&] { return editor.text() == text; }, 2000))
            << key << ": " << editor.text().toStdString();
    }
}

TEST_F(OnX, KeysReachWhatTheyAreFor)
{
    m_folder.Write(L"p/first.php", "<?php\nelse;\n");
    m_folder.Write(L"p/sub/second.php", "<?php\n");
    OpenProject(m_folder.Path(L"p"));
    Press("ctrl+p");
    auto* picker = Window().findChild<Workbench::CQuickOpen*>();
    ASSERT_TRUE(WaitFor([&] { return picker->isActiveWindow(); }));
    auto* list = picker->findChild<QListWidget*>();
    ASSERT_TRUE(WaitFor([&] { return list->count() == 2; }));
    Do({"type", "seco"});
    ASSERT_TRUE(WaitFor([&] { return list->count() == 1; }));
    Press("Return");
    ASSERT_TRUE(WaitFor([&] { return Area().GetCurrentEditor() && Area().GetCurrentEditor()->hasFocus(); }));
    CCodeEditor& editor = *Area().GetCurrentEditor();
    Press("ctrl+End");
    Do({"type", "if (1) {"});
    Press("Return");
    Do({"type", "f();"});
    Press("Return");
    Do({"type", "}"});
    EXPECT_TRUE(WaitFor([&] { return editor.text() == "<?php\nif (1) {\n\tf();\n}"; }))
        << editor.text().toStdString();
    Press("ctrl+z");
    Press("ctrl+z");
    EXPECT_TRUE(WaitFor([&] { return editor.text() == "<?php\nif (1) {\n\tf();"; }))
        << editor.text().toStdString();
    Press("ctrl+h");
    EXPECT_TRUE(WaitFor([&] { return Window().focusWidget()->objectName() == "findPattern"; }));
    Press("Tab");
    EXPECT_TRUE(WaitFor([&] { return Window().focusWidget()->objectName() == "findReplacement"; }));
    Press("Escape");
    Press("alt+3");
    ASSERT_TRUE(WaitFor([&] { return Bar()->hasFocus() && Bar()->topLevelItemCount() > 0; }));
    QStringList menus;
    QTimer watch;
    QObject::connect(&watch, &QTimer::timeout, [&] {
        if (QWidget* menu = QApplication::activePopupWidget()) {
            menus.append(menu->objectName());
            menu->close();
        }
    });
    watch.start(20);
    Press("shift+F10");
    EXPECT_TRUE(QTest::qWaitFor([&] { return !menus.isEmpty(); }));
    EXPECT_EQ(menus, QStringList{"errorMenu"}) << menus.join(' ').toStdString();
    Area().DiscardAll();
}

TEST_F(OnX, TheMessageShowsUnderThePointerAndItsLinkCanBeReached)
{
    CCodeEditor& editor = Open(m_folder.Write(L"page.html", "<html>\n<body>\n<pp>text</pp>\n"));
    ASSERT_TRUE(WaitFor([&] { return !Underlines(editor).isEmpty(); }));
    const auto tip = [&] { return editor.findChild<Workbench::CErrorTip*>("errorTip"); };
    const int y = PointOf(editor, 2, 0).y() + 5;
    for (const QPoint& point :
         {QPoint(3, y), QPoint(editor.marginWidth(0) + 4, y), PointOf(editor, 2, 1) + QPoint(2, 5)}) {
        PointAt(editor, {editor.width() / 2, editor.height() - 10});
        ASSERT_TRUE(WaitFor([&] { return !tip() || !tip()->isVisible(); }));
        PointAt(*editor.viewport(), point);
        PointAt(*editor.viewport(), point + QPoint(1, 0));
        ASSERT_TRUE(QTest::qWaitFor([&] { return tip() && tip()->isVisible(); }, 5000)) << point.x();
        EXPECT_TRUE(tip()->GetText().startsWith("Illegal HTML tag name 'pp'"))
            << tip()->GetText().toStdString();
    }
    // On the way into the tip it stays, and a link in it can be clicked.
    auto* label = tip()->findChild<QLabel*>();
    PointAt(*label, {3, 3});
    QTest::qWait(1000);
    ASSERT_TRUE(tip()->isVisible());
    for (int x = label->width() - 2; x > 0 && label->cursor().shape() != Qt::PointingHandCursor; x -= 6)
        PointAt(*label, {x, label->fontMetrics().height() / 2});
    ASSERT_EQ(label->cursor().shape(), Qt::PointingHandCursor);
    Do({"click", "1"});
    EXPECT_TRUE(WaitFor([&] { return Window().findChild<QDialog*>("explanation") != nullptr; }));
    EXPECT_FALSE(tip()->isVisible());
}

// The program itself, killed at a random moment and started again, over and over; KILLS says how often.
TEST_F(OnX, AKillLosesNothingThatIsOlderThanTwoSeconds)
{
    using TClock = std::chrono::steady_clock;
    const std::wstring file = m_folder.Write(L"a.php", "");
    const QString settings = Host::PathToQt(m_folder.Path(L"settings/workbench.ini"));
    CloseWindow(); // the keys are the program's
    const int kills = std::max(4, qEnvironmentVariableIntValue("KILLS"));
    const unsigned seed = std::random_device()();
    SCOPED_TRACE(seed);
    std::mt19937 random(seed);
    std::string kept;  // what the last kill has left
    double oldest = 0; // of what was lost, s
    for (int kill = 0; kill < kills; ++kill) {
        QProcess program;
        program.start(WORKBENCH_PROGRAM,
                      QStringList{"--settings", settings} +
                          (kept.empty() ? QStringList(Host::PathToQt(file)) : QStringList()));
        ASSERT_TRUE(program.waitForStarted());
        std::vector<TClock::time_point> typed;
        if (random() % 8 == 0) {
            QThread::msleep(random() % 1500); // before it is up
        } else {
            Do({"search", "--sync", "--onlyvisible", "--pid", QString::number(program.processId()),
                "windowactivate"});
            if (!kept.empty())
                Press("alt+r"); // "Restore"
            Press("alt+2");
            Press("ctrl+End");
            const auto end = TClock::now() + std::chrono::milliseconds(random() % 5000);
            while (TClock::now() < end) {
                Do({"key", QString(QChar('a' + static_cast<int>((kept.size() + typed.size()) % 26)))});
                typed.push_back(TClock::now());
            }
        }
        program.kill();
        const TClock::time_point killed = TClock::now();
        ASSERT_TRUE(program.waitForFinished());
        std::string left = kept.empty() ? std::string() : "nothing";
        std::int64_t noted = -1;
        for (Workbench::CJournalFolder& folder :
             Workbench::CJournalFolder::TakeAbandoned(m_folder.Path(L"settings/workbench.journal"))) {
            bool isComplete = false;
            for (const Workbench::SUnsavedText& text : folder.Read(isComplete).texts)
                if (text.noted > noted) {
                    left = text.text;
                    noted = text.noted;
                }
            EXPECT_TRUE(isComplete);
        }
        ASSERT_TRUE(left.starts_with(kept)) << kill << ": '" << left << "' after '" << kept << "'";
        for (std::size_t i = 0; i < left.size(); ++i)
            ASSERT_EQ(left[i], 'a' + static_cast<int>(i % 26)) << left;
        const std::size_t saved = left.size() - kept.size();
        ASSERT_LE(saved, typed.size());
        if (saved < typed.size()) {
            const std::chrono::duration<double> age = killed - typed[saved];
            oldest = std::max(oldest, age.count());
            EXPECT_LT(age.count(), 2.0) << kill << ": " << saved << " of " << typed.size();
        }
        kept = left;
    }
    std::printf("%d kills, %zu characters kept, the oldest that was lost was %.2f s old\n", kills,
                kept.size(), oldest);
    OpenWindow();
    Window().Begin();
    if (kept.empty())
        return;
    Answer("&Restore");
    EXPECT_EQ(Area().GetCurrentEditor()->text().toStdString(), kept);
    Area().DiscardAll();
}

/// With QT_SCALE_FACTOR=2 on a screen of 1366 x 768.
class OnScaledX : public CWorkbenchTest
{
};

TEST_F(OnScaledX, TheFirstWindowFitsTheScreen)
{
    CloseWindow();
    Host::CFileSettings settings(m_folder.Path(L"fresh/workbench.ini"));
    Workbench::CMainWindow window(settings, *m_translations);
    ASSERT_EQ(window.devicePixelRatioF(), 2.0);
    window.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&window));
    QTest::qWait(300); // for the window manager's frame
    const QRect available = window.screen()->availableGeometry();
    EXPECT_LE(available.width(), 683);
    EXPECT_TRUE(available.contains(window.frameGeometry()))
        << window.frameGeometry().width() << " x " << window.frameGeometry().height() << " at "
        << window.frameGeometry().x() << ", " << window.frameGeometry().y();
    // With files, errors and the longest texts too.
    window.OpenPath(m_folder.Write(L"a.php", "<?php\nelse;\n"));
    window.GetArea().GetFindBar().Open();
    QTest::qWait(300);
    EXPECT_TRUE(available.contains(window.frameGeometry()))
        << window.frameGeometry().width() << " x " << window.frameGeometry().height();
    window.GetArea().DiscardAll();
    // What ends the settings can be reached.
    Workbench::CSettingsDialog dialog(Workbench::CPreferences(settings).GetChoices(),
                                      Workbench::GetLanguages({}), &window);
    dialog.show();
    QTest::qWait(300);
    EXPECT_TRUE(available.contains(dialog.frameGeometry()))
        << dialog.frameGeometry().width() << " x " << dialog.frameGeometry().height();
    Shoot(dialog, "settings-scale-2");
}

} // namespace
