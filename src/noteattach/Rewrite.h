#pragma once

#include "noteattach/AttachNewAtt.h"

#include <QString>

#include <string>
#include <vector>

/// Rewriting attachment elements in a note's text, not in the open note. An element is found by its
/// whole `nm_exdata` text, compared exactly, so each operation changes every element that carries
/// the same original name. Of an element nothing changes but the attributes named here, and of the
/// text nothing but the elements. No operation looks at the files that are named.
/// docs/attachment-element.md tells the attributes.
namespace noteattach {

/// Sets `class` and `src` of the elements with that original name to the values as they are given:
/// whole paths, with single backslashes. An element that lacks one of the two gets it.
///
/// Returns 1 with the inside of the new body and its plain text, also when no element has that
/// name. Returns 0, with both left alone, if the document has no body or after a failure, which is
/// logged.
int UpdateHtmlAttachAttr(const QString& html, const QString& origName, const QString& classValue,
    const QString& srcValue, QString& bodyHtml, QString& bodyText);

/// Gives elements another original name and another shown file. Each element whose `nm_exdata` is
/// the `oldExData` of a record gets its `newExData`, and in `src` its `newSrcName` behind the last
/// slash, in `data-ke-src` and `nmimgsrc` behind the last backslash. Of two records with one
/// `oldExData` the first counts. An attribute that an element lacks is not made, and one without
/// its separator keeps its value. An empty `nm_exdata` is never rewritten.
///
/// `html` and `outHtml` are UTF-8, and a NUL ends the text. Returns 1 with the inside of the new
/// body; 0, with `outHtml` left alone, if the document has no body or after a failure, which is
/// logged.
int UpdateAttachAttValue(
    const std::string& html, const std::vector<AttachNewAtt>& attNewList, std::string& outHtml);

/// The form that a paste applies: copies `html` to `outHtml` and returns 1; 0, with `outHtml` left
/// alone, after a failure, which is logged.
/// Kept: it does not look at the list, so pasted elements keep the attributes they came with.
int UpdateAttachAttValue2(
    const std::string& html, const std::vector<AttachNewAtt>& attNewList, std::string& outHtml);

} // namespace noteattach
