#pragma once

#include "Application/Settings.h"

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <cstdint>
#include <string>
#include <vector>

namespace Kesh::Workbench {

enum class EAppearance { System, Light, Dark };

/// What the user can choose in the settings dialog.
struct SChoices
{
    QString language; ///< "" is the system's, "en" English, else the name of a translation such as "de"
    EAppearance appearance = EAppearance::System;
    int fontSize = 10;    ///< points
    bool hotExit = false; ///< quitting keeps unsaved edits for the next start, and asks nothing
    bool grammar = true;  ///< check PHP against its whole grammar
    bool markup = true;   ///< check HTML and CSS beyond their names
    QStringList customTags;
    QStringList customAttributes;
    QStringList presets;           ///< of names that HTML does not know
    bool checksMarkup = true;      ///< the HTML and CSS of a project's files too
    std::vector<int> columnWidths; ///< of the errors bar, pixels; empty: the bar's own

    friend bool operator==(const SChoices&, const SChoices&) = default;
};

/// What was open when the window was closed.
struct SSession
{
    struct SFile
    {
        QString path;
        int line = 0;
        int column = 0;
        QList<int> folds; ///< folded lines
    };
    QString project; ///< empty: none was open
    std::vector<SFile> files;
    int current = -1; ///< of the files
};

/// The user's choices and the window's memory, kept in the settings file.
class CPreferences
{
public:
    /// Not owned.
    explicit CPreferences(Host::CFileSettings& settings) : m_settings(settings) {}

    SChoices GetChoices() const;
    void SetChoices(const SChoices& choices);

    /// Latest first.
    QStringList GetRecentProjects() const;
    void AddRecentProject(const QString& folder);

    SSession GetSession() const;
    /// When it was set, in ms since 1970; 0: never.
    std::int64_t GetSessionTime() const;
    void SetSession(const SSession& session);

    QByteArray GetLayout(const char* part) const;
    void SetLayout(const char* part, const QByteArray& state);
    std::vector<int> GetColumnWidths() const;
    void SetColumnWidths(const std::vector<int>& widths);

    /// Where windows note what is not saved yet.
    std::wstring GetJournalPlace() const;
    /// Where translations of the user's own lie.
    QString GetTranslationFolder() const;

private:
    Host::CFileSettings& m_settings;
};

/// Names out of a text in which blanks, commas or line ends stand between them.
QStringList SplitNames(const QString& text);

} // namespace Kesh::Workbench
