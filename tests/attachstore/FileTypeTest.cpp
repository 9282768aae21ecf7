#include "attachstore/FileType.h"

#include <gtest/gtest.h>

#include <QStringList>

namespace {

struct Row {
    FILE_TYPE type;
    const char* extensions;
};

const Row kTable[]{
    {FT_WORD, "doc docx dotx dotm"},
    {FT_EXCEL, "xls xlsx xlsm xltx xlsb xlam"},
    {FT_PPT, "ppt pptx pptm ppsx potx"},
    {FT_TEXT, "txt xml sql"},
    {FT_PDF, "pdf"},
    {FT_ZIP, "zip rar 7z iso tar cab bz2 jar"},
    {FT_IMAGE, "jpg png bmp gif jpeg psd tiff tga"},
    {FT_VIDEO, "avi wmv flv 3gp mkv mov rmvb mp4"},
    {FT_AUDIO, "mp3 wav wma ogg"},
    {FT_HTML, "html"},
};

} // namespace

TEST(FileType, NumbersAreFixed)
{
    const FILE_TYPE types[]{FT_UNKNOW, FT_WORD, FT_EXCEL, FT_PPT, FT_TEXT, FT_PDF, FT_ZIP, FT_IMAGE,
        FT_VIDEO, FT_AUDIO, FT_HTML};
    for (int number = 0; number < 11; ++number)
        EXPECT_EQ(static_cast<int>(types[number]), number);
}

TEST(GetFileTypeByExt, EveryListedExtensionHasItsType)
{
    for (const Row& row : kTable) {
        for (const QString& ext : QString::fromLatin1(row.extensions).split(u' '))
            EXPECT_EQ(GetFileTypeByExt(ext), row.type) << ext.toStdString();
    }
}

TEST(GetFileTypeByExt, CaseDoesNotCount)
{
    EXPECT_EQ(GetFileTypeByExt(QStringLiteral("DOCX")), FT_WORD);
    EXPECT_EQ(GetFileTypeByExt(QStringLiteral("RmVb")), FT_VIDEO);
    EXPECT_EQ(GetFileTypeByExt(QStringLiteral("7Z")), FT_ZIP);
}

TEST(GetFileTypeByExt, WhatIsNotListedIsUnknown)
{
    for (const char* ext : {"", "docm", "xltm", "htm", "wmf", "tif", "gz", "jpeg2", "unknow"})
        EXPECT_EQ(GetFileTypeByExt(QString::fromLatin1(ext)), FT_UNKNOW) << ext;
}

TEST(GetFileTypeByExt, TheWholeExtensionIsCompared)
{
    EXPECT_EQ(GetFileTypeByExt(QStringLiteral(".doc")), FT_UNKNOW);
    EXPECT_EQ(GetFileTypeByExt(QStringLiteral("doc ")), FT_UNKNOW);
    EXPECT_EQ(GetFileTypeByExt(QStringLiteral("pd")), FT_UNKNOW);
    EXPECT_EQ(GetFileTypeByExt(QString::fromUtf8("pdf\0", 4)), FT_UNKNOW);
    EXPECT_EQ(GetFileTypeByExt(QString(QChar(0xD800))), FT_UNKNOW);
}
