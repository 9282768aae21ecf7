#include "attachstore/FileType.h"

#include <initializer_list>
#include <iterator>
#include <string_view>

namespace {

struct Row {
    FILE_TYPE type;
    std::initializer_list<std::u16string_view> extensions;
};

// The list stands as it is: docm, xltm, htm, wmf, tif and gz are not in it.
const Row kRows[]{
    {FT_WORD, {u"doc", u"docx", u"dotx", u"dotm"}},
    {FT_EXCEL, {u"xls", u"xlsx", u"xlsm", u"xltx", u"xlsb", u"xlam"}},
    {FT_PPT, {u"ppt", u"pptx", u"pptm", u"ppsx", u"potx"}},
    {FT_TEXT, {u"txt", u"xml", u"sql"}},
    {FT_PDF, {u"pdf"}},
    {FT_ZIP, {u"zip", u"rar", u"7z", u"iso", u"tar", u"cab", u"bz2", u"jar"}},
    {FT_IMAGE, {u"jpg", u"png", u"bmp", u"gif", u"jpeg", u"psd", u"tiff", u"tga"}},
    {FT_VIDEO, {u"avi", u"wmv", u"flv", u"3gp", u"mkv", u"mov", u"rmvb", u"mp4"}},
    {FT_AUDIO, {u"mp3", u"wav", u"wma", u"ogg"}},
    {FT_HTML, {u"html"}},
};

} // namespace

FILE_TYPE GetFileTypeByExt(const QString& ext)
{
    const QString lower = ext.toLower();
    for (const Row& row : kRows) {
        for (const std::u16string_view known : row.extensions) {
            if (lower == QStringView(known))
                return row.type;
        }
    }
    return FT_UNKNOW;
}
