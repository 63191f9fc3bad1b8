#pragma once

#include <QIcon>
#include <cstdint>
#include <string>

namespace Kesh::SDK {

/// Icons cut from strips. GUI thread only.
class IImageList
{
public:
    /// Appends the icons of a strip (a file or a Qt resource path), each `width` by `height` pixels; pixels
    /// of `transparent` (0xAARRGGBB) become transparent. Answers whether the strip could be read.
    virtual int Load(const std::wstring& path, int width, int height, std::uint32_t transparent) = 0;
    /// A null icon for an index that does not exist.
    virtual QIcon GetIcon(int index) = 0;
    /// Ends the list; the caller must not use it afterwards.
    virtual void Release() = 0;

protected:
    ~IImageList() = default;
};

class IImageListService
{
public:
    /// A new, empty list, owned by the caller, who ends it with Release().
    virtual IImageList* CreateImageList() = 0;

protected:
    ~IImageListService() = default;
};

} // namespace Kesh::SDK
