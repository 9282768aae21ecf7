#pragma once

#include <QByteArray>
#include <QtEndian>

/// The bytes of a bitmap file, read by hand.
class BmpFile {
public:
    explicit BmpFile(const QByteArray& bytes)
        : m_bytes(bytes)
    {
    }

    const QByteArray& bytes() const { return m_bytes; }
    qsizetype size() const { return m_bytes.size(); }
    int width() const { return at<qint32>(18); }
    int height() const { return at<qint32>(22); }

    template <typename Number> Number at(qsizetype offset) const
    {
        return offset + qsizetype(sizeof(Number)) <= m_bytes.size()
            ? qFromLittleEndian<Number>(m_bytes.constData() + offset)
            : Number(-1);
    }

    /// Where the row `y` from the top starts: rows stand from the bottom up, on four bytes.
    qsizetype rowAt(int y) const
    {
        const int rowBytes = (2 * width() + 3) / 4 * 4;
        return 54 + qsizetype(height() - 1 - y) * rowBytes;
    }
    /// The pixel from the left and the top, 5-5-5.
    quint16 pixel(int x, int y) const { return at<quint16>(rowAt(y) + 2 * x); }

private:
    QByteArray m_bytes;
};

/// A grey as 5-5-5, of its lightness from 0 to 255.
constexpr quint16 grey555(int lightness)
{
    return static_cast<quint16>((lightness >> 3) * 0x0421);
}
