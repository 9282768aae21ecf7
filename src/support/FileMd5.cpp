#include "support/FileMd5.h"

#include "support/DiskFile.h"
#include "support/Log.h"
#include "support/Md5.h"

namespace {

constexpr std::size_t kPiece = 64 * 1024;

QString hexadecimal(const Md5Context::Digest& digest)
{
    static constexpr char digits[] = "0123456789abcdef";
    QString text;
    text.reserve(2 * static_cast<qsizetype>(digest.size()));
    for (const std::uint8_t byte : digest) {
        text += QLatin1Char(digits[byte >> 4]);
        text += QLatin1Char(digits[byte & 15]);
    }
    return text;
}

QString digest(const std::atomic<bool>* stop, const QString& path, qint64* length)
{
    Md5Context context;
    InputFile file;
    if (const int error = file.open(path)) {
        SingletonTemplate<CLog4C>::GetInstance()->WriteLog(
            QStringLiteral("[ERROR]: Open file('%1') to calc file md5 failed!Error code:%2.")
                .arg(path, QString::number(error)));
        return {};
    }
    char piece[kPiece];
    qint64 total = 0;
    qint64 count;
    while ((count = file.read(piece, sizeof piece)) > 0) {
        if (stop && *stop)
            return {};
        context.update(piece, static_cast<std::size_t>(count));
        total += count;
    }
    if (length)
        *length = total;
    return hexadecimal(context.digest());
}

} // namespace

QString FileMd5(QString path, qint64* length)
{
    return digest(nullptr, path, length);
}

QString FileMd5Unless(const std::atomic<bool>& stop, const QString& path, qint64* length)
{
    return digest(&stop, path, length);
}
