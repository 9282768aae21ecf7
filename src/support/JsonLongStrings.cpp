#include "support/JsonLongStrings.h"

#include "support/Text.h"

#include <set>

namespace {

constexpr qsizetype longUnits = 4096;

int hexDigit(char16_t c)
{
    if (c >= u'0' && c <= u'9')
        return c - u'0';
    c |= 0x20;
    return c >= u'a' && c <= u'f' ? c - u'a' + 10 : -1;
}

class Taker {
public:
    explicit Taker(const QString& text)
        : m_at(reinterpret_cast<const char16_t*>(text.utf16()))
        , m_end(m_at + text.size())
        , m_copied(m_at)
    {
    }

    /// Goes through the object up to its end; false as soon as something is not plain.
    bool run()
    {
        int depth = 0;
        bool afterColon = false;
        for (; m_at != m_end; ++m_at) {
            switch (*m_at) {
            case u'"':
                if (!string(depth == 1, afterColon))
                    return false;
                afterColon = false;
                break;
            case u'{':
            case u'[':
                if (depth++ == 0 && *m_at == u'[')
                    return false;
                break;
            case u'}':
            case u']':
                if (--depth == 0) {
                    copyUpTo(m_at + 1);
                    return true;
                }
                break;
            case u':':
                afterColon = true;
                break;
            case u',':
                afterColon = false;
                break;
            case u'/': // a comment
            case u'\0':
                return false;
            default:
                break;
            }
        }
        return false;
    }

    QString rest;
    std::map<std::string, QString> values;

private:
    /// Reads the string that begins here and stops at its closing quote.
    bool string(bool ofOutermost, bool isValue)
    {
        const char16_t* const begin = m_at++;
        QString value;
        if (!readUpToQuote(value))
            return false;
        if (!ofOutermost)
            return true;
        if (!isValue) {
            m_key = value.toStdString();
            return m_keys.insert(m_key).second;
        }
        if (value.size() > longUnits) {
            copyUpTo(begin);
            rest += QLatin1StringView("\"\"");
            m_copied = m_at + 1;
            values[m_key] = std::move(value);
        }
        return true;
    }

    bool readUpToQuote(QString& value)
    {
        const char16_t* run = m_at; // begin of what is its own value
        while (m_at != m_end) {
            const char16_t c = *m_at;
            if (c > u'\\' && !QChar::isSurrogate(c)) {
                ++m_at;
            } else if (c == u'"') {
                append(value, run);
                return true;
            } else if (c == u'\\') {
                append(value, run);
                if (!escape(value))
                    return false;
                run = m_at;
            } else if (QChar::isSurrogate(c)) {
                if (!QChar::isHighSurrogate(c) || m_at + 1 == m_end
                    || !QChar::isLowSurrogate(m_at[1]))
                    return false;
                m_at += 2;
            } else if (c == u'\0') {
                return false;
            } else {
                ++m_at;
            }
        }
        return false;
    }

    void append(QString& value, const char16_t* run) const
    {
        value.append(reinterpret_cast<const QChar*>(run), m_at - run);
    }

    /// RFC 8259, section 7.
    bool escape(QString& value)
    {
        if (m_end - m_at < 2)
            return false;
        const char16_t c = m_at[1];
        m_at += 2;
        static constexpr char16_t letters[] = u"\"\\/bfnrt";
        static constexpr char16_t meanings[] = u"\"\\/\b\f\n\r\t";
        for (int i = 0; letters[i]; ++i) {
            if (c == letters[i]) {
                value.append(QChar(meanings[i]));
                return true;
            }
        }
        if (c != u'u' || m_end - m_at < 4)
            return false;
        int unit = 0;
        for (int i = 0; i < 4; ++i) {
            const int digit = hexDigit(*m_at++);
            if (digit < 0)
                return false;
            unit = unit * 16 + digit;
        }
        if (unit == 0 || QChar::isSurrogate(char32_t(unit)))
            return false;
        value.append(QChar(char16_t(unit)));
        return true;
    }

    void copyUpTo(const char16_t* end)
    {
        rest.append(reinterpret_cast<const QChar*>(m_copied), end - m_copied);
        m_copied = end;
    }

    const char16_t* m_at;
    const char16_t* const m_end;
    const char16_t* m_copied; // up to here `rest` has it
    std::string m_key;
    std::set<std::string> m_keys;
};

} // namespace

std::optional<JsonLongStrings> JsonLongStrings::take(const QString& text)
{
    if (text.size() <= longUnits)
        return std::nullopt;
    Taker taker(text);
    if (!taker.run())
        return std::nullopt;
    return JsonLongStrings{WideToAnsi(taker.rest), std::move(taker.values)};
}
