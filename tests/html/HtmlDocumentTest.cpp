#include "html/HtmlDocument.h"

#include <gtest/gtest.h>

#include <QStringList>

namespace {

constexpr QLatin1StringView kClass("class");
constexpr QLatin1StringView kSrc("src");
constexpr QLatin1StringView kExData("nm_exdata");

// The src texts of the listed elements, joined with blanks.
std::string sources(const QString& html)
{
    const HtmlDocument document(html);
    QStringList result;
    for (qsizetype i = 0; i < document.elementCount(); ++i)
        result << document.attribute(i, kSrc).value_or(QStringLiteral("-"));
    return result.join(u' ').toStdString();
}

struct ElementCase {
    const char16_t* html;
    const char* sources;
};

void expectSources(std::initializer_list<ElementCase> cases)
{
    for (const ElementCase& c : cases)
        EXPECT_EQ(sources(QString::fromUtf16(c.html)), c.sources)
            << QString::fromUtf16(c.html).toStdString();
}

TEST(HtmlDocument, ListsElementsInDocumentOrder)
{
    expectSources({
        {u"", ""},
        {u"no element", ""},
        {u"<img src=a><p><IMG SRC=b></p><table><td><img src=c/></table><img>", "a b c/ -"},
        {u"<imgx src=a><im src=b><img/src=c><img\nsrc=d><image src=e>", "c d e"},
        {u"<html><head><title>t</title></head><body><img src=a></body></html><img src=b>", "a b"},
        {u"<noscript><img src=a></noscript>", "a"},
    });
}

TEST(HtmlDocument, TextThatIsNotMarkupHoldsNoElements)
{
    expectSources({
        {u"<!--<img src=a>--><!--><img src=b><!---><img src=c><!-- --!><img src=d>", "b c d"},
        {u"<!-- > -- <img src=a>", ""},
        {u"<style><img src=a></styl></style ><img src=b>", "b"},
        {u"<title><img src=a></title><textarea><img src=b></textarea><img src=c>", "c"},
        {u"<xmp><img src=a></xmp><iframe><img src=b></iframe><img src=c>", "c"},
        {u"<noembed><img src=a></noembed><noframes><img src=b></noframes><img src=c>", "c"},
        {u"<script><!--<script></script><img src=a>--></script><img src=b>", "b"},
        {u"<script><!--<script></script><img src=a></script><img src=b>", "b"},
        {u"<script><!--></script><img src=a>", "a"},
        {u"<plaintext><img src=a></plaintext><img src=b>", ""},
        {u"<p title='<img src=a>'><p title=\"<img src=b>\"><img src=c>", "c"},
        {u"<?php <img src=a> ?><!x <img src=b>></ <img src=c>><img src=d>", "d"},
    });
}

TEST(HtmlDocument, TheTagThatTheTextEndsInIsNoElement)
{
    expectSources({
        {u"<img src=a><img src=b", "a"},
        {u"<img src=a><img src='b>", "a"},
        {u"<img", ""},
        {u"<img src=\"a\"", ""},
        {u"<img src=a></", "a"},
        {u"<style></style <img src=a", ""},
    });
}

TEST(HtmlDocument, ContentsOfTemplatesAreNoElements)
{
    expectSources({
        {u"<template><img src=a></template><img src=b>", "b"},
        {u"<template><template></template><img src=a></template><img src=b>", "b"},
        {u"</template><img src=a>", "a"},
        {u"<template><div><img src=a>", ""},
        {u"<svg><template></svg><img src=a>", "a"},
    });
}

TEST(HtmlDocument, AnImgInASelectIsNoElement)
{
    expectSources({
        {u"<select><img src=a><option><img src=b></select><img src=c>", "c"},
        {u"<select><img src=a><select><img src=b>", "b"},
        {u"<select><img src=a><input><img src=b>", "b"},
        {u"<select><textarea></textarea><img src=a>", "a"},
        {u"<select><keygen><img src=a>", "a"},
        {u"<select><style><img src=a></style><img src=b></select><img src=c>", "c"},
        {u"<select><script><img src=a></script></select><img src=b>", "b"},
        {u"<select><td><img src=a></select>", ""},
        {u"<table><td><select><img src=a><td><img src=b></table>", "b"},
        {u"<table><td><select><img src=a></table><img src=b>", "b"},
        {u"<table><select><img src=a></div></select><img src=b>", "b"},
    });
}

TEST(HtmlDocument, AnImgEndsSvgAndMath)
{
    expectSources({
        {u"<svg><img src=a><style><img src=b></style>", "a"},
        {u"<svg><style><img src=a>", "a"},
        {u"<svg><image src=a></image></svg><image src=b>", "b"},
        {u"<svg><foreignObject><image src=a></foreignObject></svg>", "a"},
        {u"<svg><![CDATA[<img src=a>]]></svg><img src=b>", "b"},
        {u"<![CDATA[<img src=a>]]><img src=b>", "b"},
        {u"<math><annotation-xml encoding='TEXT/html'><image src=a>", "a"},
        {u"<math><annotation-xml encoding=x><image src=a>", ""},
        {u"<math><mi><image src=a></mi><image src=b></math>", "a"},
        {u"<svg/><image src=a>", "a"},
        {u"<svg><font><image src=a></svg>", ""},
        {u"<svg><font color=red><image src=a></svg>", "a"},
        {u"<div><svg></div><image src=a>", "a"},
        {u"<svg></div><image src=a>", ""},
        {u"<svg></p><image src=a>", "a"},
    });
}

TEST(HtmlDocument, FramesHaveNoBody)
{
    for (const char16_t* html : {u"<frameset><img src=a></frameset>",
             u"<html><head></head><frameset><frame src=x></frameset></html>",
             u" <p><frameset><img>"}) {
        const HtmlDocument document(QString::fromUtf16(html));
        EXPECT_FALSE(document.hasBody());
        EXPECT_EQ(document.elementCount(), 0);
        EXPECT_TRUE(document.bodyInnerHtml().isEmpty());
    }
    EXPECT_TRUE(HtmlDocument(QStringLiteral("a<frameset>")).hasBody());
    EXPECT_TRUE(HtmlDocument(QStringLiteral("<img><frameset>")).hasBody());
    EXPECT_TRUE(HtmlDocument(QString()).hasBody());
}

TEST(HtmlDocument, ListsElementsOfAnotherName)
{
    const QString html =
        QStringLiteral("<a HREF=1></a><svg><a href=2></a></svg><x-y href=3><A href=4>");
    const HtmlDocument links(html, QLatin1StringView("a"));
    ASSERT_EQ(links.elementCount(), 2);
    EXPECT_EQ(links.attribute(1, QLatin1StringView("href")), QStringLiteral("4"));
    EXPECT_EQ(HtmlDocument(html, QLatin1StringView("x-y")).elementCount(), 1);
}

// ---- attributes

std::optional<QString> classOf(const char16_t* html)
{
    return HtmlDocument(QString::fromUtf16(html)).attribute(0, kClass);
}

TEST(HtmlDocument, AMissingAttributeIsNotAnEmptyOne)
{
    EXPECT_EQ(classOf(u"<img src=a>"), std::nullopt);
    for (const char16_t* html :
        {u"<img class>", u"<img class=>", u"<img class=''>", u"<img class/>"}) {
        ASSERT_TRUE(classOf(html).has_value());
        EXPECT_TRUE(classOf(html)->isEmpty());
    }
}

TEST(HtmlDocument, ReadsValuesOfEveryForm)
{
    const std::pair<const char16_t*, const char16_t*> cases[] = {
        {u"<img class=\" a  b\\c/d \">", u" a  b\\c/d "},
        {u"<img class='a\"b'>", u"a\"b"},
        {u"<img class=a/b/>", u"a/b/"},
        {u"<img CLASS = a>", u"a"},
        {u"<img class=a class=b>", u"a"},
        {u"<img x='class=q' class=a>", u"a"},
        {u"<img \"class=x class=a>", u"a"},
        {u"<img =class=x class=a>", u"a"},
        {u"<img src='x'class=a>", u"a"},
        {u"<img class='a\r\nb\rc\td'>", u"a\nb\nc\td"},
        {u"<img class='&quot;&amp;&lt;&#65;&#x4e2d;&nbsp;&NotEqualTilde;'>",
            u"\"&<A中\u00a0\u2242\u0338"},
        {u"<img class='&copy &copy2 &copy= &notit; &notin; &ampx &nosuch;'>",
            u"© &copy2 &copy= &notit; ∉ &ampx &nosuch;"},
        {u"<img class='&#0;&#x80;&#xD800;&#x110000;&#99999999999;&#13;&#;&#x;&'>",
            u"\uFFFD€\uFFFD\uFFFD\uFFFD\r&#;&#x;&"},
        {u"<img class='&#128512;'>", u"😀"},
    };
    for (const auto& [html, value] : cases)
        EXPECT_EQ(classOf(html), QString::fromUtf16(value))
            << QString::fromUtf16(html).toStdString();
}

TEST(HtmlDocument, NulAndLoneSurrogatesBecomeReplacementCharacters)
{
    QString html = QStringLiteral("<img class='aXbYcZ'>");
    html.replace(u'X', QChar(0)).replace(u'Y', QChar(0xD800)).replace(u'Z', QChar(0xDC00));
    EXPECT_EQ(HtmlDocument(html).attribute(0, kClass), QStringLiteral(u"a\uFFFDb\uFFFDc\uFFFD"));
}

// ---- changes

TEST(HtmlDocument, AnUnchangedBodyIsTheTextItself)
{
    const QString html =
        QStringLiteral("<!-- c --><style>x</style>\r\n<P Class = a>&nbsp;<IMG\tsrc=x  >&amp &");
    EXPECT_EQ(HtmlDocument(html).bodyInnerHtml(), html);
}

struct SetCase {
    const char* html;
    const char* changed;
};

TEST(HtmlDocument, ASetAttributeChangesNothingElse)
{
    const SetCase cases[] = {
        {"a<img src=x class=old>b", "a<img src=x class=\"new\">b"},
        {"<img CLASS = 'old' src=x />", "<img CLASS = \"new\" src=x />"},
        {"<img class='a' class='b'>", "<img class=\"new\" class='b'>"},
        {"<img class>", "<img class=\"new\">"},
        {"<img class src>", "<img class=\"new\" src>"},
        {"<img class=>", "<img class=\"new\">"},
        {"<img class= >", "<img class= \"new\">"},
        {"<img>", "<img class=\"new\">"},
        {"<img/>", "<img class=\"new\"/>"},
        {"<IMG\nsrc=x>", "<IMG class=\"new\"\nsrc=x>"},
        {"<img src=x/><p>", "<img class=\"new\" src=x/><p>"},
        {"<image src=x>", "<image class=\"new\" src=x>"},
    };
    for (const SetCase& c : cases) {
        HtmlDocument document(QString::fromLatin1(c.html));
        ASSERT_EQ(document.elementCount(), 1);
        EXPECT_TRUE(document.setAttribute(0, kClass, QStringLiteral("new")));
        EXPECT_EQ(document.bodyInnerHtml().toStdString(), c.changed);
        EXPECT_EQ(document.attribute(0, kClass), QStringLiteral("new"));
    }
}

TEST(HtmlDocument, SeveralChangesMeetInOneTag)
{
    HtmlDocument document(QStringLiteral("<img src=1 alt=z><img src=2>"));
    document.setAttribute(1, kSrc, QStringLiteral("b"));
    document.setAttribute(0, kExData, QStringLiteral("{}"));
    document.setAttribute(0, kClass, QStringLiteral("c"));
    document.setAttribute(0, kSrc, QStringLiteral("first"));
    document.setAttribute(0, kSrc, QStringLiteral("last"));
    EXPECT_EQ(document.bodyInnerHtml(),
        QStringLiteral("<img nm_exdata=\"{}\" class=\"c\" src=\"last\" alt=z><img src=\"b\">"));
}

TEST(HtmlDocument, AnyValueReadsBackTheSame)
{
    const QString values[] = {QString(), QStringLiteral("\"'"),
        QStringLiteral("&amp; &quot &#65; &"), QStringLiteral("a\nb\r\nc\rd\t"),
        QStringLiteral("userdata\\attachment\\x.png"), QStringLiteral(u"\u00a0\u200b 中文 😀"),
        QStringLiteral("</p><img src=x>-->]]>`="), QStringLiteral("{\"OrigName_B64\":\"YQ==\"}"),
        QStringLiteral(" lead trail ")};
    for (const QString& value : values) {
        for (const char* html : {"<img>", "<img class>", "<img class=x>", "<img class='x'>"}) {
            HtmlDocument document(QString::fromLatin1(html));
            document.setAttribute(0, kClass, value);
            const HtmlDocument reread(document.bodyInnerHtml());
            ASSERT_EQ(reread.elementCount(), 1);
            EXPECT_EQ(reread.attribute(0, kClass).value(), value);
            EXPECT_EQ(document.attribute(0, kClass).value(), value);
        }
    }
}

TEST(HtmlDocument, WhatNoTextCanHoldIsReplacedWhenItIsSet)
{
    HtmlDocument document(QStringLiteral("<img>"));
    document.setAttribute(0, kClass, QString(QChar(0)) + QChar(0xDC00) + u'a' + QChar(0xD800));
    const QString replaced = QStringLiteral(u"\uFFFD\uFFFDa\uFFFD");
    EXPECT_EQ(document.attribute(0, kClass), replaced);
    EXPECT_EQ(HtmlDocument(document.bodyInnerHtml()).attribute(0, kClass), replaced);
}

TEST(HtmlDocument, RefusesWhatIsNoAttributeName)
{
    HtmlDocument document(QStringLiteral("<img>"));
    for (const char* name : {"", "a b", "a=b", "a>b", "a/b", "a\"", "a'", "<", "a\n"})
        EXPECT_FALSE(document.setAttribute(0, QLatin1StringView(name), QStringLiteral("x")))
            << name;
    EXPECT_EQ(document.bodyInnerHtml(), QStringLiteral("<img>"));
}

TEST(HtmlDocument, ARemovedElementLeavesTheRestAsItWas)
{
    HtmlDocument document(QStringLiteral("<p>a <img src=1> b</p>\r\n<img src=2><img src=3>"));
    document.remove(0);
    document.remove(2);
    document.setAttribute(2, kSrc, QStringLiteral("gone"));
    EXPECT_EQ(document.elementCount(), 3);
    EXPECT_EQ(document.bodyInnerHtml(), QStringLiteral("<p>a  b</p>\r\n<img src=2>"));
}

TEST(HtmlDocument, WhatStandsAroundARemovedElementNeverBecomesMarkup)
{
    const SetCase cases[] = {
        {"<<img>img src=x>", "<<!---->img src=x>"},
        {"<<img><img>/p>", "<<!---->/p>"},
        {"<<img>!-- a", "<<!---->!-- a"},
        {"a<<img> b", "a< b"},
        {"&am<img>p;", "&am<!---->p;"},
        {"&#6<img>5;", "&#6<!---->5;"},
        {"&<img>lt;", "&<!---->lt;"},
        {"&lt<img>;", "&lt<!---->;"},
        {"& <img>lt;", "& lt;"},
        {"word<img>word", "wordword"},
        {"<pre><img>\na</pre>", "<pre><!---->\na</pre>"},
        {"<pre><img><img>\r\na</pre>", "<pre><!---->\r\na</pre>"},
        {"<pre><img>a</pre>", "<pre>a</pre>"},
        {"<pre>a\r<img>\nb</pre>", "<pre>a\r<!---->\nb</pre>"},
        {"<<img>", "<"},
        {"<svg><g><img><style>a</style>", "<svg><g><head><style>a</style>"},
        {"<svg><desc><img><style>a</style>", "<svg><desc><style>a</style>"},
    };
    for (const SetCase& c : cases) {
        HtmlDocument document(QString::fromLatin1(c.html));
        for (qsizetype i = 0; i < document.elementCount(); ++i)
            document.remove(i);
        EXPECT_EQ(document.bodyInnerHtml().toStdString(), c.changed);
        EXPECT_EQ(HtmlDocument(document.bodyInnerHtml()).elementCount(), 0) << c.changed;
    }
}

TEST(HtmlDocument, BodyTextFollowsARemoval)
{
    HtmlDocument document(QStringLiteral("a<br>b"), QLatin1StringView("br"));
    EXPECT_EQ(document.bodyText(), QStringLiteral("a\nb"));
    document.remove(0);
    EXPECT_EQ(document.bodyText(), QStringLiteral("ab"));
}

TEST(HtmlDocument, TextThatWasReadAtOnceIsTheSame)
{
    for (const char* html : {"", "a<br>b", "<select>a<br>b</select><br>c", "<svg>a<br>b</svg>",
             "<body>a<br><pre>\nb</pre></html><br>c", "<frameset></frameset>"}) {
        const QString text = QString::fromUtf8(html);
        const QLatin1StringView tag("br");
        HtmlDocument plain(text, tag);
        HtmlDocument both(text, tag, HtmlDocument::Reading::ElementsAndText);
        EXPECT_EQ(both.bodyText(), plain.bodyText()) << html;
        EXPECT_EQ(both.bodyInnerHtml(), plain.bodyInnerHtml()) << html;
        EXPECT_EQ(both.hasBody(), plain.hasBody()) << html;
        ASSERT_EQ(both.elementCount(), plain.elementCount()) << html;
        for (qsizetype i = 0; i < plain.elementCount(); ++i) {
            plain.remove(i);
            both.remove(i);
            EXPECT_EQ(both.bodyText(), plain.bodyText()) << html;
        }
    }
}

// ---- the inside of the body

TEST(HtmlDocument, TheInsideOfTheBody)
{
    const SetCase cases[] = {
        {"<!DOCTYPE html><html><head><style>x</style></head><body class=a>\n<p>b</p></body></html>",
            "\n<p>b</p>"},
        {"<body>a</body>\n<!-- c --></html>\nb", "a\n<!-- c -->\nb"},
        {"<body>a<body b=c>d<html><head>e</head>", "ade"},
        {"<style>x</style><body>a", "a"},
        {"<html><title>t</title>  <p>a", "<p>a"},
        {"<!doctype html>\n a", "a"},
        {"<head></head> <!-- c --> <img>", "<img>"},
        {" <!-- c --><style>x</style> a", " <!-- c --><style>x</style> a"},
        {"<p>a<!doctype x><body>b</p></body></html>", "<p>ab</p>"},
        {"<title>t</title><p>a<html>", "<title>t</title><p>a"},
        {"<style>x</style></head>a", "<style>x</style>a"},
        {"a<frameset>b</frameset>", "ab"},
        {"a<b", "a"},
        {"<p>a</p><img src='", "<p>a</p>"},
        {"<html", ""},
        {"<html>", ""},
        {"<<body>img>", "<<!---->img>"},
        {"<svg><g><body><style>a</style>", "<svg><g><body><style>a</style>"},
        {"<svg><html></html></svg>", "<svg><html></html></svg>"},
        {"<template><html></template>", "<template><html></template>"},
        {"<!-- a <body>", "<!-- a <body>"},
        {"<textarea><body></textarea>", "<textarea><body></textarea>"},
    };
    for (const SetCase& c : cases)
        EXPECT_EQ(
            HtmlDocument(QString::fromLatin1(c.html)).bodyInnerHtml().toStdString(), c.changed)
            << c.html;
}

TEST(HtmlDocument, TheInsideOfTheBodyIsItsOwnInside)
{
    for (const char* html : {"<!doctype html><p>a<!doctype html>", "<body><style>x</style>",
             "<body><frameset></frameset>a", "<html><svg><body>", "<body> <body></html>"}) {
        const QString inside = HtmlDocument(QString::fromLatin1(html)).bodyInnerHtml();
        EXPECT_EQ(HtmlDocument(inside).bodyInnerHtml(), inside) << html;
        EXPECT_TRUE(HtmlDocument(inside).hasBody());
    }
}

} // namespace
