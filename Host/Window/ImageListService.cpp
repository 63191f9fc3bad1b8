#include "Window/ImageListService.h"

#include "Files/FilePath.h"

#include <QImage>
#include <QPixmap>
#include <vector>

namespace Kesh::Host {

namespace {

class CImageList final : public SDK::IImageList
{
public:
    int Load(const std::wstring& path, int width, int height, std::uint32_t transparent) override
    {
        QImage strip(PathToQt(path));
        if (strip.isNull() || width <= 0 || height <= 0)
            return 0;
        strip = strip.convertToFormat(QImage::Format_ARGB32);
        for (int y = 0; y < strip.height(); ++y) {
            auto* line = reinterpret_cast<QRgb*>(strip.scanLine(y));
            for (int x = 0; x < strip.width(); ++x)
                if (line[x] == transparent)
                    line[x] = 0;
        }
        for (int y = 0; y + height <= strip.height(); y += height)
            for (int x = 0; x + width <= strip.width(); x += width)
                m_icons.emplace_back(QPixmap::fromImage(strip.copy(x, y, width, height)));
        return 1;
    }
    QIcon GetIcon(int index) override
    {
        return index >= 0 && index < static_cast<int>(m_icons.size())
                   ? m_icons[static_cast<std::size_t>(index)]
                   : QIcon();
    }
    void Release() override { delete this; }

private:
    std::vector<QIcon> m_icons;
};

} // namespace

SDK::IImageList* CImageListService::CreateImageList()
{
    return new CImageList;
}

} // namespace Kesh::Host
