#pragma once

#include "Kesh/SDK/IImageList.h"

namespace Kesh::Host {

class CImageListService final : public SDK::IImageListService
{
public:
    SDK::IImageList* CreateImageList() override;
};

} // namespace Kesh::Host
