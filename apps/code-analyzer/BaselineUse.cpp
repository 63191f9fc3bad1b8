#include "BaselineUse.h"

#include "Base/Exception.h"
#include "Commands.h"
#include "Files/FileIO.h"
#include "Files/FilePath.h"
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

/// A settings file may be a stranger's: the file that it names is written only where and over what a baseline
/// may be.
void RequireBaseline(const std::wstring& file, const std::wstring& root)
{
    const auto refuse = [&](const std::string& why) {
        throw Base::CWorkError(L"cannot write " + file + L": " + Host::PathFromBytes(why) +
                                   L"; --baseline FILE writes it all the same",
                               __LINE__, "apps/code-analyzer/BaselineUse");
    };
    if (!Host::LiesIn(root, file) || Host::LeadsOut(root, file))
        refuse("it lies outside of the project");
    if (Host::StampOf(file).size <= 0)
        return;
    try {
        Findings::CBaseline::Read(file);
    } catch (const Base::CWorkError& fault) {
        refuse(fault.what());
    }
}

} // namespace

CBaselineUse::CBaselineUse(const SOptions& options, const Configuration::SConfiguration& configuration)
    : m_file(FileOf(options, configuration)), m_generate(options.generateBaseline), m_quiet(options.quiet)
{
    if (m_file.empty())
        return;
    if (m_generate) {
        if (!options.baseline.empty() && Host::LeadsOut(L".", m_file))
            throw Base::CWorkError(
                L"cannot write " + m_file +
                    L": is a link that leads out of the current folder; name the file that "
                    L"it leads to",
                __LINE__, "apps/code-analyzer/BaselineUse");
        if (options.baseline.empty())
            RequireBaseline(m_file,
                            configuration.root.empty() ? Host::AbsolutePath(L".") : configuration.root);
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
            Fail(L"cannot write " + m_file, fault);
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
