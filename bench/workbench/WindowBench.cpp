#include "Application/FilePath.h"
#include "Application/GuiApplication.h"
#include "Application/Settings.h"
#include "CodeEditor.h"
#include "DocumentArea.h"
#include "ErrorWatch.h"
#include "LangSupport/Translations.h"
#include "MainWindow.h"
#include "ProjectManager/ProjectManager.h"
#include "TempFolder.h"

#include <QElapsedTimer>
#include <QTest>
#include <benchmark/benchmark.h>
#include <optional>

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

/// A window with settings of its own.
struct CWindow
{
    CTempFolder folder;
    Host::CFileSettings settings{folder.Path(L"settings.ini")};
    LangSupport::CTranslations translations;
    Workbench::CMainWindow window{settings, translations};

    CWindow()
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

// The longest time for which the window does not look at its input, from the opening of a project to the end
// of its check.
void InputDuringAProjectCheck(benchmark::State& state)
{
    double worst = 0;
    for (auto _ : state) {
        state.PauseTiming();
        std::optional<CWindow> made(std::in_place);
        Workbench::CMainWindow& window = made->window;
        const std::wstring project = ProjectFolder(made->folder);
        state.ResumeTiming();
        QElapsedTimer beat;
        beat.start();
        QTimer pulse;
        QObject::connect(&pulse, &QTimer::timeout, [&] {
            worst = std::max(worst, static_cast<double>(beat.nsecsElapsed()) / 1e6);
            beat.restart();
        });
        pulse.start(0);
        window.OpenProject(project);
        const auto isOpen = [&] { return !window.GetApplication().Project().GetFolder().empty(); };
        while (!isOpen() || window.GetApplication().Threads().IsRunning())
            QCoreApplication::processEvents();
        QTest::qWait(100);
        state.PauseTiming();
        pulse.stop();
        state.counters["errors"] = window.GetErrorWatch()->GetTotal().errors;
        made.reset();
        state.ResumeTiming();
    }
    state.counters["worst_gap_ms"] = worst;
}
BENCHMARK(InputDuringAProjectCheck)->Unit(benchmark::kMillisecond)->Iterations(3);

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
