#pragma once

#include <QString>

#include <optional>
#include <vector>

// What the tests compare of an img element.
struct ImgElement {
    std::optional<QString> classText;
    std::optional<QString> src;
    std::optional<QString> exData;
    bool operator==(const ImgElement&) const = default;
};

// The img elements of a text in the order in which their tags stand in it. By HtmlDocument.
std::vector<ImgElement> imgElements(const QString& html);
// By full tree building with gumbo. Contents of templates are no elements of the document.
std::vector<ImgElement> gumboImgElements(const QString& html);
