// The export of a note into an MHT file, parsing and rewriting included, against GMime alone, which
// writes the same text as a message. Both write a temporary, flush it once and rename it: what a
// flush costs is the disk's, and would drown what is compared.

#include "Figure.h"
#include "SampleNote.h"

#include "notestore/MhtExport.h"
#include "support/AppDirs.h"

#include <QFile>
#include <QTemporaryDir>

#include <cstdio>
#include <fcntl.h>
#include <memory>
#include <stdexcept>
#include <unistd.h>

#include <gmime/gmime.h>

namespace {

constexpr qsizetype kMegabyte = 1 << 20;

struct Release {
    void operator()(void* object) const { g_object_unref(object); }
    void operator()(GMimeFormatOptions* options) const { g_mime_format_options_free(options); }
};
template <typename T> using Owned = std::unique_ptr<T, Release>;

// The least that a durable file costs: one write.
void writeBare(const GByteArray* bytes, const QByteArray& path)
{
    const QByteArray temporary = path + ".tmp";
    const int file = ::open(temporary, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (file < 0 || ::write(file, bytes->data, bytes->len) != ssize_t(bytes->len)
        || ::fsync(file) != 0 || ::close(file) != 0 || ::rename(temporary, path) != 0)
        throw std::runtime_error("a bare write failed");
}

void encodeWithGmime(const QByteArray& text, const QByteArray& path)
{
    const Owned<GMimeMessage> message(g_mime_message_new(TRUE));
    const Owned<GMimeMultipart> related(g_mime_multipart_new_with_subtype("related"));
    const Owned<GMimePart> part(g_mime_part_new_with_type("text", "html"));
    const Owned<GMimeStream> bytes(
        g_mime_stream_mem_new_with_buffer(text.constData(), std::size_t(text.size())));
    const Owned<GMimeDataWrapper> content(
        g_mime_data_wrapper_new_with_stream(bytes.get(), GMIME_CONTENT_ENCODING_DEFAULT));
    g_mime_part_set_content(part.get(), content.get());
    g_mime_part_set_content_encoding(part.get(), GMIME_CONTENT_ENCODING_QUOTEDPRINTABLE);
    g_mime_multipart_add(related.get(), GMIME_OBJECT(part.get()));
    g_mime_message_set_mime_part(message.get(), GMIME_OBJECT(related.get()));

    const Owned<GMimeFormatOptions> options(g_mime_format_options_new());
    g_mime_format_options_set_newline_format(options.get(), GMIME_NEWLINE_FORMAT_DOS);
    const Owned<GMimeStream> out(g_mime_stream_mem_new());
    if (g_mime_object_write_to_stream(GMIME_OBJECT(message.get()), options.get(), out.get()) < 0)
        throw std::runtime_error("GMime could not encode");
    writeBare(g_mime_stream_mem_get_byte_array(GMIME_STREAM_MEM(out.get())), path);
}

std::vector<bench::Figure> measure()
{
    g_mime_init();
    auto directory = std::make_shared<QTemporaryDir>();
    SetAppDir(directory->path());
    const QString path = directory->filePath(QStringLiteral("note.mht"));

    const auto ours = bench::timedPerCall(5, [note = bench::sampleNoteText(kMegabyte), path] {
        if (!notestore::NoteHtmlContentToMhtFile(note, path))
            throw std::runtime_error("the export failed");
    });
    QString converted;
    notestore::HtmlConvert(bench::sampleNoteText(kMegabyte), converted);
    const auto gmime = bench::timedPerCall(
        5, [text = converted.toUtf8(), path = QFile::encodeName(path) + ".bare"] {
            encodeWithGmime(text, path);
        });
    return {bench::atMost("MHT export, 1 MB, against GMime alone", 1.3, ours, gmime, 15)};
}

const bench::Registration registration{"MHT", measure};

} // namespace
