#include "Application/Document.h"

#include "Application/FilePath.h"
#include "Base/Exception.h"
#include "Editor/TextFile.h"

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
    m_holder->SetText(SyntaxParser::DecodeSource(bytes, format));
    m_format = format;
}

void CDocument::Load()
{
    const SFileStamp stamp = StampOf(m_path);
    SetBytes(ReadFileBytes(m_path));
    m_stamp = stamp;
}

void CDocument::Save(bool acceptLoss)
{
    if (!m_format.valid && !acceptLoss)
        throw Base::CWorkError(L"the file is not valid UTF-8; saving would change its bytes", __LINE__,
                               "Host/Application/Document");
    WriteFileBytes(m_path, Editor::EncodeSource(GetBuffer()->GetText(L"\n"), m_format));
    m_format.valid = true;
    m_stamp = StampOf(m_path);
    m_resolvedPath = ResolvedPath(m_path);
    m_holder->SetUnmodified();
}

} // namespace Kesh::Host
