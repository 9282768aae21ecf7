#pragma once

#include "html/ScanResult.h"

#include <QByteArray>
#include <QString>
#include <QStringView>

#include <map>
#include <optional>
#include <utility>
#include <vector>

// An HTML document that is on no page: a text is read once, its elements of one name are listed,
// their attributes are read and set, elements are taken out, and the inside of the body comes back.
// There is no tree. The text is cut into tokens as the HTML standard (section 13.2) has it, and
// tree building is followed only as far as it decides which tags make an element. A change is a
// splice: every byte that was not asked to change stays as it was.
//
//     HtmlDocument document(html);
//     for (qsizetype i = 0; i < document.elementCount(); ++i) {
//         if (document.attribute(i, QLatin1StringView("nm_exdata")) == wanted)
//             document.setAttribute(i, QLatin1StringView("src"), newSource);
//     }
//     QString body = document.bodyInnerHtml();
//
// Time is linear in the text. Memory does not depend on the depth of the elements, save for a text
// with svg, math, select or template, where it takes a few words for each open element. Values are
// decoded when they are asked for. The text is shared, not copied. Every text is a document, so
// nothing here fails but for want of memory. A document is a value and holds no lock.
//
// What counts as an element:
// - Tags in comments, in raw text (style, script, title, textarea, xmp, iframe, noembed, noframes,
//   plaintext) and in a template are none, nor is a tag that the text ends in.
// - An img in a select is none. The select ends at its end tag, at another select, an input, a
//   textarea or a keygen, and, if it stands in a table, at the tags of rows and cells.
// - An img in svg or math ends them, so it counts. An `image` is an img, but not in svg or math.
// - A document of frames (a frameset before any content) has no body and no elements.
//
// What the inside of the body is:
// - A text without a doctype, html, head or body tag in front of its content is a fragment: all of
//   it is the inside.
// - Otherwise the inside starts where the body does, behind the body tag or, without one, with the
//   first content, and reaches to the end of the text.
// - Left out of it are html, head, body and frameset tags, start and end tags alike, doctypes, and
//   a tag that the text ends in.
// - Where a cut would join two pieces of text into markup ("<" and "img"), an empty comment keeps
//   them apart. Where a removed element was what ended svg or math, a stray head tag ends them.
//
// docs/html-document.md tells, case by case, where this knowingly differs from full tree building.
// Tests hold the rest against a full parser.
class HtmlDocument {
public:
    // What is read of the text at once. A document whose plain text will be asked for saves a
    // reading.
    enum class Reading { Elements, ElementsAndText };

    // `tag` is the name of the elements to list, in lower case. It is meant for elements without
    // content (img, br, hr, embed …): of any other only the start tags are listed, and those with
    // rules of their own (html, body, parts of tables) may be listed where a tree has none.
    explicit HtmlDocument(const QString& html, QLatin1StringView tag = QLatin1StringView("img"),
        Reading reading = Reading::Elements);
    HtmlDocument(const QString& html, Reading reading)
        : HtmlDocument(html, QLatin1StringView("img"), reading)
    {
    }

    // The elements in document order are numbered from 0. A removed one keeps its number. Every
    // operation below takes such a number, and no other.
    qsizetype elementCount() const { return qsizetype(m_scan.elements.size()); }

    // The value of an attribute, character references decoded: no value if the element has no such
    // attribute, the empty text if it has it without a value. The first of two attributes of one
    // name counts. `name` is in lower case. The value is whole: a class text is not split.
    std::optional<QString> attribute(qsizetype element, QLatin1StringView name) const;

    // Sets an attribute of an element. One that exists keeps its place, a new one goes right behind
    // the tag's name. The value is written between double quotes so that it reads back the same,
    // but for what no HTML text can hold: NUL and lone surrogates become U+FFFD. `name` is in lower
    // case; false, and no change, if it is not a name (empty, or with white space, NUL, a quote,
    // '<', '>', '/' or '=').
    bool setAttribute(qsizetype element, QLatin1StringView name, const QString& value);

    // Takes an element out of the document: its tag, which is the whole of an element without
    // content.
    void remove(qsizetype element);

    // False for a document of frames alone.
    bool hasBody() const { return m_scan.hasBody; }

    // The inside of the body with all changes; empty without a body.
    QString bodyInnerHtml() const;

    // The plain text of the body, as a person would read it, after all removals: the rule is
    // docs/plain-text.md. Reads the text again, unless it was read for this and nothing is removed.
    QString bodyText() const;

private:
    using NameValue = std::pair<QByteArray, QString>;
    struct Change {
        bool removed = false;
        std::vector<NameValue> attributes; // those set, in the order of their first setting
    };

    QStringView elementText(qsizetype element) const;
    void prefetchAfter(qsizetype element) const;
    const Change* changeOf(qsizetype element) const;
    QString changedTag(qsizetype element, const Change& change) const;

    QString m_html;
    html::ScanResult m_scan;
    std::map<qsizetype, Change> m_changes; // by element
    bool m_textIsRead; // m_scan has the plain text of the document as it was read
    bool m_anyRemoved = false;
};
