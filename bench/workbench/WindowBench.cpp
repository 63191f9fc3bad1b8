#include "Application/Settings.h"
#include "CodeEditor.h"
#include "DocumentArea.h"
#include "ErrorPanel.h"
#include "Files/FilePath.h"
#include "FindBar.h"
#include "LangSupport/Translations.h"
#include "MainWindow.h"
#include "ProjectManager/ProjectManager.h"
#include "ReplaceAll.h"
#include "TempFolder.h"
#include "Window/GuiApplication.h"

#include <QAction>
#include <QDockWidget>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QTest>
#include <QTreeWidget>
#include <benchmark/benchmark.h>
#include <ctime>
#include <functional>
#include <utility>

namespace Kesh::Benchmarks {

namespace {

constexpr std::size_t Megabyte = 1000000;
constexpr int Files = 1500;

std::string MakeText(std::size_t size)
{
    std::string text = "<?php\n";
    while (text.size() < size)
        text += "    $total = array_sum($this->items) + strlen(\"some text\"); // why\n";
    return text;
}

Host::CFileSettings& WithGrammar(Host::CFileSettings& settings, bool grammar)
{
    settings.GetStore().setValue("Workbench/grammar", grammar);
    return settings;
}

/// A window with settings of its own.
struct CWindow
{
    CTempFolder folder;
    Host::CFileSettings settings{folder.Path(L"settings.ini")};
    LangSupport::CTranslations translations;
    Workbench::CMainWindow window;

    /// Without the grammar check a file has as many errors as one likes.
    explicit CWindow(bool grammar = true) : window(WithGrammar(settings, grammar), translations)
    {
        window.resize(1200, 800);
        window.show();
        QTest::qWait(50);
    }
};

/// The folder that CODE_ANALYZER_BENCH_PROJECT names, or one with as many files as a large web application.
std::wstring ProjectFolder(const CTempFolder& folder)
{
    if (const QByteArray named = qgetenv("CODE_ANALYZER_BENCH_PROJECT"); !named.isEmpty())
        return Host::PathFromBytes(named.toStdString());
    for (int i = 0; i < Files; ++i)
        folder.Write(L"project/d" + std::to_wstring(i % 40) + L"/f" + std::to_wstring(i) + L".php",
                     MakeText(10000) + (i % 10 == 0 ? "$a = 1\n$b = 2;\n" : ""));
    return folder.Path(L"project");
}

/// The time that this thread has been at work, which other programs do not lengthen.
double WorkTime()
{
    timespec time = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// Measures the longest time for which the window does not look at its input.
class CPulse
{
public:
    struct SPause
    {
        double work = 0; ///< of this thread, ms
        double wall = 0; ///< ms
    };

    CPulse()
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            const double work = WorkTime();
            m_worst.work = std::max(m_worst.work, work - std::exchange(m_last, work));
            m_worst.wall = std::max(m_worst.wall, static_cast<double>(m_wall.nsecsElapsed()) / 1e6);
            m_wall.start();
        });
        m_wall.start();
        m_timer.start(0);
    }
    /// Since this was asked last.
    SPause TakeWorst()
    {
        QTest::qWait(100);
        return std::exchange(m_worst, {});
    }

private:
    QTimer m_timer;
    QElapsedTimer m_wall;
    double m_last = WorkTime();
    SPause m_worst;
};

/// Opens a project and waits for the end of its check.
class CCheck
{
public:
    CCheck(Workbench::CMainWindow& window, const std::wstring& project)
        : m_connection(QObject::connect(&window.GetFrame(), &Workbench::CMainFrame::progressTextChanged,
                                        [this](const QString& text) { m_ended |= text.isEmpty(); }))
    {
        window.OpenProject(project);
    }
    ~CCheck()
    {
        while (!m_ended)
            QCoreApplication::processEvents();
        QObject::disconnect(m_connection);
    }

private:
    bool m_ended = false;
    QMetaObject::Connection m_connection;
};

/// The longest pause in each part of what a user does, as counters: of work, and by the clock.
class CPhases
{
public:
    CPhases(benchmark::State& state, std::function<void()> settle)
        : m_state(state), m_settle(std::move(settle))
    {
    }
    void Note(const std::string& phase)
    {
        m_settle();
        const CPulse::SPause pause = m_pulse.TakeWorst();
        m_state.counters[phase] = std::max<double>(m_state.counters[phase], pause.work);
        m_state.counters[phase + "_wall"] = std::max<double>(m_state.counters[phase + "_wall"], pause.wall);
    }

private:
    benchmark::State& m_state;
    std::function<void()> m_settle;
    CPulse m_pulse;
};

