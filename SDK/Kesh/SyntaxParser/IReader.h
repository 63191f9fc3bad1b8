#pragma once

#include "Kesh/SDK/IComponent.h"
#include "Kesh/SyntaxParser/Position.h"

#include <string>

namespace Kesh::SyntaxParser {

class ISPDocument;

/// Text access of one document, component name "IReader". Not safe for use by two threads at once.
class IReader : public SDK::IComponent1<ISPDocument>
{
public:
    void InitComponent(ISPDocument* document) override = 0;
    std::wstring GetComponentName() override = 0;
    /// Back to before the first character.
    virtual void Reset() = 0;
    /// One character on, or back; false when there is none.
    virtual bool NextChar() = 0;
    virtual bool PrevChar() = 0;
    virtual wchar_t ReadChar() = 0;
    virtual CIterator GetPos() = 0;
    virtual void SetPos(CIterator pos) = 0;
    /// The characters from `from` up to but not including `to`; throws when they do not lie in the text.
    virtual std::wstring GetText(CIterator from, CIterator to) = 0;
    /// The whole text.
    virtual std::wstring GetText() = 0;
    virtual void SetText(const std::wstring& text) = 0;
    virtual std::wstring GetFirstString() = 0;
    /// Destroys the reader; for owners that hold it by plain pointer.
    virtual void Free() = 0;
    virtual CIterator GetEnd() = 0;
    virtual ~IReader() = default;

    /// 10 while the reader lives.
    int Valid = 10;
};

} // namespace Kesh::SyntaxParser
