#include "Output.h"
#include "Verbs.h"

#include "clipformat/FileBlock.h"
#include "clipformat/HtmlFormat.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <cstdio>
#include <optional>

namespace nmnote {
namespace {

constexpr std::size_t kMostInput = std::size_t(1) << 30;

std::optional<std::string> readInput()
{
    std::string bytes;
    char piece[64 * 1024];
    while (const std::size_t count = std::fread(piece, 1, sizeof piece, stdin)) {
        bytes.append(piece, count);
        if (bytes.size() > kMostInput) {
            complain(QStringLiteral("the standard input is longer than 1 GiB"));
            return std::nullopt;
        }
    }
    if (std::ferror(stdin)) {
        complain(QStringLiteral("cannot read the standard input"));
        return std::nullopt;
    }
    return bytes;
}

int failed(const QString& reason)
{
    complain(reason);
    return Failed;
}

// Bytes, not text: the output is what it is.
int done(const std::string& bytes)
{
    std::fwrite(bytes.data(), 1, bytes.size(), stdout);
    return Done;
}

int encodeClip(const std::string& text)
{
    std::string block;
    if (!clipformat::BuildHtmlFormat(text, block))
        return failed(QStringLiteral("the text is too large for eight digits"));
    return done(block);
}

int decodeClip(const std::string& block)
{
    std::string fragment;
    if (!clipformat::CutHtmlFragment(block, fragment))
        return failed(QStringLiteral("the input marks no fragment within itself"));
    return done(fragment);
}

std::optional<std::vector<QString>> pathsOf(const std::string& json)
{
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(json));
    if (!document.isArray())
        return std::nullopt;
    std::vector<QString> paths;
    const QJsonArray array = document.array();
    for (const auto& path : array) {
        if (!path.isString())
            return std::nullopt;
        paths.push_back(path.toString());
    }
    return paths;
}

int encodeFiles(const std::string& json)
{
    const auto paths = pathsOf(json);
    if (!paths)
        return failed(QStringLiteral("the input is no JSON array of paths"));
    std::string block;
    if (!clipformat::BuildFileBlock(*paths, block))
        return failed(QStringLiteral("the list is empty, or one of its paths holds U+0000"));
    return done(block);
}

QString jsonArray(const std::vector<QString>& paths)
{
    QStringList items;
    for (const QString& path : paths)
        items += jsonString(path);
    return u'[' + items.join(u',') + u']';
}

int decodeFiles(const std::string& block)
{
    clipformat::FileBlock files;
    if (!clipformat::ReadFileBlock(block, files))
        return failed(QStringLiteral("the input is no whole list of files"));
    std::vector<QString> wide;
    const bool canBeWide = clipformat::ReadFileBlockAsWide(block, wide);
    print(QStringLiteral("{\"fWide\":%1,\n \"paths\":").arg(files.wide ? 1 : 0)
        + jsonArray(files.paths) + QStringLiteral(",\n \"as16Bit\":")
        + (canBeWide ? jsonArray(wide) : QStringLiteral("null")) + QStringLiteral("}\n"));
    return Done;
}

using Conversion = int (*)(const std::string& input);

int convert(const Arguments& arguments, const QString& verb, Conversion encode, Conversion decode)
{
    const QString direction = arguments.operands.value(0);
    const bool encodes = direction == QLatin1StringView("encode");
    if (!encodes && direction != QLatin1StringView("decode")) {
        complain(QStringLiteral("%1 takes encode or decode").arg(verb));
        return BadUse;
    }
    const auto input = readInput();
    if (!input)
        return Failed;
    return encodes ? encode(*input) : decode(*input);
}

} // namespace

int clipVerb(const Arguments& arguments)
{
    return convert(arguments, QStringLiteral("clip"), encodeClip, decodeClip);
}

int filesVerb(const Arguments& arguments)
{
    return convert(arguments, QStringLiteral("files"), encodeFiles, decodeFiles);
}

} // namespace nmnote
