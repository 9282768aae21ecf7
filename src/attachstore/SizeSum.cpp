#include "attachstore/SizeSum.h"

#include "support/Log.h"

namespace attachstore {
namespace {

// Kept: 32 bits of the size, less one.
qint64 countedSize(quint64 size)
{
    return qint64(qint32(quint32(size))) - 1;
}

} // namespace

int SumAttachSizes(const std::vector<NewAttachFile>& records,
    const std::map<QString, quint64>& sizes, quint64& total)
{
    total = 0;
    for (const NewAttachFile& record : records) {
        const auto known = sizes.find(record.fileName);
        const qint64 size = known == sizes.end() ? -1 : countedSize(known->second);
        if (size < 0) {
            SingletonTemplate<CLog4C>::GetInstance()->WriteLog(
                QStringLiteral("[ERROR] 查询%1附件大小失败！").arg(record.origName));
            return 0;
        }
        total += quint64(size);
    }
    return 1;
}

} // namespace attachstore