/// All that a user does with a project and its list of errors, and the longest pause in each part of it.
void UseProject(benchmark::State& state, CWindow& made, const std::wstring& project)
{
    Workbench::CMainWindow& window = made.window;
    QTreeWidget* list = window.findChild<QDockWidget*>("bar.Errors")->findChild<QTreeWidget*>();
    auto* panel = window.findChild<Workbench::CErrorPanel*>();
    const auto settle = [&] {
        do
            QTest::qWait(1);
        while (!panel->IsFilterDone() || window.GetApplication().Project().IsDataHeld());
    };
    CPhases phases(state, settle);
    const auto note = [&](const std::string& phase) { phases.Note(phase); };
    const auto sort = [&] {
        for (int column = 0; column < 3; ++column)
            for (int click = 0; click < 2; ++click) {
                QMetaObject::invokeMethod(list, "OnHeaderItemClicked", Q_ARG(int, column));
                settle();
            }
    };
    const auto filter = [&](const char* text) {
        window.findChild<QLineEdit*>("errorFilter")->setText(text);
        settle();
    };
    CCheck(window, project);
    note("check");
    state.counters["rows"] = list->topLevelItemCount();
    sort();
    note("sort");
    filter("1"); // many rows, but not all
    note("filter");
    sort();
    note("sort_filtered");
    filter("");
    note("unfilter");
    window.CloseProject();
    note("save_and_close");
    {
        const CCheck check(window, project);
        QTest::qWait(400);
        note("restore");
    }
    note("check_again");
    window.close();
    note("save_and_quit");
}

void InputInAProject(benchmark::State& state)
{
    for (auto _ : state) {
        CWindow made;
        UseProject(state, made, ProjectFolder(made.folder));
    }
}
BENCHMARK(InputInAProject)->Unit(benchmark::kMillisecond)->Iterations(2);

// The same with a hundred thousand rows.
void InputWithCrowdsOfRows(benchmark::State& state)
{
    constexpr int CrowdedFiles = 1000, ErrorsEach = 100;
    std::string text = "<?php\n";
    for (int i = 0; i < ErrorsEach; ++i)
        text += "else;\n";
    for (auto _ : state) {
        CWindow made(false);
        for (int i = 0; i < CrowdedFiles; ++i)
            made.folder.Write(L"project/d" + std::to_wstring(i % 40) + L"/f" + std::to_wstring(i) + L".php",
                              text);
        UseProject(state, made, made.folder.Path(L"project"));
    }
}
BENCHMARK(InputWithCrowdsOfRows)->Unit(benchmark::kMillisecond)->Iterations(1);

