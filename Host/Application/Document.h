#pragma once

#include "Editor/TextHolder.h"
#include "Files/FileIO.h"
#include "Kesh/SDK/IDocument.h"
#include "SyntaxParser/SourceText.h"

#include <QByteArray>
#include <memory>
#include <optional>
#include <string>

namespace Kesh::Host {

/// A file on disk as it was read or written last.
struct SDiskState
{
    SFileStamp stamp;
    QByteArray hash; ///< of its bytes; empty: they are not known
};

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
    /// Whether the file on disk has other bytes than the document last read or wrote, or has gone. One that
    /// was only touched, or replaced by its like, is known from then on.
    bool IsStale();
    /// Whether there is no such file any more.
    bool IsGone() const { return StampOf(m_path).size < 0; }

    /// Takes this state of the file on disk for known: while it lasts the document is not stale.
    void AcknowledgeDisk(const SFileStamp& stamp);
    const SDiskState& GetDiskState() const { return m_disk; }
    /// The text is made of another file than the one that was read.
    void SetDiskState(const SDiskState& state) { m_disk = state; }
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
    /// The file is now as the document is, and has these bytes.
    void NoteSaved(std::string_view bytes);
    void NoteDisk(const SFileStamp& stamp, std::string_view bytes);
    std::string GetBytes();

    std::wstring m_path;
    std::wstring m_resolvedPath;
    std::wstring m_factory; ///< of its syntax document
    std::unique_ptr<Editor::ITextHolder> m_holder;
    SyntaxParser::SSourceFormat m_format;
    bool m_formatChanged = false;
    /// What the user has said; unset: as the bytes look.
    std::optional<SyntaxParser::EEncoding> m_encoding;
    SDiskState m_disk;
};

} // namespace Kesh::Host
