#pragma once

#include "Application/Document.h"
#include "Files/FileReplacement.h"
#include "Preferences.h"
#include "SyntaxParser/SourceText.h"

#include <cstdint>
#include <string>
#include <vector>

namespace Kesh::Workbench {

/// A text that is in no file, or in none any more.
struct SUnsavedText
{
    std::wstring path;
    SyntaxParser::SSourceFormat format;
    Host::SDiskState base;  ///< the file that the text was made of
    std::string text;       ///< UTF-8 as the editor has it
    std::int64_t noted = 0; ///< ms since 1970
};

/// What one window had open, and what was not saved of it.
struct SJournal
{
    SSession session;
    std::int64_t noted = 0; ///< when the session was; 0: there is none
    bool isKept = false;    ///< the user has ended the window so; false: it has ended by a fault
    std::vector<SUnsavedText> texts;
};

/// The folder on disk where a window notes what would be lost if it ended now. It belongs to one window, by
/// a lock that goes with its process, however that ends. Every file in it is there as a whole or not at all.
/// What cannot be read or written throws Base::CWorkError. Any thread, one at a time.
class CJournalFolder
{
public:
    /// A new one in `place`, which is made when it is missing.
    static CJournalFolder Create(const std::wstring& place);
    /// Those in `place` that no living window holds; they are held from now on.
    static std::vector<CJournalFolder> TakeAbandoned(const std::wstring& place);

    void WriteText(int number, const SUnsavedText& text) const;
    void RemoveText(int number) const;
    void WriteSession(const SSession& session, bool isKept) const;
    /// `isComplete`: whether all that is there could be read.
    SJournal Read(bool& isComplete) const;
    /// Ends it, with all that is in it.
    void Remove();

private:
    CJournalFolder(std::wstring path, Host::CDescriptor lock)
        : m_path(std::move(path)), m_lock(std::move(lock))
    {
    }

    std::wstring m_path;
    Host::CDescriptor m_lock;
};

} // namespace Kesh::Workbench
