#pragma once

#include "Editor/TextHolder.h"
#include "Files/FileIO.h"
#include "Kesh/SDK/IDocument.h"
#include "SyntaxParser/SourceText.h"

#include <memory>
#include <optional>
#include <string>

namespace Kesh::Host {

/// A file open in the host. GUI thread only.
class CDocument final : public SDK::IDocument
{
public:
    explicit CDocument(const std::wstring& path);
    CDocument(const CDocument&) = delete;
    CDocument& operator=(const CDocument&) = delete;

    std::wstring GetPath() override { return m_path; }
    Editor::IDocBuffer* GetBuffer() override { return m_holder->GetBuffer(); }
    SDK::IView* GetView() override { return m_holder->GetView(); }

    /// The same for every spelling of the path and every link to the file.
    const std::wstring& GetResolvedPath() const { return m_resolvedPath; }
    Editor::ITextHolder& GetHolder() { return *m_holder; }
    /// Whether the file on disk lacks edits of the text or a change of the format.
    bool IsModified() { return m_formatChanged || m_holder->IsModified(); }
    /// Whether the file's bytes were all valid, so that saving loses nothing.
    bool IsFaithful() const { return m_format.valid; }
    /// Whether the file on disk is another one than the document last read or wrote.
    bool IsStale() const { return !(StampOf(m_path) == m_stamp); }

    /// Takes this state of the file on disk for known: while it lasts the document is not stale.
    void AcknowledgeDisk(const SFileStamp& stamp) { m_stamp = stamp; }
    /// How the file is written.
    const SyntaxParser::SSourceFormat& GetFormat() const { return m_format; }
    /// How the next saves write it.
    void SetFormat(const SyntaxParser::SSourceFormat& format);

    /// Replaces the text by the file's. Throws Base::CWorkError and changes nothing when it cannot be read.
    void Load();
    /// The same, read in this encoding from now on.
    void LoadAs(SyntaxParser::EEncoding encoding);
    /// Writes the text to the file in its own format. Throws Base::CWorkError, the file left as it was, when
    /// that fails, when the encoding lacks a character, or when the file's bytes were not valid and
    /// `acceptLoss` does not allow to replace them.
    void Save(bool acceptLoss = false, const SWriteRules& rules = {});

private:
    friend class CDocumentService;
    void SetPath(const std::wstring& path);
    void SetBytes(std::string_view bytes);
    /// The file is now as the document is.
    void NoteSaved();

    std::wstring m_path;
    std::wstring m_resolvedPath;
    std::wstring m_factory; ///< of its syntax document
    std::unique_ptr<Editor::ITextHolder> m_holder;
    SyntaxParser::SSourceFormat m_format;
    bool m_formatChanged = false;
    /// What the user has said; unset: as the bytes look.
    std::optional<SyntaxParser::EEncoding> m_encoding;
    SFileStamp m_stamp;
};

} // namespace Kesh::Host
