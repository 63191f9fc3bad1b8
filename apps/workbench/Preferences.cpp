#include "Preferences.h"

#include "Files/FilePath.h"

#include <QDateTime>
#include <QFileInfo>
#include <QRegularExpression>
#include <algorithm>

namespace Kesh::Workbench {

namespace {

constexpr int MaxRecentProjects = 10;
constexpr const char* RecentKey = "Workbench/recentProjects";
/// The errors bar reads its column widths from this section.
constexpr const wchar_t* ErrorsBarSection = L"CAEBCTRL";
constexpr int ErrorsBarColumns = 3;

std::wstring ColumnKey(int column)
{
    return L"column" + std::to_wstring(column);
}

} // namespace

SChoices CPreferences::GetChoices() const
{
    QSettings& store = m_settings.GetStore();
    SChoices choices;
    choices.language = store.value("Workbench/language").toString();
    choices.appearance = static_cast<EAppearance>(
        std::clamp(store.value("Workbench/appearance").toInt(), 0, static_cast<int>(EAppearance::Dark)));
    choices.fontSize = std::clamp(store.value("Workbench/fontSize", choices.fontSize).toInt(), 6, 72);
    choices.hotExit = store.value("Workbench/hotExit", choices.hotExit).toBool();
    choices.grammar = store.value("Workbench/grammar", choices.grammar).toBool();
    choices.markup = store.value("Workbench/markup", choices.markup).toBool();
    choices.customTags = SplitNames(store.value("CustomNames/tags").toStringList().join(' '));
    choices.customAttributes = SplitNames(store.value("CustomNames/attributes").toStringList().join(' '));
    choices.presets = SplitNames(store.value("Workbench/presets").toStringList().join(' '));
    choices.checksMarkup = store.value("Workbench/checksMarkup", choices.checksMarkup).toBool();
    choices.columnWidths = GetColumnWidths();
    return choices;
}

void CPreferences::SetChoices(const SChoices& choices)
{
    QSettings& store = m_settings.GetStore();
    store.setValue("Workbench/language", choices.language);
    store.setValue("Workbench/appearance", static_cast<int>(choices.appearance));
    store.setValue("Workbench/fontSize", choices.fontSize);
    store.setValue("Workbench/hotExit", choices.hotExit);
    store.setValue("Workbench/grammar", choices.grammar);
    store.setValue("Workbench/markup", choices.markup);
    store.setValue("Workbench/checksMarkup", choices.checksMarkup);
    store.setValue("CustomNames/tags", choices.customTags.join(' '));
    store.setValue("CustomNames/attributes", choices.customAttributes.join(' '));
    store.setValue("Workbench/presets", choices.presets.join(' '));
    SetColumnWidths(choices.columnWidths);
    store.sync();
}

QStringList CPreferences::GetRecentProjects() const
{
    return m_settings.GetStore().value(RecentKey).toStringList();
}

void CPreferences::AddRecentProject(const QString& folder)
{
    QStringList recent = GetRecentProjects();
    recent.removeAll(folder);
    recent.prepend(folder);
    m_settings.GetStore().setValue(RecentKey, QStringList(recent.mid(0, MaxRecentProjects)));
}

SSession CPreferences::GetSession() const
{
    QSettings& store = m_settings.GetStore();
    SSession session;
    session.project = store.value("Session/project").toString();
    session.current = store.value("Session/current", -1).toInt();
    const int count = store.beginReadArray("Session/files");
    for (int i = 0; i < count; ++i) {
        store.setArrayIndex(i);
        SSession::SFile file{
            store.value("path").toString(), store.value("line").toInt(), store.value("column").toInt(), {}};
        for (const QString& line : store.value("folds").toStringList())
            file.folds.append(line.toInt());
        session.files.push_back(file);
    }
    store.endArray();
    return session;
}

std::int64_t CPreferences::GetSessionTime() const
{
    return m_settings.GetStore().value("Session/noted").toLongLong();
}

void CPreferences::SetSession(const SSession& session)
{
    QSettings& store = m_settings.GetStore();
    store.remove("Session");
    store.setValue("Session/noted", QString::number(QDateTime::currentMSecsSinceEpoch()));
    store.setValue("Session/project", session.project);
    store.setValue("Session/current", session.current);
    store.beginWriteArray("Session/files", static_cast<int>(session.files.size()));
    for (std::size_t i = 0; i < session.files.size(); ++i) {
        const SSession::SFile& file = session.files[i];
        QStringList folds;
        for (const int line : file.folds)
            folds.append(QString::number(line));
        store.setArrayIndex(static_cast<int>(i));
        store.setValue("path", file.path);
        store.setValue("line", file.line);
        store.setValue("column", file.column);
        store.setValue("folds", folds);
    }
    store.endArray();
}

QByteArray CPreferences::GetLayout(const char* part) const
{
    return m_settings.GetStore().value(QLatin1String("Layout/") + QLatin1String(part)).toByteArray();
}

void CPreferences::SetLayout(const char* part, const QByteArray& state)
{
    m_settings.GetStore().setValue(QLatin1String("Layout/") + QLatin1String(part), state);
}

std::vector<int> CPreferences::GetColumnWidths() const
{
    std::vector<int> widths;
    for (int column = 0; column < ErrorsBarColumns; ++column) {
        const int width =
            Host::PathToQt(m_settings.GetString(ErrorsBarSection, ColumnKey(column), L"")).toInt();
        if (width <= 0)
            return {};
        widths.push_back(width);
    }
    return widths;
}

void CPreferences::SetColumnWidths(const std::vector<int>& widths)
{
    for (int column = 0; column < static_cast<int>(widths.size()); ++column)
        m_settings.SetString(ErrorsBarSection, ColumnKey(column),
                             std::to_wstring(widths[static_cast<std::size_t>(column)]));
}

std::wstring CPreferences::GetJournalPlace() const
{
    const QFileInfo file(m_settings.GetStore().fileName());
    return Host::PathFromQt(file.absolutePath() + '/' + file.completeBaseName() + QStringLiteral(".journal"));
}

QString CPreferences::GetTranslationFolder() const
{
    return Host::PathToQt(m_settings.GetFolder()) + QStringLiteral("/translations");
}

QStringList SplitNames(const QString& text)
{
    static const QRegularExpression Separators(QStringLiteral("[\\s,;]+"));
    QStringList names = text.split(Separators, Qt::SkipEmptyParts);
    names.removeDuplicates();
    return names;
}

} // namespace Kesh::Workbench
