#include "html/DocumentScan.h"

#include "html/Attributes.h"
#include "html/PlainText.h"
#include "html/TagNames.h"
#include "html/Tokenizer.h"
#include "html/TreeRules.h"

#include <algorithm>
#include <optional>

namespace html {
namespace {

// How far the document has come. The standard's modes before "before head" do not differ from it
// here.
enum class Phase { BeforeHead, InHead, InHeadNoscript, AfterHead, Body };

bool isDocumentTag(Tag tag)
{
    return tag == Tag::Html || tag == Tag::Head || tag == Tag::Body || tag == Tag::Frameset;
}

class DocumentScan {
public:
    DocumentScan(QStringView html, QLatin1StringView wanted)
        : m_html(html)
        , m_wanted(wanted)
        , m_wantedTag(findTag(QString(wanted)))
        , m_tokens(html)
    {
    }
    void withRules(PlainTextWriter* writer)
    {
        m_writer = writer;
        m_rules.emplace(m_html, writer);
    }
    // False if the text needs the rules of tree building and the scan was started without them.
    bool run();
    ScanResult result;

private:
    enum class Step { Go, NeedRules, NoBody };

    Step startTag(const Token& token);
    void endTag(const Token& token);
    void text(const Token& token);
    // True if the tag goes on to where elements are made; false if the phase swallows it.
    bool startTagBeforeBody(const Token& token, Tag tag);
    bool endTagBeforeBody(const Token& token, Tag tag);
    void startBody(qsizetype inside);
    Placed place(const Token& token, Tag tag);
    void placed(const Token& token, Tag tag);
    void cut(const Token& token);
    Piece pieceOf(const Token& token);
    void weighText(const Token& token);
    void writeText(const Token& token);
    bool isWanted(const Token& token, Tag tag) const;
    bool isHiddenInput(const Token& token) const;
    bool beforeBody() const
    {
        return m_phase != Phase::Body && !(m_rules && m_rules->inTemplate());
    }
    QStringView nameOf(const Token& token) const
    {
        return m_html.sliced(token.nameBegin, token.nameEnd - token.nameBegin);
    }

    QStringView m_html;
    QLatin1StringView m_wanted;
    Tag m_wantedTag;
    Tokenizer m_tokens;
    // Most notes hold no element that changes what its inside means, and are read without any
    // rules.
    std::optional<TreeRules> m_rules;
    PlainTextWriter* m_writer = nullptr;

