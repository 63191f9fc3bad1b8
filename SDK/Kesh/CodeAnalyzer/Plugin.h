#pragma once

#include "Kesh/Base/Export.h"
#include "Kesh/CodeAnalyzer/Check.h"
#include "Kesh/CodeAnalyzer/ICAComponent.h"
#include "Kesh/CodeAnalyzer/ICustomNames.h"
#include "Kesh/CodeAnalyzer/IDiagnosticTexts.h"
#include "Kesh/CodeAnalyzer/IGrammarCheck.h"
#include "Kesh/CodeAnalyzer/IMarkupCheck.h"
#include "Kesh/CodeAnalyzer/IProjectCheck.h"
#include "Kesh/CodeAnalyzer/SCAError.h"
#include "Kesh/SDK/ICommand.h"

#include <boost/signals2/signal.hpp>
#include <map>
#include <string>
#include <vector>

namespace Kesh::CodeAnalyzer {

/// What a host has found itself, to be listed beside the errors.
struct SHostError
{
    SCAError error;
    std::wstring message;
    SDetails details = {}; ///< handed back to nobody: for the host's own use
};

/// The stored errors, for a host that shows them in its own way. Reading is safe from any thread. The signals
/// are emitted on the GUI thread while the store is locked: a slot must not read the store, it should only
/// note that something changed.
class IErrorsSource
{
public:
    using AddedSignal = boost::signals2::signal<void(const std::wstring&, const std::vector<SCAError>&)>;
    using RemovedSignal = boost::signals2::signal<void(const std::wstring&)>;
    using FailedSignal = boost::signals2::signal<void(const std::wstring& file, const std::wstring& reason)>;

    virtual void GetErrors(const std::wstring& file, std::vector<SCAError>& out) = 0;
    virtual std::map<std::wstring, std::vector<SCAError>> GetAllErrors() = 0;
    /// The errors of a file with what is known of each beyond its record: nothing, unless the host has asked
    /// for it before they were found.
    virtual std::vector<SDiagnostic> GetDiagnostics(const std::wstring& file) = 0;
    /// Whether checkers tell all they know of errors, which then is kept with the project as its data item
    /// "details". Off until a host asks.
    virtual void SetDetailed(bool detailed) = 0;
    /// Owned by the component.
    virtual IDiagnosticTexts& GetTexts() = 0;
    virtual AddedSignal& GetAddedSignal() = 0;
    virtual RemovedSignal& GetRemovedSignal() = 0;
    /// Has the errors bar list what the host has found in a file, in place of what it has found there before.
    /// It is not stored, and leaves the list with the file's errors. GUI thread.
    virtual void ShowHostErrors(const std::wstring& file, const std::vector<SHostError>& errors) = 0;
    /// A check of a file has failed. What is stored of it is what was known before: it is not clean. Emitted
    /// on the GUI thread, the store unlocked.
    virtual FailedSignal& GetFailedSignal() = 0;

    using CheckBegunSignal = boost::signals2::signal<void(const SCheck& check)>;
    using CheckEndedSignal = boost::signals2::signal<void(const SCheck& check, ECheckEnd end)>;
    /// A check of an open document takes its text as it is now. Emitted on the GUI thread, the store
    /// unlocked.
    virtual CheckBegunSignal& GetCheckBegunSignal() = 0;
    /// A check has ended, and what it has found has been stored, errors or none. Emitted like the failed
    /// signal.
    virtual CheckEndedSignal& GetCheckEndedSignal() = 0;

protected:
    ~IErrorsSource() = default;
};

} // namespace Kesh::CodeAnalyzer

/// The functions that a host looks up with dlsym() in libCodeAnalyzer.so.1. GUI thread only. Those that are
/// about a component are in libCodeAnalyzerChecks.so.1, too, but for the commands: its component asks the
/// host for no bar, no menu and no icons, and needs a QCoreApplication only.
extern "C" {
/// A new component; the caller initialises it once and ends it with CodeAnalyzerDestroy().
KESH_EXPORT Kesh::CodeAnalyzer::ICAComponent* CodeAnalyzerCreate();
/// Ends a component while the application and its services still live. No worker of it runs afterwards.
KESH_EXPORT void CodeAnalyzerDestroy(Kesh::CodeAnalyzer::ICAComponent* component);
/// A command by class name ("CCACheckNowCmd", "CCACheckProjectCmd"), owned by the caller; null for another
/// name.
KESH_EXPORT Kesh::SDK::ICommand* CodeAnalyzerCreateCommand(Kesh::CodeAnalyzer::ICAComponent* component,
                                                           const char* className);
/// All owned by the component.
KESH_EXPORT Kesh::CodeAnalyzer::IErrorsSource*
CodeAnalyzerGetErrorsSource(Kesh::CodeAnalyzer::ICAComponent* component);
KESH_EXPORT Kesh::CodeAnalyzer::ICustomNames*
CodeAnalyzerGetCustomNames(Kesh::CodeAnalyzer::ICAComponent* component);
KESH_EXPORT Kesh::CodeAnalyzer::IGrammarCheck*
CodeAnalyzerGetGrammarCheck(Kesh::CodeAnalyzer::ICAComponent* component);
KESH_EXPORT Kesh::CodeAnalyzer::IMarkupCheck*
CodeAnalyzerGetMarkupCheck(Kesh::CodeAnalyzer::ICAComponent* component);
KESH_EXPORT Kesh::CodeAnalyzer::IProjectCheck*
CodeAnalyzerGetProjectCheck(Kesh::CodeAnalyzer::ICAComponent* component);
}
