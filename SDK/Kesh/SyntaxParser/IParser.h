#pragma once

#include "Kesh/SDK/IComponent.h"
#include "Kesh/SyntaxParser/IReader.h"
#include "Kesh/SyntaxParser/Regions.h"

#include <boost/shared_ptr.hpp>
#include <string>

namespace Kesh::SyntaxParser {

/// The edit that led to a parse, in positions of the old and the new text.
struct STextChange
{
    CIterator start;
    CIterator oldEnd;
    CIterator newEnd;
};

/// Receiver of a document's region stream. One pass calls, from one thread: BeforeParse, AddRegion for every
/// region in document order, SendRegsEnd, AfterParse. The service never deletes a handler.
class IStateRegionHandler
{
public:
    /// When the handler is registered: the document's reader.
    virtual void Init(boost::shared_ptr<IReader> reader) = 0;
    /// Before the first region of a pass; true takes part in it.
    virtual bool BeforeParse(const STextChange& change, boost::shared_ptr<IReader> reader) = 0;
    /// After the last region, once SendRegsEnd has been called.
    virtual void AfterParse() = 0;
    virtual void SendRegsEnd() = 0;
    /// One region, valid during the call. The status is 0; it is not looked at.
    virtual int AddRegion(CRegion* region) = 0;
    /// Asked when the handler is registered.
    virtual std::wstring GetSRName() = 0;
    /// Asked in each pass: the part of the document that the handler needs; (-1, -1) to (2147483647,
    /// 2147483647) is all of it.
    virtual CIterator GetStartPos() = 0;
    virtual CIterator GetEndPos() = 0;

    /// Set by the handler when it is constructed; tells the service what kind of handler it is.
    int HandlerCode = 0;

protected:
    ~IStateRegionHandler() = default;
};

/// The document's region producer, component name "IParser".
class IParser : public SDK::IComponent1<ISPDocument>
{
public:
    /// Registers `handler` for every later pass. It stays owned by the caller and must live as long as the
    /// document is parsed.
    virtual void AddStateRegionHandler(IStateRegionHandler* handler) = 0;

protected:
    ~IParser() = default;
};

} // namespace Kesh::SyntaxParser
