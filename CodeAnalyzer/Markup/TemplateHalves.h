#pragma once

#include "Kesh/CodeAnalyzer/Diagnostic.h"

#include <cstddef>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace Kesh::CodeAnalyzer {

class IErrorsReceiver;

/// A tag of a part of a document whose partner, if it has one, is in another file.
struct STemplateHalf
{
    std::wstring name; ///< in lower case
    bool opens = false;
    SyntaxParser::SScheme span;
};

/// What one file leaves to others.
struct SFileHalves
{
    std::vector<STemplateHalf> halves;
    // Names of tags that the file may print without their partners; nothing more is known of them.
    std::set<std::wstring, std::less<>> mayOpen;
    std::set<std::wstring, std::less<>> mayClose;
};

/// Finds the tags in the templates of a project that nothing in the project is the partner of. One thread at
/// a time.
class CTemplateHalves
{
public:
    void Add(const std::wstring& file, SFileHalves halves);
    /// A file of the project is not looked into, open in the editor for instance: it may have any partner.
    void Miss() { m_missed = true; }
    /// Warnings by files, each with the nearest candidate; none when a file was missed.
    std::map<std::wstring, std::vector<SDiagnostic>> FindLonely() const;

private:
    struct SCount
    {
        std::size_t opens = 0;  ///< files with such a half
        std::size_t closes = 0; ///< likewise
    };

    struct SLonely
    {
        const std::wstring* file;
        const STemplateHalf* half;
    };

    bool HasPartner(const SFileHalves& own, const STemplateHalf& half) const;

    std::map<std::wstring, SFileHalves> m_files;
    std::map<std::wstring, SCount> m_names;
    bool m_missed = false;
};

} // namespace Kesh::CodeAnalyzer