    Phase m_phase = Phase::BeforeHead;
    bool m_document = false; // a doctype, html, head or body tag stood before the body
    bool m_framesOk = true; // the standard's frameset-ok flag
    qsizetype m_preEnd = -1; // where a start tag that swallows a line feed has ended
    qsizetype m_preRunEnd = -1; // the same, behind the tags that may be taken out from there
};

bool DocumentScan::run()
{
    for (;;) {
        const Token token = m_tokens.next(m_rules && m_rules->inForeign());
        switch (token.kind) {
        case TokenKind::Text:
            text(token);
            break;
        case TokenKind::StartTag:
            switch (startTag(token)) {
            case Step::Go:
                break;
            case Step::NeedRules:
                return false;
            case Step::NoBody:
                result = ScanResult();
                result.hasBody = false;
                return true;
            }
            break;
        case TokenKind::EndTag:
            endTag(token);
            break;
        case TokenKind::Ignored:
            break;
        case TokenKind::Doctype:
            m_document = m_document || m_phase == Phase::BeforeHead;
            cut(token);
            break;
        case TokenKind::Unterminated:
            cut(token);
            break;
        case TokenKind::End:
            if (m_phase != Phase::Body)
                startBody(m_html.size());
            return true;
        }
    }
}

// ---- before the body

void DocumentScan::startBody(qsizetype inside)
{
    m_phase = Phase::Body;
    result.bodyBegin = m_document ? inside : 0;
}

bool DocumentScan::startTagBeforeBody(const Token& token, Tag tag)
{
    if (tag == Tag::Html || tag == Tag::Head || tag == Tag::Body)
        m_document = true;
    if (tag == Tag::Html)
        return false;
    if (m_phase == Phase::BeforeHead)
        m_phase = Phase::InHead;
    if (m_phase == Phase::InHeadNoscript) {
        if (tag == Tag::Basefont || tag == Tag::Bgsound || tag == Tag::Link || tag == Tag::Meta
            || tag == Tag::Noframes || tag == Tag::Style)
            return true;
        if (tag == Tag::Noscript)
            return false;
        m_phase = Phase::InHead;
    }
    if (tag == Tag::Head)
        return false;
    if (is(tag, HeadContent))
        return true;
    if (m_phase == Phase::InHead && tag == Tag::Noscript) {
        m_phase = Phase::InHeadNoscript;
        return false;
    }
    if (tag == Tag::Body) {
        m_framesOk = false;
        startBody(token.end);
        return false;
    }
    if (tag == Tag::Frameset)
        return true; // after the head frames are allowed in any case
    startBody(token.begin);
    return true;
}

bool DocumentScan::endTagBeforeBody(const Token& token, Tag tag)
{
    if (is(tag, Rcdata | Rawtext))
        return true; // of an element in the head
    const bool noscript = m_phase == Phase::InHeadNoscript;
    if (tag == Tag::Br || (!noscript && (tag == Tag::Body || tag == Tag::Html))) {
        startBody(token.begin);
        return true;
    }
    if (noscript && tag == Tag::Noscript)
        m_phase = Phase::InHead;
    else if (!noscript && tag == Tag::Head)
        m_phase = Phase::AfterHead;
    return false;
}

// ---- tokens

DocumentScan::Step DocumentScan::startTag(const Token& token)
{
    const Tag tag = findTag(nameOf(token));
    const bool head = beforeBody();
    if (head && !startTagBeforeBody(token, tag)) {
        if (isDocumentTag(tag))
            cut(token);
        return Step::Go;
    }
    if (!m_rules
        && (tag == Tag::Svg || tag == Tag::Math || tag == Tag::Select || tag == Tag::Template))
        return Step::NeedRules;

    switch (place(token, tag)) {
    case Placed::Html:
        placed(token, tag);
        break;
    case Placed::Foreign:
        break;
    case Placed::Frameset:
        if (head || m_framesOk)
            return Step::NoBody;
        cut(token);
        break;
    case Placed::Ignored:
        if (isDocumentTag(tag) && !(m_rules && m_rules->endedForeign()))
            cut(token);
        if (tag == Tag::Body)
            m_framesOk = false;
        break;
    }
    return Step::Go;
}

Placed DocumentScan::place(const Token& token, Tag tag)
{
    if (m_rules)
        return m_rules->startTag(token, tag);
    if (tag == Tag::Frameset)
        return Placed::Frameset;
    return isDocumentTag(tag) ? Placed::Ignored : Placed::Html;
}

// An HTML element was inserted.
void DocumentScan::placed(const Token& token, Tag tag)
{
    if (isWanted(token, tag) && !(m_rules && m_rules->inTemplate())) {
        Piece piece = pieceOf(token);
        piece.endsForeign = m_rules && m_rules->endedForeign();
        result.elements.push_back(piece);
    }
    if (is(tag, Rcdata | Rawtext))
        m_tokens.enterRawText(tag);
    if (tag == Tag::Pre || tag == Tag::Listing || tag == Tag::Textarea)
        m_preEnd = m_preRunEnd = token.end;
    if (m_framesOk
        && (is(tag, NoFrames) || tag == Tag::Image || (tag == Tag::Input && !isHiddenInput(token))))
        m_framesOk = false;
}

void DocumentScan::endTag(const Token& token)
{
    const Tag tag = findTag(nameOf(token));
    if (beforeBody() && !endTagBeforeBody(token, tag)) {
        if (isDocumentTag(tag))
            cut(token);
        return;
    }
    if (tag == Tag::Br)
        m_framesOk = false;
    const bool foreign = m_rules && m_rules->inForeign();
    const bool closed = m_rules && m_rules->endTag(token, tag);
    if (closed && foreign)
        return;
    if (isDocumentTag(tag))
        cut(token);
}

void DocumentScan::text(const Token& token)
{
    const bool markup = token.place != TextPlace::Rcdata && token.place != TextPlace::Rawtext;
    if (markup && (m_phase != Phase::Body || m_framesOk || m_rules))
        weighText(token);
    if (m_writer)
        writeText(token);
}

// The first character that is no white space starts the body; one that is no NUL either rules out
// frames.
void DocumentScan::weighText(const Token& token)
{
    const char16_t* const units = m_html.utf16();
    const char16_t* const end = units + token.end;
    const char16_t* const solid =
        std::find_if(units + token.begin, end, [](char16_t c) { return !isSpace(c); });
    if (solid != end && beforeBody())
        startBody(solid - units);
    if (m_framesOk)
        m_framesOk = std::all_of(solid, end, [](char16_t c) { return c == u'\0' || isSpace(c); });
    if (m_rules)
        m_rules->text(solid == end);
}

void DocumentScan::writeText(const Token& token)
{
    const QStringView raw = m_html.sliced(token.begin, token.end - token.begin);
    const bool asItStands = readsAsItStands(raw);
    const QString decoded = asItStands ? QString() : decodeText(raw, token.place);
    QStringView text = asItStands ? raw : decoded;
    const bool behindPre = token.begin == m_preEnd && !raw.startsWith(QChar(u'\0'));
    if (behindPre && text.startsWith(u'\n'))
        text = text.sliced(1);
    m_writer->text(text, m_rules->current());
}

// ---- small questions

// A tag that is no part of the tree. Cut out of the body's inside, so that it means nothing to a
// later reader either. In a template it means nothing anyway, but for what may follow there.
void DocumentScan::cut(const Token& token)
{
    if (m_rules && m_rules->inTemplate() && token.kind != TokenKind::Unterminated)
        return;
    result.cuts.push_back(pieceOf(token));
}

// The place of a tag that may be taken out. If it stands right behind a pre, what follows it may
// come to stand there.
Piece DocumentScan::pieceOf(const Token& token)
{
    Piece piece;
    piece.begin = token.begin;
    piece.end = token.end;
    piece.behindPre = token.begin == m_preRunEnd;
    if (piece.behindPre)
        m_preRunEnd = token.end;
    return piece;
}

bool DocumentScan::isWanted(const Token& token, Tag tag) const
{
    if (m_wantedTag == Tag::Unknown)
        return tag == Tag::Unknown && equalsLower(nameOf(token), m_wanted);
    return tag == m_wantedTag || (tag == Tag::Image && m_wantedTag == Tag::Img);
}

bool DocumentScan::isHiddenInput(const Token& token) const
{
    AttributeReader reader(m_html, token.nameEnd);
    for (AttributeSpan span; reader.next(span);) {
        const QStringView name = m_html.sliced(span.nameBegin, span.nameEnd - span.nameBegin);
        if (equalsLower(name, QLatin1StringView("type"))) {
            const QStringView raw = m_html.sliced(span.valueBegin, span.valueEnd - span.valueBegin);
            return equalsLower(decodeText(raw, TextPlace::Attribute), QLatin1StringView("hidden"));
        }
    }
    return false;
}

ScanResult scan(QStringView html, QLatin1StringView tag, PlainTextWriter* writer)
{
    if (!writer) {
        DocumentScan quick(html, tag);
        if (quick.run())
            return std::move(quick.result);
    }
    DocumentScan whole(html, tag);
    whole.withRules(writer);
    whole.run();
    if (writer && whole.result.hasBody)
        whole.result.plainText = writer->take();
    return std::move(whole.result);
}

} // namespace

ScanResult scanDocument(QStringView html, QLatin1StringView tag)
{
    return scan(html, tag, nullptr);
}

ScanResult scanPlainText(QStringView html, QLatin1StringView tag)
{
    PlainTextWriter writer;
    return scan(html, tag, &writer);
}

} // namespace html
