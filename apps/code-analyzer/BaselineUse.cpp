#include "BaselineUse.h"

#include "Base/Exception.h"
#include "Commands.h"
#include "Files/FileIO.h"
#include "Files/FilePath.h"
#include "Report/Printable.h"

#include <cstdio>

namespace Kesh::CommandLine {

namespace {

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

/// Some files are checked: what the baseline says of others goes on.
std::size_t TakeOthers(const std::wstring& file, Findings::CBaseline& baseline)
{
    if (Host::StampOf(file).size <= 0)
        return 0;
    try {
        return baseline.TakeOthers(Findings::CBaseline::Read(file));
    } catch (const Base::CWorkError&) {
        return 0; // no baseline: it is replaced, as the user has said by its name
    }
}

} // namespace

CBaselineUse::CBaselineUse(const SOptions& options, TProjectRules rules)
    : m_rules(std::move(rules)), m_generate(options.generateBaseline), m_quiet(options.quiet)
{
    if (!options.baseline.empty())
        m_named = Host::AbsolutePath(Host::PathFromBytes(options.baseline));
    Expect(FirstPlace(options));
}

std::wstring CBaselineUse::FileFor(const Configuration::SConfiguration& settings) const
{
    if (!m_named.empty())
        return m_named;
    if (!settings.baseline.empty())
        return settings.baseline;
    const std::wstring name = L"code-analyzer-baseline.json";
    return Host::AbsolutePath(settings.root.empty() ? name : settings.root + L'/' + name);
}

void CBaselineUse::Expect(const std::wstring& path)
{
    if (!m_generate)
        return;
    const Findings::TRules rules = m_rules->For(path);
    const std::wstring file = FileFor(rules->settings);
    if (m_written.contains(file))
        return;
    if (m_named.empty())
        RequireBaseline(file, rules->settings.root.empty() ? Host::AbsolutePath(L".") : rules->settings.root);
    else if (Host::LeadsOut(L".", file))
        throw Base::CWorkError(L"cannot write " + file +
                                   L": is a link that leads out of the current folder; name the file that "
                                   L"it leads to",
                               __LINE__, "apps/code-analyzer/BaselineUse");
    m_written.emplace(file, Findings::CBaseline(file.substr(0, file.rfind(L'/'))));
}

void CBaselineUse::Apply(Findings::SFileFindings& file)
{
    if (m_generate) {
        m_written.at(FileFor(m_rules->For(file.path)->settings)).Take(file);
        file.findings.clear();
    }
    m_gone.insert(m_gone.end(), file.gone.begin(), file.gone.end());
}

void CBaselineUse::Finish()
{
    for (auto& [file, baseline] : m_written) {
        const std::size_t kept = TakeOthers(file, baseline);
        try {
            baseline.Write(file);
        } catch (const Base::CWorkError& fault) {
            throw Base::CWorkError(L"cannot write " + file + L": " + fault.GetMessage(), __LINE__,
                                   "apps/code-analyzer/BaselineUse");
        }
        std::fprintf(
            stderr, "code-analyzer: %s: %s written%s\n", Printable(file).c_str(),
            Counted(baseline.Size(), "finding").c_str(),
            kept ? (", " + std::to_string(kept) + " of them kept from files that were not checked").c_str()
                 : "");
    }
    if (m_quiet)
        return;
    for (const Findings::SGone& gone : m_gone)
        std::fprintf(stderr, "code-analyzer: %s: gone from the baseline's findings: [%d] %s%s\n",
                     Printable(Host::PathFromBytes(gone.file)).c_str(), gone.code,
                     Printable(Host::PathFromBytes(gone.line)).c_str(),
                     gone.count > 1 ? (" (" + std::to_string(gone.count) + " times)").c_str() : "");
}

} // namespace Kesh::CommandLine
