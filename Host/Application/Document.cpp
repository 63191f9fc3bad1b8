#include "Application/Document.h"

#include "Base/Exception.h"
#include "Editor/TextFile.h"
#include "Files/FilePath.h"

namespace Kesh::Host {

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
    SetBytes(ReadFileBytes(m_path));
    m_stamp = stamp;
}

void CDocument::LoadAs(SyntaxParser::EEncoding encoding)
{
    const SFileStamp stamp = StampOf(m_path);
    const std::string bytes = ReadFileBytes(m_path);
    m_encoding = encoding;
    SetBytes(bytes);
    m_stamp = stamp;
}

void CDocument::Save(bool acceptLoss, const SWriteRules& rules)
{
    if (!m_format.valid && !acceptLoss)
        throw Base::CWorkError(L"the file's bytes are not valid; saving would change them", __LINE__,
                               "Host/Application/Document");
    WriteFileBytes(m_path, Editor::EncodeSource(GetBuffer()->GetText(L"\n"), m_format), rules);
    m_resolvedPath = ResolvedPath(m_path);
    NoteSaved();
}

void CDocument::NoteSaved()
{
    m_format.valid = true;
    m_format.mixedLineEnds = false;
    m_formatChanged = false;
    m_stamp = StampOf(m_path);
    m_holder->SetUnmodified();
}

} // namespace Kesh::Host
