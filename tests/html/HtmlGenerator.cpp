#include "html/HtmlGenerator.h"

namespace {

QString latin1(const char* text)
{
    return QString::fromLatin1(text);
}

} // namespace

// splitmix64
quint64 HtmlGenerator::next()
{
    quint64 z = m_state += 0x9E3779B97F4A7C15u;
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
    return z ^ (z >> 31);
}

QString HtmlGenerator::pick(std::initializer_list<const char*> choices)
{
    return latin1(choices.begin()[below(int(choices.size()))]);
}

QString HtmlGenerator::word()
{
    if (oneIn(3))
        return QString::fromUtf16(u"笔记附件图片内容文本").mid(below(6), 1 + below(4));
    return pick({"note", "a", "word", "5 < 6", "x>y", "&amp;", "&copy", "&nosuch;", "&#65", "'",
        "\"", "&lt;img&gt;", "]]>", "-->", "&", "<", "</", "< img>"});
}

QString HtmlGenerator::attachment()
{
    return QStringLiteral(
        "<img class=\"userdata\\attachment\\%1.png\" src=\"../userdata\\attachment\\"
        "%1.png\" nm_exdata=\"{&quot;OrigName_B64&quot;:&quot;%2&quot;}\">")
        .arg(QString::number(next(), 16), QString::fromLatin1(word().toUtf8().toBase64()));
}

QString HtmlGenerator::value()
{
    QString result;
    for (int n = below(4); n > 0; --n) {
        result += pick({"a", "/", "\\", "=", "&amp;", "&quot;", "&lt", "&not=", "&notit;",
            "&notin;", "&#x80;", "&#0;", "&#xD800;", "&#128512;", "&#x110000;", "&#13;", "&ampx",
            "&amp", "&", "<", "img", "{}", ":", " ", "userdata\\attachment", "&Aacute",
            "&NotEqualTilde;", "&#", "&#x"});
    }
    return result + (oneIn(3) ? word() : QString());
}

QString HtmlGenerator::attribute()
{
    const QString name = pick({"class", "src", "nm_exdata", "CLASS", "Src", "nm_ExData", "alt", "x",
        "data-ke-src", "\"", "<", "'q", "=e", "\xE9", "encoding", "type", "color"});
    switch (below(8)) {
    case 0:
        return name;
    case 1:
        return name + u'='
            + pick({"a", "a/b", "a\"b", "c:\\d\\e", "a=b", "`", "&amp", "&copy=1", "text/html"});
    case 2:
        return name + latin1(" =\n\t'") + value().remove(u'\'') + u'\'';
    case 3:
        return name + u'=';
    default:
        return name + latin1("=\"") + value().remove(u'"') + u'"';
    }
}

QString HtmlGenerator::tag(bool foreign)
{
    if (oneIn(4))
        return oneIn(4) ? pick({"image", "IMG", "iMaGe"}) : latin1("img");
    if (foreign) {
        return pick({"svg", "SVG", "math", "g", "desc", "foreignObject", "title", "mi", "mo",
            "mtext", "annotation-xml", "mglyph", "malignmark", "style", "script", "template",
            "textarea", "p", "div", "span", "h1", "li", "ul", "dd", "pre", "br", "hr", "form",
            "button", "xmp", "iframe", "noscript", "noembed", "noframes", "html", "head", "body",
            "object", "meta", "link", "section", "ruby", "rt", "embed", "wbr", "input",
            "blockquote", "label"});
    }
    if (oneIn(4))
        return pick({"b", "i", "a", "font", "nobr", "u", "em", "strong", "code", "big"});
    if (oneIn(2)) {
        if (oneIn(4))
            return pick({"select", "option", "optgroup"});
        return pick({"table", "tr", "td", "th", "tbody", "thead", "tfoot", "caption", "colgroup",
            "col", "input", "template", "table", "td"});
    }
    return pick({"p", "div", "span", "h1", "h2", "li", "ul", "ol", "dd", "dt", "dl", "pre", "br",
        "hr", "form", "button", "textarea", "title", "style", "script", "xmp", "iframe", "noscript",
        "noembed", "noframes", "html", "head", "body", "object", "marquee", "g", "meta", "link",
        "base", "section", "center", "address", "listing", "ruby", "rt", "rp", "embed", "keygen",
        "wbr", "fieldset", "param", "frame", "blockquote", "label"});
}

