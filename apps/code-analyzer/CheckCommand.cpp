#include "Base/Exception.h"
#include "BaselineUse.h"
#include "Commands.h"
#include "FileChecker.h"
#include "Interrupt.h"
#include "Jobs/Jobs.h"
#include "Paths.h"
#include "Progress.h"
#include "Report/Report.h"
#include "RulesChoice.h"

#include <algorithm>
#include <cstdio>
#include <exception>
#include <malloc.h>
#include <string>

namespace Kesh::CommandLine {

namespace {

SResult CheckInput(CFileChecker& checker, const SOptions& options, const std::vector<SInput>& inputs,
                   std::size_t number)
{
    SResult result;
    result.input = number;
    try {
        if (options.fix)
            result.fixed = checker.Fix(inputs[number], options.diff);
        if (auto findings = checker.Check(inputs[number]))
            result.findings = std::move(*findings);
        else
            result.skipped = "a binary file";
    } catch (const Base::CWorkError& fault) {
        result.problem = fault.what();
    } catch (const std::exception& fault) {
        result.problem = std::string("the check failed: ") + fault.what();
    }
    return result;
}

/// A diff has standard output for itself.
SOptions WithoutReports(SOptions options)
{
    options.outputs.clear();
    return options;
}

/// What the check of a file has needed, that of the next one needs too: memory that is given back meanwhile
/// would come again page by page, each through the kernel.
void KeepMemory()
{
    ::mallopt(M_MMAP_THRESHOLD, 32 << 20);
    ::mallopt(M_TRIM_THRESHOLD, 256 << 20);
}

/// Tells of what was fixed.
class CFixCount
{
public:
    explicit CFixCount(const SOptions& options) : m_options(options) {}

    /// Answers whether something could not be written.
    bool Add(const std::wstring& shown, const SFixedFile& fixed)
    {
        if (!fixed.note.empty())
            PrintProblem(shown, fixed.note);
        std::fwrite(fixed.diff.data(), 1, fixed.diff.size(), stdout);
        m_fixes += fixed.fixed;
        m_files += fixed.fixed != 0;
        return fixed.failed;
    }
    void Finish() const
    {
        if (m_options.fix && !m_options.quiet)
            std::fprintf(stderr, "code-analyzer: %zu %s in %zu %s %s\n", m_fixes,
                         m_fixes == 1 ? "finding" : "findings", m_files, m_files == 1 ? "file" : "files",
                         m_options.diff ? "would be fixed" : "fixed");
    }

private:
    const SOptions& m_options;
    std::size_t m_fixes = 0;
    std::size_t m_files = 0;
};

} // namespace

int RunCheck(const SOptions& options)
{
    const TProjectRules rules = RulesFor(options);
    CFileChecker checker(options, rules);
    CReport report(options.diff ? WithoutReports(options) : options);
    CBaselineUse baseline(options, rules);
    bool failed = false;
    const TPathError onError = [&](const std::wstring& path, const std::string& reason) {
        PrintProblem(path, reason);
        failed = true;
    };
    std::vector<SInput> inputs = CollectInputs(options, rules, onError);
    for (const SInput& input : inputs)
        baseline.Expect(input.Absolute());
    const auto precedes = [](const SInput& a, const SInput& b) { return a.shown < b.shown; };
    if (!std::is_sorted(inputs.begin(), inputs.end(), precedes)) // one folder comes sorted
        std::sort(inputs.begin(), inputs.end(), precedes);
    CProgress progress(!options.quiet);
    std::size_t checked = 0;
    CFixCount fixes(options);
    const auto onResult = [&](SResult&& result) {
        const std::wstring& shown = inputs[result.input].shown;
        result.findings.file = shown;
        result.findings.path = inputs[result.input].Absolute();
        if (!result.problem.empty() || !result.skipped.empty() || !result.findings.findings.empty())
            progress.Clear();
        if (fixes.Add(shown, result.fixed))
            failed = true;
        if (!result.problem.empty())
            return onError(shown, result.problem);
        if (!result.skipped.empty())
            return PrintProblem(shown, "skipped: " + result.skipped);
        baseline.Apply(result.findings);
        report.Add(result.findings);
        ++checked;
    };

    WatchInterrupts();
    KeepMemory();
    const std::size_t jobs = JobsFor(inputs.size(), options.jobs);
    RunJobs({jobs > 1 ? CWorkOrder::LargeFirst(inputs) : CWorkOrder(inputs.size()), jobs,
             [&](std::size_t input) { return CheckInput(checker, options, inputs, input); }, onResult,
             [&](std::size_t done, std::size_t input) {
                 progress.Show(done, inputs.size(), inputs[input].shown);
             }});
    progress.Clear();
    report.Finish(checked);
    fixes.Finish();
    if (const int signal = InterruptSignal()) {
        std::fprintf(stderr, "code-analyzer: interrupted: %zu of %zu files were checked\n", checked,
                     inputs.size());
        return ExitInterrupted + signal; // a baseline of a part of the files would be none
    }
    baseline.Finish();
    return failed ? ExitFailed : report.HasErrors() ? ExitErrors : ExitClean;
}

} // namespace Kesh::CommandLine
