#include "Application/FilePath.h"
#include "Application/GuiApplication.h"
#include "Application/Settings.h"
#include "CodeEditor.h"
#include "DocumentArea.h"
#include "ErrorPanel.h"
#include "ErrorWatch.h"
#include "LangSupport/Translations.h"
#include "MainWindow.h"
#include "ProjectManager/ProjectManager.h"
#include "TempFolder.h"

#include <QDockWidget>
#include <QLineEdit>
#include <QTest>
#include <QTreeWidget>
#include <benchmark/benchmark.h>
#include <ctime>
#include <optional>
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

/// Measures the longest work for which the window does not look at its input.
class CPulse
{
public:
    CPulse()
    {
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            const double now = WorkTime();
            m_worst = std::max(m_worst, now - std::exchange(m_last, now));
        });
        m_timer.start(0);
    }
    /// In milliseconds, since this was asked last.
    double TakeWorst()
    {
        QTest::qWait(100);
        return std::exchange(m_worst, 0.0);
    }

private:
    QTimer m_timer;
    double m_last = WorkTime();
    double m_worst = 0;
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

// From the opening of a project to the end of its check.
void InputDuringAProjectCheck(benchmark::State& state)
{
    double worst = 0;
    for (auto _ : state) {
        state.PauseTiming();
        std::optional<CWindow> made(std::in_place);
        Workbench::CMainWindow& window = made->window;
        const std::wstring project = ProjectFolder(made->folder);
        state.ResumeTiming();
        CPulse pulse;
        CCheck(window, project);
        worst = std::max(worst, pulse.TakeWorst());
        state.PauseTiming();
        state.counters["errors"] = window.GetErrorWatch()->GetTotal().errors;
        made.reset();
        state.ResumeTiming();
    }
    state.counters["worst_gap_ms"] = worst;
}
BENCHMARK(InputDuringAProjectCheck)->Unit(benchmark::kMillisecond)->Iterations(3);

// The same with a hundred thousand rows: their first check, what the user does with the list, the closing of
// the project and its opening with the errors that were kept.
void InputWithCrowdsOfRows(benchmark::State& state)
{
    constexpr int CrowdedFiles = 1000, ErrorsEach = 100;
    constexpr int Rows = CrowdedFiles * ErrorsEach;
    CWindow made(false);
    std::string text = "<?php\n";
    for (int i = 0; i < ErrorsEach; ++i)
        text += "else;\n";
    for (int i = 0; i < CrowdedFiles; ++i)
        made.folder.Write(L"project/d" + std::to_wstring(i % 40) + L"/f" + std::to_wstring(i) + L".php",
                          text);
    const std::wstring project = made.folder.Path(L"project");
    Workbench::CMainWindow& window = made.window;
    QTreeWidget* list = window.findChild<QDockWidget*>("bar.Errors")->findChild<QTreeWidget*>();
    const auto waitForRows = [&](int rows) {
        while (list->topLevelItemCount() < rows)
            QCoreApplication::processEvents();
    };
    const auto shown = [&](const char* text) {
        window.findChild<QLineEdit*>("errorFilter")->setText(text);
        while (!window.findChild<Workbench::CErrorPanel*>()->IsFilterDone())
            QCoreApplication::processEvents();
    };
    for (auto _ : state) {
        CPulse pulse;
        const auto note = [&](const char* phase) { state.counters[phase] = pulse.TakeWorst(); };
        CCheck(window, project);
        waitForRows(Rows);
        note("check");
        for (int column = 0; column < 3; ++column)
            for (int click = 0; click < 2; ++click) {
                QMetaObject::invokeMethod(list, "OnHeaderItemClicked", Q_ARG(int, column));
                QTest::qWait(20);
            }
        note("sort");
        shown("f12");
        note("filter");
        shown("");
        note("unfilter");
        window.CloseProject();
        QTest::qWait(200);
        note("close");
        {
            const CCheck check(window, project);
            waitForRows(Rows / 2);
            note("restore");
        }
        waitForRows(Rows);
        note("check_again");
        window.CloseProject();
    }
}
BENCHMARK(InputWithCrowdsOfRows)->Unit(benchmark::kMillisecond)->Iterations(1);

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