/// All that a user does with a file of five megabytes, as long as a table of data may be, and the longest
/// pause in each part of it.
void InputInALargeFile(benchmark::State& state)
{
    for (auto _ : state) {
        CWindow made;
        Workbench::CMainWindow& window = made.window;
        Workbench::CDocumentArea& area = window.GetArea();
        window.GetApplication().Timers().SetDelayOverride(200);
        std::string text =
            MakeText(5 * Megabyte / 2) + "$a = 1\n$b = 2;\n" + MakeText(5 * Megabyte / 2).substr(6);
        const std::wstring path = made.folder.Write(L"p/large.php", text);
        const std::wstring other = made.folder.Write(L"p/other.php", "<?php\n$a = 1\n$b = 2;\n");
        const auto trigger = [&](const char* name) { window.findChild<QAction*>(name)->trigger(); };
        // An edit is checked a moment later.
        const auto settle = [&] {
            do
                QTest::qWait(600);
            while (window.GetApplication().Project().IsDataHeld());
        };
        CPhases phases(state, settle);
        CCheck(window, made.folder.Path(L"p"));
        phases.Note("project");
        area.Open(other);
        phases.Note("open_other");
        area.Open(path);
        phases.Note("open");
        Workbench::CCodeEditor& editor = *area.GetCurrentEditor();
        const auto keys = [&](const char* phase, const std::function<void()>& press) {
            editor.SetCaretPosition({4, 20000});
            editor.ScrollToCaret(3);
            QTest::qWait(50);
            press();
            phases.Note(phase);
        };
        keys("type", [&] {
            for (int i = 0; i < 20; ++i) {
                QTest::keyClick(&editor, Qt::Key_A);
                QCoreApplication::processEvents();
            }
        });
        keys("type_line", [&] {
            for (int i = 0; i < 5; ++i) {
                QTest::keyClick(&editor, Qt::Key_Return);
                QCoreApplication::processEvents();
            }
        });
        keys("type_comment", [&] { QTest::keyClicks(&editor, "/*"); });
        keys("undo", [&] { editor.undo(); });
        keys("next_error", [&] { trigger("&Next error"); });
        area.Open(path); // the error may be in the other one
        keys("save", [&] { trigger("&Save"); });
        keys("switch_tab", [&] { area.ShowNextTab(1); });
        phases.Note("switch_tab");
        area.ShowNextTab(1);
        phases.Note("switch_back");
        area.GetFindBar().Open(false);
        area.GetFindBar().findChild<QLineEdit*>("findPattern")->setText("total");
        phases.Note("find");
        area.GetFindBar().FindNext();
        phases.Note("find_next");
        area.GetFindBar().findChild<QLineEdit*>("findPattern")->setText("nowhere to be found");
        area.GetFindBar().FindNext();
        phases.Note("find_nothing");
        Workbench::ReplaceAll(editor, {"total", "sum"});
        phases.Note("replace_all");
        editor.undo();
        phases.Note("undo_all");
        keys("select_all_and_type", [&] {
            editor.selectAll();
            QTest::keyClick(&editor, Qt::Key_A);
        });
        editor.undo();
        phases.Note("undo_select_all");
        keys("comment_all", [&] {
            editor.selectAll();
            editor.ToggleComment();
        });
        editor.undo();
        phases.Note("undo_comment_all");
        if (editor.isModified()) {
            state.SkipWithError("what was undone is still there");
            area.DiscardAll();
            return;
        }
        Workbench::SChoices choices;
        choices.fontSize = 12;
        window.ApplyChoices(choices);
        phases.Note("font");
        choices.appearance = Workbench::EAppearance::Dark;
        window.ApplyChoices(choices);
        phases.Note("dark");
        made.folder.Write(L"p/code-analyzer.json", R"({"off": [254]})");
        phases.Note("settings_file");
        made.folder.Write(L"p/large.php", text + "\n");
        area.CheckDisk();
        phases.Note("reload");
        trigger("Save a&ll");
        phases.Note("save_all");
        trigger("&Close file");
        phases.Note("close");
        window.ApplyChoices({});
        area.DiscardAll();
    }
}
BENCHMARK(InputInALargeFile)->Unit(benchmark::kMillisecond)->Iterations(1);

// A key in a file of a megabyte, from the event to the painted window.
void Keystroke(benchmark::State& state)
{
    CWindow made;
    made.window.GetArea().Open(made.folder.Write(L"big.php", MakeText(Megabyte)));
    Workbench::CCodeEditor& editor = *made.window.GetArea().GetCurrentEditor();
    editor.SetCaretPosition({4, 5000});
    editor.ScrollToCaret(3);
    QTest::qWait(300);
    for (auto _ : state) {
        QTest::keyClick(&editor, Qt::Key_A);
        QCoreApplication::processEvents();
    }
    made.window.GetArea().DiscardAll();
}
BENCHMARK(Keystroke)->Unit(benchmark::kMillisecond);

// So many matches in a file: words, a regular expression, and one on a single line.
void ReplaceAll(benchmark::State& state)
{
    enum { Words, RegExp, OneLine };
    CWindow made;
    std::string text = "<?php\n";
    for (int i = 0; i < state.range(0); ++i)
        text += std::string("    $total = array_sum($items) + 1;") + (state.range(1) == OneLine ? ' ' : '\n');
    made.window.GetArea().Open(made.folder.Write(L"big.php", text));
    Workbench::CCodeEditor& editor = *made.window.GetArea().GetCurrentEditor();
    QTest::qWait(300);
    Workbench::SReplaceOrder order{"total", "sum"};
    Workbench::SReplaceOrder back{"sum =", "total ="};
    if (state.range(1) != Words) {
        order = {"\\$(\\w+) =", "$\\1 =", false, false, true};
        back = order;
    }
    for (auto _ : state) {
        if (Workbench::ReplaceAll(editor, order) != state.range(0))
            state.SkipWithError("not all were replaced");
        std::swap(order, back);
    }
    made.window.GetArea().DiscardAll();
}
BENCHMARK(ReplaceAll)->Unit(benchmark::kMillisecond)->ArgsProduct({{12500, 25000, 51282, 100000}, {0, 1, 2}});

} // namespace

} // namespace Kesh::Benchmarks

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("CODE_ANALYZER_PLUGIN", PLUGIN_FILE);
    Kesh::Host::InstallFileNameCodec();
    Kesh::Host::CGuiApplication application(argc, argv);
    QApplication::setStyle(QStringLiteral("Fusion"));
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
