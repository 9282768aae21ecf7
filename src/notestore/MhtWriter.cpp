#include "notestore/MhtWriter.h"

#include "support/DiskFile.h"
#include "support/Text.h"
#include "support/Utf8.h"

#include <QFileInfo>

#include <cstring>
#include <memory>

#include <gmime/gmime.h>
#include <unistd.h>

namespace notestore {
namespace {

constexpr std::size_t kPiece = 64 * 1024;

// A name that can never be anyone's (RFC 2606).
constexpr char kHost[] = "nomareditor.invalid";

struct Release {
    void operator()(void* object) const { g_object_unref(object); }
    void operator()(GDateTime* time) const { g_date_time_unref(time); }
    void operator()(GMimeFormatOptions* options) const { g_mime_format_options_free(options); }
    void operator()(char* text) const { g_free(text); }
};
template <typename T> using Owned = std::unique_ptr<T, Release>;

void startMime()
{
    [[maybe_unused]] static const bool started = (g_mime_init(), true);
}

QByteArray headersOf(GMimeObject* object)
{
    const Owned<GMimeFormatOptions> options(g_mime_format_options_new());
    g_mime_format_options_set_newline_format(options.get(), GMIME_NEWLINE_FORMAT_DOS);
    const Owned<char> text(g_mime_object_get_headers(object, options.get()));
    return QByteArray(text.get());
}

struct MessageHead {
    QByteArray headers;
    QByteArray boundary;
};

MessageHead messageHead()
{
    const Owned<GMimeMultipart> related(g_mime_multipart_new_with_subtype("related"));
    const QByteArray boundary(g_mime_multipart_get_boundary(related.get())); // made at random
    // RFC 2387 demands the root's type.
    g_mime_object_set_content_type_parameter(GMIME_OBJECT(related.get()), "type", "text/html");

    // A message has a date and an author (RFC 5322, 3.6).
    const Owned<GMimeMessage> message(g_mime_message_new(TRUE));
    const Owned<GDateTime> now(g_date_time_new_now_local());
    g_mime_message_set_date(message.get(), now.get());
    g_mime_message_add_mailbox(message.get(), GMIME_ADDRESS_TYPE_FROM, "NomarEditor",
        (QByteArray("note@") + kHost).constData());
    g_mime_message_set_mime_part(message.get(), GMIME_OBJECT(related.get()));
    return {headersOf(GMIME_OBJECT(message.get())), boundary};
}

Owned<GMimePart> makePart(const char* type, const char* subtype, GMimeContentEncoding encoding,
    const QByteArray& location)
{
    Owned<GMimePart> part(g_mime_part_new_with_type(type, subtype));
    g_mime_part_set_content_encoding(part.get(), encoding);
    g_mime_part_set_content_location(part.get(), location.constData());
    return part;
}

// The body of a part: takes its bytes piece by piece and writes them encoded, with CRLF at the ends
// of lines.
class Body {
public:
    Body(QIODevice& out, GMimeContentEncoding encoding)
        : m_out(out)
    {
        g_mime_encoding_init_encode(&m_encoding, encoding);
    }

    bool write(const char* data, std::size_t length)
    {
        reserve(length);
        return put(g_mime_encoding_step(&m_encoding, data, length, m_encoded.get()));
    }

    bool finish()
    {
        reserve(0);
        return put(g_mime_encoding_flush(&m_encoding, nullptr, 0, m_encoded.get()));
    }

private:
    void reserve(std::size_t length)
    {
        const std::size_t needed = g_mime_encoding_outlen(&m_encoding, length);
        if (needed <= m_capacity)
            return;
        m_encoded = std::make_unique_for_overwrite<char[]>(needed);
        m_lines = std::make_unique_for_overwrite<char[]>(2 * needed);
        m_capacity = needed;
    }

