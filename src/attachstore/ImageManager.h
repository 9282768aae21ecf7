#pragma once

#include "attachstore/FileType.h"
#include "support/Singleton.h"

#include <QImage>
#include <QString>

#include <functional>
#include <map>
#include <memory>

/// The type icons, read from the `res` directory of the installation at the first use of each and
/// kept for the life of the process. For the user interface's thread alone.
class ImageManager : public SingletonTemplate<ImageManager> {
public:
    ~ImageManager() override;

    /// The icon of a type, or null when its file is missing or is no image; then nothing is kept
    /// and the next call tries again. The manager keeps ownership.
    ///
    /// FT_UNKNOW alone does without its file: the result is an image that is null itself
    /// (`isNull()`), and stays so even if the file appears later. See also SetFallbackSource.
    const QImage* GetFileTypeBitmap(FILE_TYPE type);

    /// The name of a type's icon file, such as "word.bmp"; "unknow.bmp" for any other number.
    QString GetFileTypeImageName(FILE_TYPE type) const;

    /// Where another module of the host has an icon for FT_UNKNOW: asked when "unknow.bmp" is
    /// missing, and gives a null image if it has none. There is no such source by default; an empty
    /// function takes it away again.
    void SetFallbackSource(std::function<QImage()> source);

private:
    bool hasFallback() const;

    std::map<QString, std::unique_ptr<QImage>> m_images; // by the name of the file
    std::function<QImage()> m_fallbackSource;
};
