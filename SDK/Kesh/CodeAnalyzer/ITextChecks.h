#pragma once

#include "Kesh/Base/Export.h"
#include "Kesh/CodeAnalyzer/ICustomNames.h"
#include "Kesh/CodeAnalyzer/IDiagnosticTexts.h"
#include "Kesh/CodeAnalyzer/IGrammarCheck.h"
#include "Kesh/CodeAnalyzer/IMarkupCheck.h"
#include "Kesh/SDK/IApplication.h"
#include "Kesh/SyntaxParser/IReader.h"

#include <atomic>
#include <boost/shared_ptr.hpp>
#include <memory>
#include <string>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// The checks alone, for a process that shows nothing: no bar, no menu, no timers, no threads, and no
/// QApplication needed. One thread at a time.
class ITextChecks
{
public:
    /// Checks the text of `reader`, of which `path` and `factoryName` tell the language as those of a syntax
    /// document do, and appends what is found to `found`: of PHP first, then HTML, then CSS. A reader that
    /// is given again, with another text, is checked faster than a new one. False: the check was given up
    /// or has failed, and what it had found until then may not be all.
    virtual bool Check(const boost::shared_ptr<SyntaxParser::IReader>& reader, const std::wstring& path,
                       const std::wstring& factoryName, std::vector<SDiagnostic>& found) = 0;
    /// Names that the user allows; owned by the checks. To be changed between checks only.
    virtual ICustomNames* GetCustomNames() = 0;
    /// As the plug-in offers them. Owned by the checks.
    virtual IDiagnosticTexts* GetTexts() = 0;
    virtual IGrammarCheck* GetGrammarCheck() = 0;
    /// Ends them.
    virtual void Free() = 0;
    /// Why the last check has failed; empty when it has not.
    virtual std::wstring GetFailure() = 0;
    virtual IMarkupCheck* GetMarkupCheck() = 0;
    /// What has the check that runs end soon, once another thread sets it: for checks that begin afterwards;
    /// null: they come to their ends. Nobody but the caller clears it.
    virtual void SetCancelFlag(std::shared_ptr<std::atomic<bool>> /*cancelled*/) {}

protected:
    ~ITextChecks() = default;
};

} // namespace Kesh::CodeAnalyzer

extern "C" {
/// New checks, in libCodeAnalyzer.so.1 and in libCodeAnalyzerChecks.so.1, which needs no more of Qt than its
/// core. Of the application only the component "IParserComponent" and the translations
/// are used; both outlive the checks. Raises Kesh::Base::CCriticalError "Bad sweak pointer" without the
/// component.
KESH_EXPORT Kesh::CodeAnalyzer::ITextChecks* CodeAnalyzerCreateChecks(Kesh::SDK::IApplication* application);
}
