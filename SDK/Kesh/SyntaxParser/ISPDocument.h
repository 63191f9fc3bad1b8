#pragma once

#include "Kesh/SDK/IComponent.h"
#include "Kesh/SyntaxParser/IParser.h"
#include "Kesh/SyntaxParser/SemanticTree.h"

#include <atomic>
#include <boost/enable_shared_from_this.hpp>
#include <boost/signals2/signal.hpp>
#include <boost/weak_ptr.hpp>
#include <string>

namespace Kesh::SDK {
class IDocument;
}
namespace Kesh::Editor {
class IDocBuffer;
}

namespace Kesh::SyntaxParser {

/// The parsing service's view of one text: the file of an open document, or a private copy made for a check.
/// Always held by boost::shared_ptr. One thread at a time, but GetFilePath() and GetFactoryName() are safe
/// from any thread.
class ISPDocument : public boost::enable_shared_from_this<ISPDocument>
{
public:
    using EndOfParseSignal = boost::signals2::signal<void(ISPDocument*)>;
    using DocDestroySignal = boost::signals2::signal<void(SDK::IDocument*)>;

    virtual ~ISPDocument() { Valid = 0; }

    /// "IReader" and "IParser"; an empty reference for any other name.
    virtual boost::weak_ptr<SDK::IComponent1<ISPDocument>> GetComponent(const std::wstring& name) = 0;
    virtual std::wstring GetFilePath() = 0;
    /// "PHPSPDocFactory", "HTMLSPDocFactory" or "CSSSPDocFactory".
    virtual std::wstring GetFactoryName() = 0;
    virtual CDefRegions* GetDefRegions() = 0;
    /// The host document that this one belongs to, and its text; null for a private copy. GUI thread.
    virtual SDK::IDocument* GetDocument() = 0;
    virtual Editor::IDocBuffer* GetBuffer() = 0;
    /// The semantic parser of a language ("HTML": it builds the trees of both "HTML" and "CSS"); null when
    /// there is none. Owned by the document.
    virtual ISemanticParser* GetSemanticParser(const std::wstring& language) = 0;
    /// Runs one pass over the reader's text on the calling thread: region handlers first, then the semantic
    /// trees, then the end-of-parse signal. `full` is true: partial passes are reserved.
    virtual void Parse(bool full) = 0;
    /// While a parse runs the flag may be set from any thread: Parse() then returns soon, with no
    /// AfterParse() for the handlers and no end-of-parse signal. Null, as it is at first: nobody will. Not
    /// owned. A host may leave it aside and parse to the end.
    virtual void SetCancelFlag(const std::atomic<bool>* /*cancelled*/) {}
    /// Emitted at the end of Parse(), on its thread.
    virtual EndOfParseSignal& GetEndOfParseSignal() = 0;
    /// Emitted when the host document is about to end. GUI thread.
    virtual DocDestroySignal& GetDocDestroySignal() = 0;
    /// The semantic data may only be read between the two.
    virtual void LockSemanticData() = 0;
    virtual void UnlockSemanticData() = 0;
    /// The tree of "HTML" or "CSS" of the last pass; null when none was built.
    virtual const SSemanticTree* GetSemanticTree(const std::wstring& language) = 0;

    /// 10 while the document lives.
    int Valid = 10;
};

} // namespace Kesh::SyntaxParser
