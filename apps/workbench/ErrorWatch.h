#pragma once

#include "EditLog.h"
#include "ErrorJudge.h"
#include "Kesh/CodeAnalyzer/Plugin.h"
#include "Severity.h"

#include <QObject>
#include <QTimer>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace Kesh::Workbench {

/// A place in a file.
struct SErrorPlace
{
    std::wstring file;
    SyntaxParser::CIterator pos;
};

ESeverity SeverityOf(const CodeAnalyzer::SCAError& error);

/// Follows the stored errors: has decided which of them the project wants to hear of, counts those, and tells
/// which files' errors have changed, once the store is free to be asked again. GUI thread only.
class CErrorWatch final : public QObject
{
    Q_OBJECT

public:
    struct SCounts
    {
        int errors = 0;
        int warnings = 0;
    };

    /// Nothing is owned; all must outlive this.
    CErrorWatch(CodeAnalyzer::IErrorsSource& source, CodeAnalyzer::IErrorsManager& manager);

    /// The text of an open file, asked when its errors have changed; nothing for one that is not open.
    using TTextOf = std::function<std::optional<std::wstring>(const std::wstring& file)>;
    void SetTextSource(TTextOf textOf) { m_textOf = std::move(textOf); }
    /// The edits of an open file since its errors were found; null for one that is not open.
    using TEditsOf = std::function<CEditLog*(const std::wstring& file)>;
    void SetEditSource(TEditsOf editsOf) { m_editsOf = std::move(editsOf); }
    SCounts GetTotal() const { return m_total; }
    /// The counts of each file that has any.
    const std::map<std::wstring, SCounts>& GetFiles() const { return m_files; }

    CodeAnalyzer::IErrorsManager& GetManager() { return m_manager; }
    /// Where a stored error is in the file's text as it is now; that is where all errors are said to be here,
    /// unless they are called stored ones.
    SyntaxParser::SScheme WhereNow(const std::wstring& file, const SyntaxParser::SScheme& stored) const;
    /// The gravest of a file's errors.
    ESeverity GetSeverity(const std::wstring& file) const;
    std::vector<CodeAnalyzer::SCAError> GetErrors(const std::wstring& file);
    /// The same, with what is known of each.
    std::vector<CodeAnalyzer::SDiagnostic> GetDiagnostics(const std::wstring& file);
    /// All there is to say of a stored error, as far as that is known yet.
    QString MessageOf(const std::wstring& file, const CodeAnalyzer::SCAError& error) const;
    /// The error at a place: the one that begins last of those that cover it, or else that of its line.
    std::optional<CodeAnalyzer::SCAError> FindAt(const std::wstring& file,
                                                 const SyntaxParser::CIterator& pos);
    /// What a project wants done with errors; those that it does not want are not there for the window.
    void SetRules(TProjectRules rules);
    const TProjectRules& GetRules() const { return m_rules; }
    /// Whether some error may not be wanted.
    bool MayHide() const { return !m_rules->AreEmpty() || m_hiding > 0; }
    /// The severity of a stored error for the user; 0: it is not wanted. Quick, and safe while the store is
    /// locked: what has not been decided yet is as good as decided so.
    std::int32_t TypeOf(const std::wstring& file, const CodeAnalyzer::SCAError& error) const;
    /// Whether anything has been checked, so that no errors means that there are none.
    bool HasChecked() const { return m_hasChecked; }
    void SetChecked(bool hasChecked);
    /// The messages and codes of the errors at a place, a line each.
    QString GetMessages(const std::wstring& file, const SyntaxParser::CIterator& pos);
    /// The start of the next error after a place, or the last one before it, going on in other files and
    /// round the end; empty when there are no errors.
    std::optional<SErrorPlace> FindNeighbour(const SErrorPlace& from, bool forward);

signals:
    void changed(const std::set<std::wstring>& files);

private:
    struct SState
    {
        std::uint64_t generation = 0; ///< of what is stored
        bool isJudged = false;
        bool isChecked = false; ///< a check has read the file since it was judged last
        bool isShown = false;   ///< somebody may show errors of it
        SVerdict verdict;       ///< the last one
    };

    void OnAdded(const std::wstring& file, const std::vector<CodeAnalyzer::SCAError>& errors);
    void OnRemoved(const std::wstring& file);
    void OnBegun(const CodeAnalyzer::SCheck& check);
    void OnEnded(const CodeAnalyzer::SCheck& check, CodeAnalyzer::ECheckEnd end);
    /// What is stored has become another.
    SState& Renew(const std::wstring& file);
    void NoteChange(const std::wstring& file);
    void AskJudge();
    void OnJudged(const SVerdict& verdict);
    void Count(const SVerdict& verdict);
    void TellSoon(const std::wstring& file);
    void Forget(const std::wstring& file);
    void ForgetCounts(const std::wstring& file);
    std::int32_t TypeBySettings(const std::wstring& file, const CodeAnalyzer::SCAError& error) const;
    /// Calls `action` with each error that is wanted, as it is stored and as it is now.
    template <class TAction> void ForEach(const std::wstring& file, TAction action);
    /// Null when nothing has been decided about it.
    const SJudgedError* FindJudged(const std::wstring& file, const CodeAnalyzer::SCAError& stored) const;
    /// Null when the file's errors are where they were found.
    const CEditLog* EditsOf(const std::wstring& file) const;
    bool HidesUndecided(const std::wstring& file) const;

    CodeAnalyzer::IErrorsSource& m_source;
    CodeAnalyzer::IErrorsManager& m_manager;
    CErrorJudge m_judge;
    TProjectRules m_rules;
    TTextOf m_textOf;
    TEditsOf m_editsOf;
    std::map<std::wstring, SState> m_states;
    std::uint64_t m_generation = 0;
    int m_hiding = 0; ///< files with an error that is not wanted
    std::map<std::wstring, SCounts> m_files;
    SCounts m_total;
    bool m_hasChecked = false;
    std::set<std::wstring> m_changed; ///< to be asked about
    std::set<std::wstring> m_decided; ///< to be told of
    QTimer m_ask;
    QTimer m_tell;
    boost::signals2::scoped_connection m_added;
    boost::signals2::scoped_connection m_removed;
    boost::signals2::scoped_connection m_begun;
    boost::signals2::scoped_connection m_ended;
};

} // namespace Kesh::Workbench
