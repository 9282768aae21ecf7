#include "html/CharacterReferences.h"

#include "html/TagNames.h"

#include <algorithm>
#include <array>
#include <vector>

namespace html {
namespace {

struct NamedReference {
    QLatin1StringView name;
    bool withoutSemicolon = false;
    char32_t first = 0;
    char32_t second = 0; // 0 if the name stands for one code point
};

constexpr char kNames[] =
#include "html/NamedReferences.inc"
    ;
constexpr qsizetype kLongestName = 31;
constexpr qsizetype kLongestWithoutSemicolon = 6;

char32_t readHex(const char*& c)
{
    char32_t value = 0;
    for (; isAsciiLetter(char16_t(*c)) || (*c >= '0' && *c <= '9'); ++c)
        value = value * 16 + char32_t(*c <= '9' ? *c - '0' : *c - 'A' + 10);
    return value;
}

std::vector<NamedReference> readNames()
{
    std::vector<NamedReference> result;
    for (const char* c = kNames; *c != 0; ++c) { // over the blank behind an entry
        NamedReference entry;
        const char* begin = c;
        while (*c != ':' && *c != '!')
            ++c;
        entry.name = QLatin1StringView(begin, c - begin);
        entry.withoutSemicolon = *c++ == '!';
        entry.first = readHex(c);
        if (*c == '+')
            entry.second = readHex(++c);
        result.push_back(entry);
    }
    return result;
}

const NamedReference* findName(QStringView name)
{
    static const std::vector<NamedReference> names = readNames();
    const auto found = std::lower_bound(
        names.begin(), names.end(), name, [](const NamedReference& entry, QStringView wanted) {
            return std::lexicographical_compare(entry.name.begin(), entry.name.end(),
                wanted.utf16(), wanted.utf16() + wanted.size());
        });
    return found != names.end() && found->name == name ? &*found : nullptr;
}

// What numbers of the C1 range stand for: those of windows-1252, as the standard has it.
constexpr std::array<char16_t, 32> kC1{0x20AC, 0x81, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x8D, 0x017D, 0x8F, 0x90, 0x2018, 0x2019, 0x201C,
    0x201D, 0x2022, 0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x9D, 0x017E, 0x0178};

char32_t codePointOfNumber(char32_t number)
{
    if (number >= 0x80 && number <= 0x9F)
        return kC1[number - 0x80];
    if (number == 0 || number > 0x10FFFF || (number >= 0xD800 && number <= 0xDFFF))
        return QChar::ReplacementCharacter;
    return number;
}

bool isDigit(char16_t c)
{
    return c >= u'0' && c <= u'9';
}
bool isAlnum(char16_t c)
{
    return isDigit(c) || isAsciiLetter(c);
}
int hexValue(char16_t c)
{
    if (isDigit(c))
        return c - u'0';
    const char16_t lower = asciiLower(c);
    return lower >= u'a' && lower <= u'f' ? lower - u'a' + 10 : -1;
}

class Decoder {
public:
    Decoder(QStringView raw, TextPlace place)
        : m_raw(raw)
        , m_place(place)
    {
    }
    QString decode();

private:
    char16_t at(qsizetype i) const { return i < m_raw.size() ? m_raw.utf16()[i] : u'\0'; }
    void append(char32_t codePoint);
    // Each tries to read one thing at m_pos and leaves m_pos behind what it took.
    void readUnit();
    bool readReference();
    bool readNumber();
    bool readName();
    void take(const NamedReference& entry, qsizetype length);

