#pragma once

#include "Application/Application.h"
#include "Window/ImageListService.h"

namespace Kesh::Host {

/// What a host with a window has of its toolkit for plug-ins. GUI thread.
class CDisplay final : public IDisplay
{
public:
    SDK::IImageListService& Images() override { return m_images; }
    double ScaleFactor() override;

private:
    CImageListService m_images;
};

} // namespace Kesh::Host
