#pragma once

#include "ErrorTip.h"
#include "Findings/Finding.h"
#include "Findings/FixProof.h"
#include "Findings/QuickFix.h"

#include <QObject>
#include <QString>
#include <functional>
#include <optional>
#include <string>
#include <vector>

class QMenu;

namespace Kesh::Host {
class CApplication;
class CPlugin;
} // namespace Kesh::Host

namespace Kesh::Workbench {

class CDocumentArea;
class CErrorWatch;

/// What helps with an error: what can be done about it at the press of a key, and the page that explains it.
/// GUI thread only.
class CErrorHelp final : public QObject
{
    Q_OBJECT

public:
    /// The area is not owned and outlives this.
    CErrorHelp(Host::CApplication& application, CDocumentArea& area);

    /// Null: nobody knows anything of errors. Not owned.
    void SetPlugin(Host::CPlugin* plugin, CErrorWatch* watch);

    /// What there is to say of a place in the editor in front, or of its whole line.
    std::vector<CErrorTip::SLine> GetTips(const SyntaxParser::CIterator& pos, bool wholeLine) const;

    /// What can be done about the errors at the caret of the editor in front, the likeliest first.
    std::vector<Findings::SQuickFix> GetFixes();
    /// In the user's language.
    static QString TitleOf(const Findings::SQuickFix& fix);
    /// Puts them into a menu, each with what it does.
    void AddFixes(QMenu& menu);
    /// Shows them as a menu at the caret.
    void OfferFixes();
    /// Does all in the editor in front that mends an error and brings up no other, in one step.
    void FixAll();
    /// Does it, in one step that can be undone.
    void Apply(const Findings::SQuickFix& fix);

    void Explain(int code, QWidget* parent);

signals:
    /// The project's settings file has been written.
    void settingsChanged();
    void failed(const QString& text);

private:
    using TPick = std::function<bool(const SyntaxParser::SScheme& span)>;
    /// The errors of the document in front that are picked, with all that is known of them.
    std::vector<Findings::SFinding> FindingsOf(const TPick& pick, const std::wstring& text) const;
    /// Tries fixes on copies of a text; null: it cannot be had.
    Findings::CTextCheck* Check();
    void WriteSettings(const Findings::SQuickFix& fix);

    Host::CApplication& m_application;
    CDocumentArea& m_area;
    Host::CPlugin* m_plugin = nullptr;
    CErrorWatch* m_watch = nullptr;
    std::optional<Findings::CTextCheck> m_check; ///< made when it is first needed
};

} // namespace Kesh::Workbench
