#include "Editor/BufferReader.h"

#include "Kesh/Editor/IDocBuffer.h"
#include "SPBase/reader.h"

#include <boost/make_shared.hpp>
#include <optional>

namespace Kesh::Editor {

namespace {

class CBufferReader final : public SyntaxParser::IReader
{
public:
    explicit CBufferReader(IDocBuffer* buffer) : m_buffer(buffer) {}

    void InitComponent(SyntaxParser::ISPDocument* /*document*/) override {}
    std::wstring GetComponentName() override { return L"IReader"; }
    void Reset() override { m_text.reset(); }
    bool NextChar() override { return Text().NextChar(); }
    bool PrevChar() override { return Text().PrevChar(); }
    wchar_t ReadChar() override { return Text().ReadChar(); }
    SyntaxParser::CIterator GetPos() override { return Text().GetPos(); }
    void SetPos(SyntaxParser::CIterator pos) override { Text().SetPos(pos); }
    std::wstring GetText(SyntaxParser::CIterator from, SyntaxParser::CIterator to) override
    {
        return Text().GetText(from, to);
    }
    std::wstring GetText() override { return Text().GetText(); }
    void SetText(const std::wstring& text) override { m_text.emplace().SetWhole(text); }
    std::wstring GetFirstString() override { return Text().GetFirstString(); }
    void Free() override { delete this; }
    SyntaxParser::CIterator GetEnd() override { return Text().GetEnd(); }

private:
    SyntaxParser::CSimpleReader& Text()
    {
        if (!m_text)
            m_text.emplace().TakeWhole(m_buffer->GetText(L"\n"));
        return *m_text;
    }

    IDocBuffer* m_buffer;
    std::optional<SyntaxParser::CSimpleReader> m_text;
};

} // namespace

boost::shared_ptr<SyntaxParser::IReader> MakeBufferReader(IDocBuffer* buffer)
{
    return boost::make_shared<CBufferReader>(buffer);
}

} // namespace Kesh::Editor