QString HtmlGenerator::rawText(bool foreign)
{
    const QString name = pick(
        {"style", "script", "title", "textarea", "xmp", "iframe", "noembed", "noframes", "SCRIPT"});
    QString inside;
    for (int n = below(5); n > 0; --n) {
        inside += pick({"<img src=raw>", "<!--", "-->", "<script>", "<!-->", "--!>", "a", "<",
            "&amp;", "--", ">", "<!--<script>"});
        if (!foreign)
            inside += pick({"", "</script >", "</scriptx>", "</sty", "</", "</title", "</xmp\n"});
    }
    return u'<' + name + u'>' + inside + (oneIn(8) ? QString() : latin1("</") + name + u'>');
}

QString HtmlGenerator::element(bool foreign)
{
    const bool endTag = oneIn(4);
    const QString name = tag(foreign);
    if (foreign && endTag)
        return name == u"p" || name == u"br" ? QString() : latin1("</") + name + u'>';
    QString result = (endTag ? latin1("</") : latin1("<")) + name;
    for (int n = oneIn(2) ? below(4) : 0; n > 0; --n)
        result += (oneIn(9) ? latin1("/") : oneIn(9) ? latin1("\r\n") : latin1(" ")) + attribute();
    if (oneIn(7))
        result += u'/';
    return result + u'>';
}

QString HtmlGenerator::mix(int length, bool foreign)
{
    QString result;
    for (int n = below(length); n > 0; --n) {
        switch (below(14)) {
        case 0:
        case 1:
            result += word();
            break;
        case 2:
            result += pick(
                {"<!-- c -->", "<!-->", "<!--->", "<!-- <img> --!>", "<!-- - -- >-->", "<?p <img>>",
                    "<!x>", "<!doctype html>", "</ img>", "<![CDATA[<img>]]>", "<!---!><img>-->"});
            break;
        case 3:
            result += rawText(foreign);
            break;
        case 4:
            result += attachment();
            break;
        case 5:
            result += pick({" ", "\n", "\r\n", "\t"});
            break;
        default:
            result += element(foreign);
        }
    }
    return result;
}

QString HtmlGenerator::note()
{
    QString result;
    for (int paragraphs = below(12); paragraphs > 0; --paragraphs) {
        QString inside;
        for (int n = below(6); n > 0; --n) {
            inside += oneIn(3) ? attachment() : word().toHtmlEscaped() + u' ';
            if (oneIn(4))
                inside += latin1("<span style=\"color: red\"><b>") + word().toHtmlEscaped()
                    + latin1("</b></span><br>");
        }
        const QString block = pick({"p", "div", "h2", "li", "blockquote", "pre"});
        if (oneIn(6))
            inside = latin1("<table><tbody><tr><td>") + inside
                + latin1("</td><td><p>&nbsp;</p></td></tr></tbody></table>");
        result += oneIn(6) ? inside
                           : u'<' + block + u'>' + inside + latin1("</") + block + latin1(">\r\n");
    }
    if (oneIn(4))
        result = latin1("<!DOCTYPE html><html><head><title>t</title></head><body>") + result
            + latin1("</body></html>\n");
    return result;
}

QString HtmlGenerator::soup()
{
    const QString text = mix(40, false);
    return oneIn(6) ? text.left(below(int(text.size()) + 1)) : text;
}

QString HtmlGenerator::foreignSoup()
{
    const QString text =
        pick({"<svg>", "<math>", "<p>", "<div><svg>", "<table><td><svg>"}) + mix(40, true);
    return oneIn(6) ? text.left(below(int(text.size()) + 1)) : text;
}

QString HtmlGenerator::attributes()
{
    QString result;
    for (int n = 1 + below(6); n > 0; --n) {
        result += pick({"<img", "<IMG", "<img ", "<img/", "<img\n", "<imgx", "<img\f", "<image"});
        for (int k = below(7); k > 0; --k)
            result += attribute() + pick({" ", " ", "/", "\t", "\r\n", "\"", "'", "="});
        result += pick({">", ">", "/>", " >", "/ >", " ", "x>"});
    }
    return result;
}

QString HtmlGenerator::damagedNote()
{
    QString text = note();
    for (int n = 1 + below(12); n > 0 && !text.isEmpty(); --n) {
        const int at = below(int(text.size()));
        switch (below(4)) {
        case 0:
            text.insert(at,
                pick({"<", ">", "\"", "'", "&", "/", "=", "!", "-", "--", " ", "\n", ";", "#"}));
            break;
        case 1:
            text.remove(at, 1 + below(3));
            break;
        case 2:
            text.insert(at, element(false));
            break;
        default:
            if (oneIn(5))
                text.truncate(at);
        }
    }
    return text;
}
