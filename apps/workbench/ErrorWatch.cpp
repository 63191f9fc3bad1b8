#include "ErrorWatch.h"

#include <algorithm>
#include <utility>

namespace Kesh::Workbench {

using CodeAnalyzer::SCAError;

namespace {

/// Many files change at once during a project check; the window need not follow each.
constexpr int NoticeDelay = 30; // ms

} // namespace

ESeverity SeverityOf(const SCAError& error)
{
    return error.type == CodeAnalyzer::SeverityError ? ESeverity::Error : ESeverity::Warning;
}

CErrorWatch::CErrorWatch(CodeAnalyzer::IErrorsSource& source, CodeAnalyzer::IErrorsManager& manager)
    : m_source(source), m_manager(manager)
{
    m_notice.setSingleShot(true);
    m_notice.setInterval(NoticeDelay);
    connect(&m_notice, &QTimer::timeout, this, [this] {
        std::set<std::wstring> files;
        files.swap(m_changed);
        emit changed(files);
    });
    CountAll();
    m_added = source.GetAddedSignal().connect(
        [this](const std::wstring& file, const std::vector<SCAError>& errors) { OnAdded(file, errors); });
    m_removed = source.GetRemovedSignal().connect([this](const std::wstring& file) { OnRemoved(file); });
}

void CErrorWatch::OnAdded(const std::wstring& file, const std::vector<SCAError>& errors)
{
    const std::vector<SCAError> wanted = Wanted(file, errors);
    if (wanted.empty())
        return;
    SCounts& counts = m_files[file];
    for (const SCAError& error : wanted) {
        const bool isError = error.type == CodeAnalyzer::SeverityError;
        ++(isError ? counts.errors : counts.warnings);
        ++(isError ? m_total.errors : m_total.warnings);
    }
    NoteChange(file);
}

void CErrorWatch::OnRemoved(const std::wstring& file)
{
    if (!m_hasChecked) { // a check drops what it is about to find anew
        m_hasChecked = true;
        NoteChange(file);
    }
    const auto found = m_files.find(file);
    if (found == m_files.end())
        return;
    m_total.errors -= found->second.errors;
    m_total.warnings -= found->second.warnings;
    m_files.erase(found);
    NoteChange(file);
}

void CErrorWatch::NoteChange(const std::wstring& file)
{
    // The store is locked now, so whoever wants to read it has to wait for the notice.
    m_changed.insert(file);
    if (!m_notice.isActive())
        m_notice.start();
}

void CErrorWatch::CountAll()
{
    m_files.clear();
    m_total = {};
    for (const auto& [file, errors] : m_source.GetAllErrors())
        OnAdded(file, errors);
}

void CErrorWatch::SetSettings(Configuration::SConfiguration settings)
{
    m_settings = std::move(settings);
    for (const auto& [file, counts] : m_files)
        NoteChange(file);
    CountAll();
    emit settingsChanged();
}

bool CErrorWatch::HasSettings() const
{
    return !m_settings.rules.empty() || !m_settings.exclude.empty();
}

std::vector<SCAError> CErrorWatch::Wanted(const std::wstring& file, const std::vector<SCAError>& errors) const
{
    if (!HasSettings())
        return errors;
    std::vector<SCAError> wanted;
    if (m_settings.Excludes(file))
        return wanted;
    for (SCAError error : errors) {
        const auto level = m_settings.LevelOf(error.code, file);
        if (level == Configuration::ELevel::Off)
            continue;
        if (level)
            error.type = level == Configuration::ELevel::Error ? CodeAnalyzer::SeverityError
                                                               : CodeAnalyzer::SeverityWarning;
        wanted.push_back(error);
    }
    return wanted;
}

void CErrorWatch::SetChecked(bool hasChecked)
{
    m_hasChecked = hasChecked;
    NoteChange({});
}

ESeverity CErrorWatch::GetSeverity(const std::wstring& file) const
{
    const auto found = m_files.find(file);
    if (found == m_files.end())
        return ESeverity::None;
    return found->second.errors > 0 ? ESeverity::Error : ESeverity::Warning;
}

std::vector<SCAError> CErrorWatch::GetErrors(const std::wstring& file)
{
    std::vector<SCAError> errors;
    m_source.GetErrors(file, errors);
    return Wanted(file, errors);
}

QString CErrorWatch::GetMessage(const SCAError& error)
{
    return QString::fromStdWString(m_source.GetErrorDescription(error));
}

std::optional<SCAError> CErrorWatch::FindAt(const std::wstring& file, const SyntaxParser::CIterator& pos)
{
    std::optional<SCAError> covering, onLine;
    if (m_files.count(file) == 0)
        return {};
    for (const SCAError& error : GetErrors(file)) {
        const auto& [start, end] = error.pos;
        if (start <= pos && (pos < end || pos == start) && (!covering || covering->pos.start <= start))
            covering = error;
        if (start.y == pos.y && !onLine)
            onLine = error;
    }
    return covering ? covering : onLine;
}

QString CErrorWatch::GetMessages(const std::wstring& file, const SyntaxParser::CIterator& pos, bool wholeLine)
{
    QStringList messages;
    for (const SCAError& error : GetErrors(file)) {
        const auto& [start, end] = error.pos;
        const bool covers = wholeLine ? start.y == pos.y : start <= pos && (pos < end || pos == start);
        if (covers)
            messages.append(QStringLiteral("%1 [%2]").arg(GetMessage(error)).arg(error.code));
    }
    messages.removeDuplicates();
    return messages.join('\n');
}

std::optional<SErrorPlace> CErrorWatch::FindNeighbour(const SErrorPlace& from, bool forward)
{
    const auto before = [](const SErrorPlace& a, const SErrorPlace& b) {
        return a.file != b.file ? a.file < b.file : a.pos < b.pos;
    };
    std::optional<SErrorPlace> nearest, roundTheEnd;
    // The nearest one beyond `from`, and the outermost one on the other side.
    const auto prefers = [&](const SErrorPlace& a, const SErrorPlace& b) {
        return forward ? before(a, b) : before(b, a);
    };
    for (const auto& [file, errors] : m_source.GetAllErrors()) {
        for (const SCAError& error : Wanted(file, errors)) {
            const SErrorPlace place{file, error.pos.start};
            std::optional<SErrorPlace>& best = prefers(from, place) ? nearest : roundTheEnd;
            if (!best || prefers(place, *best))
                best = place;
        }
    }
    return nearest ? nearest : roundTheEnd;
}

} // namespace Kesh::Workbench