    QStringView m_raw;
    TextPlace m_place;
    qsizetype m_pos = 0;
    QString m_out;
};

constexpr std::ptrdiff_t kBlock = 8;

// Whether a block holds a character that may read as something else. One question at a time, so
// that the compiler asks it of many characters at once.
bool isBlockMarked(const char16_t* units)
{
    char16_t ampersands = 0;
    char16_t returns = 0;
    char16_t nuls = 0;
    char16_t surrogates = 0;
    for (std::ptrdiff_t i = 0; i < kBlock; ++i) {
        ampersands |= units[i] == u'&';
        returns |= units[i] == u'\r';
        nuls |= units[i] == u'\0';
        surrogates |= (units[i] & 0xF800) == 0xD800;
    }
    return (ampersands | returns | nuls | surrogates) != 0;
}

// The first such character from `begin` on.
const char16_t* findMarked(const char16_t* begin, const char16_t* end)
{
    while (end - begin >= kBlock && !isBlockMarked(begin))
        begin += kBlock;
    return std::find_if(begin, end,
        [](char16_t c) { return c == u'&' || c == u'\r' || c == u'\0' || (c & 0xF800) == 0xD800; });
}

QString Decoder::decode()
{
    const char16_t* const units = m_raw.utf16();
    const char16_t* const end = units + m_raw.size();
    const char16_t* marked = findMarked(units, end);
    if (marked == end)
        return m_raw.toString();

    const bool references = m_place != TextPlace::Rawtext && m_place != TextPlace::Cdata;
    m_out.reserve(m_raw.size());
    for (;;) {
        m_out += m_raw.sliced(m_pos, marked - units - m_pos);
        m_pos = marked - units;
        if (marked == end)
            return std::move(m_out);
        if (!(references && *marked == u'&' && readReference()))
            readUnit();
        marked = findMarked(units + m_pos, end);
    }
}

void Decoder::append(char32_t codePoint)
{
    for (const char16_t unit : QChar::fromUcs4(codePoint))
        m_out += QChar(unit);
}

void Decoder::readUnit()
{
    const QChar unit(at(m_pos++));
    if (unit == u'\r') {
        m_out += u'\n';
        if (at(m_pos) == u'\n')
            ++m_pos;
    } else if (unit.isNull()) {
        if (m_place != TextPlace::Data)
            m_out += QChar::ReplacementCharacter;
    } else if (unit.isHighSurrogate() && QChar::isLowSurrogate(at(m_pos))) {
        m_out += unit;
        m_out += QChar(at(m_pos++));
    } else {
        m_out += unit.isSurrogate() ? QChar(QChar::ReplacementCharacter) : unit;
    }
}

bool Decoder::readReference()
{
    return at(m_pos + 1) == u'#' ? readNumber() : readName();
}

bool Decoder::readNumber()
{
    const bool hex = asciiLower(at(m_pos + 2)) == u'x';
    const int base = hex ? 16 : 10;
    const qsizetype begin = m_pos + (hex ? 3 : 2);
    qsizetype end = begin;
    char32_t number = 0;
    for (int digit = 0; end < m_raw.size(); ++end) {
        digit = hexValue(at(end));
        if (digit < 0 || digit >= base)
            break;
        number = std::min<char32_t>(number * char32_t(base) + char32_t(digit), 0x110000);
    }
    if (end == begin)
        return false;
    append(codePointOfNumber(number));
    m_pos = at(end) == u';' ? end + 1 : end;
    return true;
}

bool Decoder::readName()
{
    const qsizetype begin = m_pos + 1;
    qsizetype length = 0;
    while (length <= kLongestName && isAlnum(at(begin + length)))
        ++length;
    if (length <= kLongestName && at(begin + length) == u';') {
        if (const NamedReference* entry = findName(m_raw.mid(begin, length))) {
            take(*entry, length + 1);
            return true;
        }
    }
    for (qsizetype n = std::min(length, kLongestWithoutSemicolon); n > 1; --n) {
        const NamedReference* entry = findName(m_raw.mid(begin, n));
        if (!entry || !entry->withoutSemicolon)
            continue;
        const char16_t after = at(begin + n);
        if (m_place == TextPlace::Attribute && (after == u'=' || isAlnum(after)))
            return false;
        take(*entry, n);
        return true;
    }
    return false;
}

void Decoder::take(const NamedReference& entry, qsizetype length)
{
    append(entry.first);
    if (entry.second != 0)
        append(entry.second);
    m_pos += 1 + length;
}

} // namespace

bool readsAsItStands(QStringView raw)
{
    const char16_t* const end = raw.utf16() + raw.size();
    return findMarked(raw.utf16(), end) == end;
}

QString decodeText(QStringView raw, TextPlace place)
{
    return Decoder(raw, place).decode();
}

QString encodeAttributeValue(QStringView value)
{
    QString result;
    result.reserve(value.size() + value.size() / 4 + 16);
    qsizetype copied = 0;
    const auto replaceAt = [&](qsizetype i, QStringView by) {
        result += value.sliced(copied, i - copied);
        result += by;
        copied = i + 1;
    };
    for (qsizetype i = 0; i < value.size(); ++i) {
        const QChar unit = value[i];
        if (unit == u'&')
            replaceAt(i, u"&amp;");
        else if (unit == u'"')
            replaceAt(i, u"&quot;");
        else if (unit == QChar::Nbsp)
            replaceAt(i, u"&nbsp;");
        else if (unit == u'\r')
            replaceAt(i, u"&#13;");
        else if (unit.isHighSurrogate() && i + 1 < value.size() && value[i + 1].isLowSurrogate())
            ++i;
        else if (unit.isNull() || unit.isSurrogate())
            replaceAt(i, u"\uFFFD");
    }
    result += value.sliced(copied);
    return result;
}

} // namespace html
