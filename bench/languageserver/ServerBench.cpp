// A keystroke in a document of 1 MB: what the server does at once, and how long its diagnostics take, also
// when there are very many. The reference is one copy of the document's characters.

#include "Application/HeadlessHost.h"
#include "Application/PluginLoader.h"
#include "LanguageServer/Server.h"

#include <QApplication>
#include <benchmark/benchmark.h>
#include <chrono>

using namespace Kesh;
using LanguageServer::json;

namespace {

constexpr const char* Uri = "file:///bench/a.php";
constexpr int Pause = 200; ///< milliseconds that the server waits for the next key

/// With so many mistakes near its beginning.
std::string OneMegabyte(std::int64_t mistakes)
{
    std::string text = "<?php\n";
    for (std::int64_t i = 0; i < mistakes; ++i)
        text += "$a = = 1;\n";
    for (int i = 0; text.size() < (1u << 20); ++i)
        text += "function f" + std::to_string(i) +
                "($a, $b) {\n    if ($a > 1 && $b) {\n        return '\xC3\xA9' . g($a, [1, 2, 'x' => $b]);\n"
                "    }\n    foreach ($a as $k => $v) { echo $k, $v; }\n}\n";
    return text;
}

/// A server that has a large document open.
class CBench
{
public:
    explicit CBench(std::int64_t mistakes = 0)
    {
        m_host.frame.Build();
        Call("initialize", {{"capabilities", json::object()}}, true);
        Call("initialized", json::object());
        Call("textDocument/didOpen",
             {{"textDocument",
               {{"uri", Uri}, {"languageId", "php"}, {"version", 1}, {"text", OneMegabyte(mistakes)}}}});
        Await(1);
    }

    /// What an editor sends for a key.
    std::string Key()
    {
        const json at = {{"line", 12000}, {"character", 4}};
        const json change = {{"range", {{"start", at}, {"end", at}}}, {"text", " "}};
        return Message("textDocument/didChange", {{"textDocument", {{"uri", Uri}, {"version", ++m_version}}},
                                                  {"contentChanges", json::array({change})}});
    }
    void Receive(const std::string& body) { m_server.Receive(body); }
    void AwaitLast() { Await(m_version); }

private:
    std::string Message(const std::string& method, const json& params, bool request = false)
    {
        json message = {{"jsonrpc", "2.0"}, {"method", method}, {"params", params}};
        if (request)
            message["id"] = 1;
        return message.dump();
    }
    void Call(const std::string& method, const json& params, bool request = false)
    {
        m_server.Receive(Message(method, params, request));
    }
    void Await(std::int64_t version)
    {
        while (m_published < version)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    void OnSent(const std::string& body)
    {
        const json message = json::parse(body);
        if (message.value("method", "") == "textDocument/publishDiagnostics")
            m_published = message["params"]["version"];
    }

    Host::SHeadlessHost m_host;
    Host::CPlugin m_plugin{m_host.application, Host::CPlugin::Windowless};
    std::int64_t m_version = 1;
    std::int64_t m_published = 0;
    LanguageServer::CServer m_server{
        {m_host.application, m_plugin, [this](const std::string& body) { OnSent(body); }, [] {}, {}, "0"}};
};

void BM_CopyOfTheText(benchmark::State& state)
{
    const std::wstring text(1 << 20, L'x');
    for (auto _ : state)
        benchmark::DoNotOptimize(std::wstring(text));
}
BENCHMARK(BM_CopyOfTheText)->Unit(benchmark::kMillisecond);

void BM_Keystroke(benchmark::State& state)
{
    CBench bench;
    for (auto _ : state) {
        state.PauseTiming();
        const std::string key = bench.Key();
        state.ResumeTiming();
        bench.Receive(key);
    }
}
BENCHMARK(BM_Keystroke)->Unit(benchmark::kMillisecond)->Iterations(300);

void BM_DiagnosticsAfterThePause(benchmark::State& state)
{
    CBench bench(state.range(0));
    for (auto _ : state) {
        const auto begin = std::chrono::steady_clock::now();
        bench.Receive(bench.Key());
        bench.AwaitLast();
        const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - begin;
        state.SetIterationTime(spent.count() - Pause / 1000.0);
    }
}
BENCHMARK(BM_DiagnosticsAfterThePause)
    ->Arg(0)
    ->Arg(100)
    ->Arg(50000)
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime()
    ->Iterations(10);

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("CODE_ANALYZER_PLUGIN", PLUGIN);
    QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
