#include "BaselineUse.h"

#include "Application/FilePath.h"
#include "Base/Exception.h"
#include "Commands.h"
#include "Report/Printable.h"

#include <cstdio>

namespace Kesh::CommandLine {

namespace {

[[noreturn]] void Fail(const std::wstring& file, const Base::CWorkError& fault)
{
    throw Base::CWorkError(file + L": " + fault.GetMessage(), __LINE__, "apps/code-analyzer/BaselineUse");
}

std::wstring FileOf(const SOptions& options, const Configuration::SConfiguration& configuration)
{
    if (!options.baseline.empty())
        return Host::AbsolutePath(Host::PathFromBytes(options.baseline));
    if (!configuration.baseline.empty() || !options.generateBaseline)
        return configuration.baseline;
    const std::wstring name = L"code-analyzer-baseline.json";
    return Host::AbsolutePath(configuration.root.empty() ? name : configuration.root + L'/' + name);
}

} // namespace

CBaselineUse::CBaselineUse(const SOptions& options, const Configuration::SConfiguration& configuration)
    : m_file(FileOf(options, configuration)), m_generate(options.generateBaseline), m_quiet(options.quiet)
{
    if (m_file.empty())
        return;
    if (m_generate) {
        m_baseline.emplace(m_file.substr(0, m_file.rfind(L'/')));
        return;
    }
    try {
        m_baseline.emplace(Findings::CBaseline::Read(m_file));
    } catch (const Base::CWorkError& fault) {
        Fail(Host::FileName(m_file), fault);
    }
}

void CBaselineUse::Apply(Findings::SFileFindings& file)
{
    if (!m_baseline)
        return;
    if (m_generate) {
        m_baseline->Take(file);
        file.findings.clear();
    } else {
        for (Findings::CBaseline::SGone& gone : m_baseline->Filter(file))
            m_gone.push_back(std::move(gone));
    }
}

void CBaselineUse::Finish()
{
    if (!m_baseline)
        return;
    if (m_generate) {
        try {
            m_baseline->Write(m_file);
        } catch (const Base::CWorkError& fault) {
            Fail(m_file, fault);
        }
        std::fprintf(stderr, "code-analyzer: %s: %s written\n", Printable(m_file).c_str(),
                     Counted(m_baseline->Size(), "finding").c_str());
        return;
    }
    if (m_quiet)
        return;
    for (const Findings::CBaseline::SGone& gone : m_gone)
        std::fprintf(stderr, "code-analyzer: %s: gone from the baseline's findings: [%d] %s%s\n",
                     Printable(Host::PathFromBytes(gone.file)).c_str(), gone.code,
                     Printable(Host::PathFromBytes(gone.line)).c_str(),
                     gone.count > 1 ? (" (" + std::to_string(gone.count) + " times)").c_str() : "");
}

} // namespace Kesh::CommandLine
