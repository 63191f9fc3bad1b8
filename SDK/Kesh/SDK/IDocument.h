#pragma once

#include <string>

namespace Kesh::Editor {
class IDocBuffer;
}

namespace Kesh::SDK {

/// A view of a document. Text views are Kesh::Editor::IStandartView, found by dynamic_cast.
class IView
{
public:
    virtual ~IView() = default;
    /// Brings the view to the front and gives it the keyboard focus.
    virtual void Activate() = 0;
};

/// A file open in the host. Owned by the host. GUI thread only.
class IDocument
{
public:
    virtual std::wstring GetPath() = 0;
    /// Null when the document has no text.
    virtual Editor::IDocBuffer* GetBuffer() = 0;
    /// Null when the document is not shown.
    virtual IView* GetView() = 0;

protected:
    ~IDocument() = default;
};

class IDocumentService
{
public:
    /// The document of a file, opened when it is not open yet; null when that fails. `flag` 0: show it.
    virtual IDocument* Open(const std::wstring& path, int flag) = 0;
    /// The document the user works in; null when there is none.
    virtual IDocument* GetCurrent() = 0;

protected:
    ~IDocumentService() = default;
};

} // namespace Kesh::SDK
