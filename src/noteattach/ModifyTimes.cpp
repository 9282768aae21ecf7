#include "noteattach/ModifyTimes.h"

#include "support/TimeText.h"

namespace noteattach {

void UpdateAttModifyTimeField(
    const QString&, std::vector<NewAttachFile>& attList, const AttachModifyCache& modifyCache)
{
    for (NewAttachFile& record : attList) {
        const auto known = modifyCache.find(record.fileName + record.origName);
        record.modifyTime = known != modifyCache.end() ? known->second : FormatNowTime();
    }
}

} // namespace noteattach
