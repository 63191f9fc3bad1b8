#include "SyntaxParser/SPDocument.h"

namespace Kesh::SyntaxParser {

namespace {

class CCssKind final : public ISynRegion
{
public:
    explicit CCssKind(const wchar_t* name) : m_name(name) {}
    std::wstring GetName() const override { return m_name; }

private:
    const wchar_t* m_name;
};

} // namespace

ISynRegion* GetCssPropertyNameKind()
{
    static CCssKind kind(L"css property");
    return &kind;
}

ISynRegion* GetCssElementNameKind()
{
    static CCssKind kind(L"css element");
    return &kind;
}

ISynRegion* GetCssOtherKind()
{
    static CCssKind kind(L"css other");
    return &kind;
}

} // namespace Kesh::SyntaxParser
