#pragma once

#include <QString>
#include <QStringView>

// What the HTML standard says of each element name, as far as the scan needs it: one row per name.
// Source of the columns: HTML Living Standard, section 13.2 (parsing), "The stack of open elements"
// and "The rules for parsing tokens in HTML content"; the last three columns are the rule of
// docs/plain-text.md.

namespace html {

// A property of a name. A row below is the sum of those that hold.
enum TagFlag : quint32 {
    Void = 1u << 0, // never on the stack of open elements
    Special = 1u << 1, // the "special" category
    Formatting = 1u << 2, // the "formatting" category
    Boundary = 1u << 3, // ends every "in scope" search
    ClosesP = 1u << 4, // its start tag closes an open p
    ScopedEnd = 1u << 5, // its end tag closes the nearest one in scope, whatever stands above
    Heading = 1u << 6,
    TablePart = 1u << 7, // means something only in a table
    HeadContent = 1u << 8, // keeps the parser in the head
    Breakout = 1u << 9, // ends SVG and MathML
    NoFrames = 1u << 10, // sets the frameset-ok flag to "not ok"
    Rcdata = 1u << 11, // text with references up to its end tag
    Rawtext = 1u << 12, // text without references up to its end tag
    Block = 1u << 13, // has an edge in the plain text
    Hidden = 1u << 14, // its inside is no part of the plain text
    Preformatted = 1u << 15, // keeps white space in the plain text
};

// clang-format off
#define NOMAR_HTML_TAGS(X) \
    X(A, "a", Formatting) \
    X(Address, "address", Special | ClosesP | ScopedEnd | Block) \
    X(AnnotationXml, "annotation-xml", 0) \
    X(Applet, "applet", Special | Boundary | ScopedEnd | NoFrames) \
    X(Area, "area", Void | Special | NoFrames) \
    X(Article, "article", Special | ClosesP | ScopedEnd | Block) \
    X(Aside, "aside", Special | ClosesP | ScopedEnd | Block) \
    X(B, "b", Formatting | Breakout) \
    X(Base, "base", Void | Special | HeadContent) \
    X(Basefont, "basefont", Void | Special | HeadContent) \
    X(Bgsound, "bgsound", Void | Special | HeadContent) \
    X(Big, "big", Formatting | Breakout) \
    X(Blockquote, "blockquote", Special | ClosesP | ScopedEnd | Breakout | Block) \
    X(Body, "body", Special | Breakout | Block) \
    X(Br, "br", Void | Special | Breakout | NoFrames) \
    X(Button, "button", Special | ScopedEnd | NoFrames) \
    X(Caption, "caption", Special | Boundary | TablePart | Block) \
    X(Center, "center", Special | ClosesP | ScopedEnd | Breakout | Block) \
    X(Code, "code", Formatting | Breakout) \
    X(Col, "col", Void | Special | TablePart) \
    X(Colgroup, "colgroup", Special | TablePart) \
    X(Dd, "dd", Special | ClosesP | ScopedEnd | Breakout | NoFrames | Block) \
    X(Desc, "desc", 0) \
    X(Details, "details", Special | ClosesP | ScopedEnd | Block) \
    X(Dialog, "dialog", ClosesP | ScopedEnd | Block) \
    X(Dir, "dir", Special | ClosesP | ScopedEnd | Block) \
    X(Div, "div", Special | ClosesP | ScopedEnd | Breakout | Block) \
    X(Dl, "dl", Special | ClosesP | ScopedEnd | Breakout | Block) \
    X(Dt, "dt", Special | ClosesP | ScopedEnd | Breakout | NoFrames | Block) \
    X(Em, "em", Formatting | Breakout) \
    X(Embed, "embed", Void | Special | Breakout | NoFrames) \
    X(Fieldset, "fieldset", Special | ClosesP | ScopedEnd | Block) \
    X(Figcaption, "figcaption", Special | ClosesP | ScopedEnd | Block) \
    X(Figure, "figure", Special | ClosesP | ScopedEnd | Block) \
    X(Font, "font", Formatting) \
    X(Footer, "footer", Special | ClosesP | ScopedEnd | Block) \
    X(ForeignObject, "foreignobject", 0) \
    X(Form, "form", Special | ClosesP | Block) \
    X(Frame, "frame", Void | Special) \
    X(Frameset, "frameset", Special) \
    X(H1, "h1", Special | ClosesP | Heading | Breakout | Block) \
    X(H2, "h2", Special | ClosesP | Heading | Breakout | Block) \
    X(H3, "h3", Special | ClosesP | Heading | Breakout | Block) \
    X(H4, "h4", Special | ClosesP | Heading | Breakout | Block) \
    X(H5, "h5", Special | ClosesP | Heading | Breakout | Block) \
    X(H6, "h6", Special | ClosesP | Heading | Breakout | Block) \
    X(Head, "head", Special | Breakout | Hidden) \
    X(Header, "header", Special | ClosesP | ScopedEnd | Block) \
    X(Hgroup, "hgroup", Special | ClosesP | ScopedEnd | Block) \
    X(Hr, "hr", Void | Special | ClosesP | Breakout | NoFrames | Block) \
    X(Html, "html", Special | Boundary) \
    X(I, "i", Formatting | Breakout) \
    X(Iframe, "iframe", Special | NoFrames | Rawtext | Hidden) \
    X(Image, "image", 0) \
    X(Img, "img", Void | Special | Breakout | NoFrames) \
    X(Input, "input", Void | Special) \
    X(Keygen, "keygen", Void | Special | NoFrames) \
    X(Legend, "legend", Block) \
    X(Li, "li", Special | ClosesP | Breakout | NoFrames | Block) \
    X(Link, "link", Void | Special | HeadContent) \
    X(Listing, "listing", \
        Special | ClosesP | ScopedEnd | Breakout | NoFrames | Block | Preformatted) \
    X(Main, "main", Special | ClosesP | ScopedEnd | Block) \
    X(Malignmark, "malignmark", 0) \
    X(Marquee, "marquee", Special | Boundary | ScopedEnd | NoFrames) \
    X(Math, "math", 0) \
    X(Menu, "menu", Special | ClosesP | ScopedEnd | Breakout | Block) \
    X(Meta, "meta", Void | Special | HeadContent | Breakout) \
    X(Mglyph, "mglyph", 0) \
    X(Mi, "mi", 0) \
    X(Mn, "mn", 0) \
    X(Mo, "mo", 0) \
    X(Ms, "ms", 0) \
    X(Mtext, "mtext", 0) \
    X(Nav, "nav", Special | ClosesP | ScopedEnd | Block) \
    X(Nobr, "nobr", Formatting | Breakout) \
    X(Noembed, "noembed", Special | Rawtext | Hidden) \
    X(Noframes, "noframes", Special | HeadContent | Rawtext | Hidden) \
    X(Noscript, "noscript", Special) \
    X(Object, "object", Special | Boundary | ScopedEnd | NoFrames) \
    X(Ol, "ol", Special | ClosesP | ScopedEnd | Breakout | Block) \
    X(Optgroup, "optgroup", Block) \
    X(Option, "option", Block) \
    X(P, "p", Special | ClosesP | Breakout | Block) \
    X(Param, "param", Void | Special) \
    X(Plaintext, "plaintext", Special | ClosesP | Rawtext | Block | Preformatted) \
    X(Pre, "pre", Special | ClosesP | ScopedEnd | Breakout | NoFrames | Block | Preformatted) \
    X(Rb, "rb", 0) \
    X(Rp, "rp", 0) \
    X(Rt, "rt", 0) \
    X(Rtc, "rtc", 0) \
    X(Ruby, "ruby", Breakout) \
    X(S, "s", Formatting | Breakout) \
    X(Script, "script", Special | HeadContent | Rawtext | Hidden) \
    X(Search, "search", Special | ClosesP | ScopedEnd | Block) \
    X(Section, "section", Special | ClosesP | ScopedEnd | Block) \
    X(Select, "select", Special | NoFrames | Block) \
    X(Small, "small", Formatting | Breakout) \
    X(Source, "source", Void | Special) \
    X(Span, "span", Breakout) \
    X(Strike, "strike", Formatting | Breakout) \
    X(Strong, "strong", Formatting | Breakout) \
    X(Style, "style", Special | HeadContent | Rawtext | Hidden) \
    X(Sub, "sub", Breakout) \
    X(Summary, "summary", Special | ClosesP | ScopedEnd | Block) \
    X(Sup, "sup", Breakout) \
    X(Svg, "svg", 0) \
    X(Table, "table", Special | Boundary | Breakout | NoFrames | Block) \
    X(Tbody, "tbody", Special | TablePart | Block) \
    X(Td, "td", Special | Boundary | TablePart) \
    X(Template, "template", Special | Boundary | HeadContent | NoFrames | Hidden) \
    X(Textarea, "textarea", Special | NoFrames | Rcdata | Preformatted) \
    X(Tfoot, "tfoot", Special | TablePart | Block) \
    X(Th, "th", Special | Boundary | TablePart) \
    X(Thead, "thead", Special | TablePart | Block) \
    X(Title, "title", Special | HeadContent | Rcdata | Hidden) \
    X(Tr, "tr", Special | TablePart | Block) \
    X(Track, "track", Void | Special) \
    X(Tt, "tt", Formatting | Breakout) \
    X(U, "u", Formatting | Breakout) \
    X(Ul, "ul", Special | ClosesP | ScopedEnd | Breakout | Block) \
    X(Var, "var", Breakout) \
    X(Wbr, "wbr", Void | Special | NoFrames) \
    X(Xmp, "xmp", Special | ClosesP | NoFrames | Rawtext | Block | Preformatted)
// clang-format on

enum class Tag : quint8 {
#define X(id, name, flags) id,
    NOMAR_HTML_TAGS(X)
#undef X
        Unknown // any other name; also the number of known names
};

// The row of a name; 0 for Unknown.
quint32 tagFlags(Tag tag);
inline bool is(Tag tag, quint32 flags)
{
    return (tagFlags(tag) & flags) != 0;
}

// The known name in lower case; empty for Unknown.
QLatin1StringView tagName(Tag tag);

// The tag of a name as it stands in a text, ASCII letters in either case.
Tag findTag(QStringView name);

inline char16_t asciiLower(char16_t c)
{
    return c >= u'A' && c <= u'Z' ? char16_t(c + 32) : c;
}
inline bool isAsciiLetter(char16_t c)
{
    c |= 0x20;
    return c >= u'a' && c <= u'z';
}
// White space of the HTML standard: tab, LF, FF, CR, blank.
inline bool isSpace(char16_t c)
{
    return c == u' ' || (c >= u'\t' && c <= u'\r' && c != u'\v');
}
// Same text but for the case of ASCII letters; `lower` is in lower case.
bool equalsLower(QStringView text, QLatin1StringView lower);

} // namespace html
