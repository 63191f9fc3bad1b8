#include "Application/Document.h"

#include "Base/Exception.h"
#include "Editor/TextFile.h"
#include "Files/FilePath.h"

#include <QCryptographicHash>

namespace Kesh::Host {

namespace {

QByteArray HashOf(std::string_view bytes)
{
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(bytes.data(), static_cast<int>(bytes.size()));
    return hash.result();
}

/// Empty when it cannot be read.
QByteArray HashOfFile(const std::wstring& path)
{
    try {
        return HashOf(ReadFileBytes(path));
    } catch (const Base::CWorkError&) {
        return {};
    }
}

} // namespace

CDocument::CDocument(const std::wstring& path)
{
    SetPath(path);
}

void CDocument::SetPath(const std::wstring& path)
{
    m_path = path;
    m_resolvedPath = ResolvedPath(path);
}

void CDocument::SetBytes(std::string_view bytes)
{
    SyntaxParser::SSourceFormat format;
    m_holder->SetText(m_encoding ? SyntaxParser::DecodeSourceAs(bytes, *m_encoding, format)
                                 : SyntaxParser::DecodeSource(bytes, format));
    m_format = format;
    m_formatChanged = false;
}

void CDocument::SetFormat(const SyntaxParser::SSourceFormat& format)
{
    if (format.encoding != m_format.encoding)
        m_encoding = format.encoding;
    m_format = format;
    m_formatChanged = true;
}

void CDocument::Load()
{
    const SFileStamp stamp = StampOf(m_path);
    const std::string bytes = ReadFileBytes(m_path);
    SetBytes(bytes);
    NoteDisk(stamp, bytes);
}

void CDocument::LoadAs(SyntaxParser::EEncoding encoding)
{
    const SFileStamp stamp = StampOf(m_path);
    const std::string bytes = ReadFileBytes(m_path);
    m_encoding = encoding;
    SetBytes(bytes);
    NoteDisk(stamp, bytes);
}

void CDocument::Save(bool acceptLoss, const SWriteRules& rules)
{
    if (!m_format.valid && !acceptLoss)
        throw Base::CWorkError(L"the file's bytes are not valid; saving would change them", __LINE__,
                               "Host/Application/Document");
    const std::string bytes = GetBytes();
    WriteFileBytes(m_path, bytes, rules);
    m_resolvedPath = ResolvedPath(m_path);
    NoteSaved(bytes);
}

std::string CDocument::GetBytes()
{
    return Editor::EncodeSource(GetBuffer()->GetText(L"\n"), m_format);
}

void CDocument::NoteDisk(const SFileStamp& stamp, std::string_view bytes)
{
    m_disk = {stamp, HashOf(bytes)};
}

bool CDocument::IsStale()
{
    const SFileStamp stamp = StampOf(m_path);
    if (stamp == m_disk.stamp)
        return false;
    if (stamp.size != m_disk.stamp.size || m_disk.hash.isEmpty() || HashOfFile(m_path) != m_disk.hash)
        return true;
    m_disk.stamp = stamp;
    return false;
}

void CDocument::AcknowledgeDisk(const SFileStamp& stamp)
{
    m_disk = {stamp, HashOfFile(m_path)};
    if (!(StampOf(m_path) == stamp))
        m_disk.hash.clear(); // those are the bytes of yet another one
}

void CDocument::NoteSaved(std::string_view bytes)
{
    m_format.valid = true;
    m_format.mixedLineEnds = false;
    m_formatChanged = false;
    NoteDisk(StampOf(m_path), bytes);
    m_holder->SetUnmodified();
}

} // namespace Kesh::Host