    bool put(std::size_t length)
    {
        const char* in = m_encoded.get();
        const char* const end = in + length;
        char* out = m_lines.get();
        while (const void* found = std::memchr(in, '\n', std::size_t(end - in))) {
            const char* const newline = static_cast<const char*>(found);
            out = std::copy(in, newline, out);
            *out++ = '\r';
            *out++ = '\n';
            in = newline + 1;
        }
        out = std::copy(in, end, out);
        return m_out.write(m_lines.get(), out - m_lines.get()) == out - m_lines.get();
    }

    QIODevice& m_out;
    GMimeEncoding m_encoding;
    std::unique_ptr<char[]> m_encoded;
    std::unique_ptr<char[]> m_lines;
    std::size_t m_capacity = 0; // of m_encoded; m_lines has twice that
};

} // namespace

MhtWriter::MhtWriter(const QString& path)
    : m_file(path)
    , m_token(QByteArray::fromStdString(WideToAnsi(CreateGuidString())))
{
}

bool MhtWriter::open()
{
    startMime();
    const QString path = m_file.fileName();
    const QFileInfo there(path);
    // What is no file would be replaced by one.
    if (path.contains(QChar(u'\0')) || (there.exists() && !there.isFile()))
        return false;
    if (!m_file.open(QIODevice::WriteOnly))
        return false;
    // The earlier file's go over to it. Where they could not be looked at it has none at all, and
    // nobody could read it.
    if (!(m_file.permissions() & (QFile::ReadOwner | QFile::WriteOwner)))
        return false;
    const MessageHead head = messageHead();
    m_boundary = head.boundary;
    m_file.write(head.headers);
    return true;
}

bool MhtWriter::addHtml(const QString& html)
{
    const Owned<GMimePart> part =
        makePart("text", "html", GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE, "file:///note.html");
    g_mime_object_set_content_type_parameter(GMIME_OBJECT(part.get()), "charset", "utf-8");
    beginPart(headersOf(GMIME_OBJECT(part.get())));

    Body body(m_file, GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE);
    const auto piece = std::make_unique_for_overwrite<char[]>(kPiece);
    for (QStringView rest = html; !rest.isEmpty();) {
        const std::size_t length = EncodeUtf8(rest, piece.get(), kPiece);
        if (!body.write(piece.get(), length))
            return false;
    }
    return body.finish();
}

bool MhtWriter::addPicture(const QString& path, const char* mimeSubtype)
{
    InputFile file;
    if (file.open(path))
        return false;
    const qsizetype number = m_pictures++;
    const Owned<GMimePart> part = makePart("image", mimeSubtype, GMIME_CONTENT_ENCODING_BASE64,
        "file:///picture" + QByteArray::number(number) + '.' + mimeSubtype);
    g_mime_object_set_content_id(GMIME_OBJECT(part.get()), pictureId(number).constData());
    beginPart(headersOf(GMIME_OBJECT(part.get())));

    Body body(m_file, GMIME_CONTENT_ENCODING_BASE64);
    const auto piece = std::make_unique_for_overwrite<char[]>(kPiece);
    qint64 count;
    while ((count = file.read(piece.get(), kPiece)) > 0) {
        if (!body.write(piece.get(), std::size_t(count)))
            return false;
    }
    return count == 0 && body.finish();
}

bool MhtWriter::finish()
{
    m_file.write("\r\n--" + m_boundary + "--\r\n");
    // Of its last bytes and of its own flush commit() does not tell a failure; of any write before
    // it does.
    return m_file.flush() && ::fsync(m_file.handle()) == 0 && m_file.commit();
}

void MhtWriter::beginPart(const QByteArray& headers)
{
    m_file.write("\r\n--" + m_boundary + "\r\n" + headers + "\r\n");
}

QByteArray MhtWriter::pictureId(qsizetype number) const
{
    return QByteArray::number(number) + '.' + m_token + '@' + kHost;
}

QString MhtWriter::pictureAddress(qsizetype number) const
{
    return QStringLiteral("cid:") + QString::fromLatin1(pictureId(number));
}

} // namespace notestore
