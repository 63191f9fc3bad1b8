#pragma once

#include "Configuration/Configuration.h"
#include "Kesh/CodeAnalyzer/Plugin.h"
#include "Severity.h"

#include <QObject>
#include <QTimer>
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

/// Follows the stored errors: counts them, and tells which files' errors have changed, once the store is
/// free to be asked again. GUI thread only.
class CErrorWatch final : public QObject
{
    Q_OBJECT

public:
    struct SCounts
    {
        int errors = 0;
        int warnings = 0;
    };

    /// Neither is owned; both must outlive this.
    CErrorWatch(CodeAnalyzer::IErrorsSource& source, CodeAnalyzer::IErrorsManager& manager);

    SCounts GetTotal() const { return m_total; }
    /// The counts of each file that has any.
    const std::map<std::wstring, SCounts>& GetFiles() const { return m_files; }

    CodeAnalyzer::IErrorsManager& GetManager() { return m_manager; }
    /// The gravest of a file's errors.
    ESeverity GetSeverity(const std::wstring& file) const;
    std::vector<CodeAnalyzer::SCAError> GetErrors(const std::wstring& file);
    QString GetMessage(const CodeAnalyzer::SCAError& error);
    /// The error at a place: the one that begins last of those that cover it, or else that of its line.
    std::optional<CodeAnalyzer::SCAError> FindAt(const std::wstring& file,
                                                 const SyntaxParser::CIterator& pos);
    /// What a project wants done with codes; errors that it does not want are not there for the window.
    void SetSettings(Configuration::SConfiguration settings);
    /// Whether there may be errors that it does not want.
    bool HasSettings() const;
    /// Whether anything has been checked, so that no errors means that there are none.
    bool HasChecked() const { return m_hasChecked; }
    void SetChecked(bool hasChecked);
    /// The messages and codes of the errors at a place, a line each; those of the whole line if asked.
    QString GetMessages(const std::wstring& file, const SyntaxParser::CIterator& pos, bool wholeLine);
    /// The start of the next error after a place, or the last one before it, going on in other files and
    /// round the end; empty when there are no errors.
    std::optional<SErrorPlace> FindNeighbour(const SErrorPlace& from, bool forward);

signals:
    void changed(const std::set<std::wstring>& files);
    void settingsChanged();

private:
    void OnAdded(const std::wstring& file, const std::vector<CodeAnalyzer::SCAError>& errors);
    void OnRemoved(const std::wstring& file);
    void NoteChange(const std::wstring& file);
    void CountAll();
    /// Applies the settings to a file's errors.
    std::vector<CodeAnalyzer::SCAError> Wanted(const std::wstring& file,
                                               const std::vector<CodeAnalyzer::SCAError>& errors) const;

    CodeAnalyzer::IErrorsSource& m_source;
    CodeAnalyzer::IErrorsManager& m_manager;
    std::map<std::wstring, SCounts> m_files;
    SCounts m_total;
    bool m_hasChecked = false;
    Configuration::SConfiguration m_settings;
    std::set<std::wstring> m_changed;
    QTimer m_notice;
    boost::signals2::scoped_connection m_added;
    boost::signals2::scoped_connection m_removed;
};

} // namespace Kesh::Workbench
