#pragma once

#include "Kesh/SDK/IComponent.h"
#include "Kesh/SyntaxParser/ISPDocument.h"

#include <boost/shared_ptr.hpp>
#include <boost/signals2/signal.hpp>
#include <string>
#include <vector>

namespace Kesh::SDK {
class IApplication;
}

namespace Kesh::SyntaxParser {

/// One name that completion offers.
class ICompletionItem
{
public:
    /// Valid as long as the parser component.
    virtual const std::wstring& GetName() const = 0;

protected:
    ~ICompletionItem() = default;
};

using TCompletionList = std::vector<const ICompletionItem*>;

/// Answers which attributes a tag takes. Any thread.
class IAttributeSource
{
public:
    /// The attributes allowed on `tag` (as written, in any case), global ones included; the global ones alone
    /// for a tag that is not listed. Sorted by name; valid as long as the parser component.
    virtual const TCompletionList& GetAttributes(const std::wstring& tag) const = 0;

protected:
    ~IAttributeSource() = default;
};

/// The names of HTML and CSS that the host knows, each list sorted by name without duplicates. Immutable,
/// valid as long as the parser component. Any thread.
class ICompletionData
{
public:
    virtual const TCompletionList& GetTags() const = 0;
    virtual const TCompletionList& GetStyleProperties() const = 0;
    virtual const IAttributeSource* GetAttributeSource() const = 0;

protected:
    ~ICompletionData() = default;
};

/// The two kinds of names in a style sheet.
class ICssSyntax
{
public:
    virtual ISynRegion* GetPropertyNameKind() const = 0;
    virtual ISynRegion* GetElementNameKind() const = 0;

protected:
    ~ICssSyntax() = default;
};

/// The host's syntax-parsing service, component name "IParserComponent".
class IParserComponent : public SDK::IComponent1<SDK::IApplication>
{
public:
    using DocCreatedSignal = boost::signals2::signal<void(boost::shared_ptr<ISPDocument>)>;
    using ProjectParsedSignal = boost::signals2::signal<void()>;
    using FindErrorRegionsSignal = boost::signals2::signal<void(const std::wstring& file, const SScheme& span,
                                                                std::vector<SScheme>& out)>;

    virtual CDefRegions* GetDefRegions() = 0;
    virtual const ICompletionData* GetCompletionData() = 0;
    virtual const ICssSyntax* GetCssSyntax() = 0;
    /// A syntax document of its own over `reader`, not announced by any signal; null for a factory name that
    /// is not known. Any thread.
    virtual boost::shared_ptr<ISPDocument> CreateDocument(boost::shared_ptr<IReader> reader,
                                                          const std::wstring& path,
                                                          const std::wstring& factoryName) = 0;
    /// A document over the file's text on disk, ready for Parse(). Null when the file cannot be read, or when
    /// it is open in the editor, where its own check follows it. Any thread.
    virtual boost::shared_ptr<ISPDocument> GetParsedDocument(const std::wstring& path) = 0;
    /// The syntax document of an open document; null when it has none. GUI thread.
    virtual boost::shared_ptr<ISPDocument> GetSPDocument(SDK::IDocument* document) = 0;

    /// A syntax document was made for a file opened in the editor. GUI thread.
    virtual DocCreatedSignal& GetDocCreatedSignal() = 0;
    /// The opened project's files are known. GUI thread.
    virtual ProjectParsedSignal& GetProjectParsedSignal() = 0;
    /// Emitted by the editor, which wants the spans to be drawn as errors inside `span`. GUI thread.
    virtual FindErrorRegionsSignal& GetFindErrorRegionsSignal() = 0;

protected:
    ~IParserComponent() = default;
};

} // namespace Kesh::SyntaxParser
