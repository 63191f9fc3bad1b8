#pragma once

#include "Kesh/SDK/IComponent.h"

#include <boost/weak_ptr.hpp>
#include <string>

namespace Kesh::LangSupport {
class ILangSource;
}

namespace Kesh::SDK {

class IMainFrame;
class IImageListService;
class ISettings;
class ITimerService;
class IThreadService;
class IDocumentService;

/// The host. It outlives every component. The services are owned by it and are never null.
class IApplication
{
public:
    /// A component by name ("IParserComponent", "IPMComponent"); an empty reference when there is none.
    /// Any thread.
    virtual boost::weak_ptr<IComponent1<IApplication>> GetComponent(const std::wstring& name) = 0;
    virtual IMainFrame* GetMainFrame() = 0;
    virtual IImageListService* GetImageListService() = 0;
    virtual ISettings* GetSettings() = 0;
    virtual ITimerService* GetTimerService() = 0;
    virtual IThreadService* GetThreadService() = 0;
    virtual IDocumentService* GetDocumentService() = 0;
    /// Factor by which sizes in pixels are scaled on this display; 1.0 on a plain one.
    virtual double GetScaleFactor() = 0;
    virtual LangSupport::ILangSource* GetLangSource() = 0;

protected:
    ~IApplication() = default;
};

} // namespace Kesh::SDK
