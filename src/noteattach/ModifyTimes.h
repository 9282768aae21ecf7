#pragma once

#include "noteattach/NewAttachFile.h"

#include <QString>

#include <map>
#include <vector>

namespace noteattach {

/// The times at which attachments came in or changed, "YYYY-MM-DD hh:mm:ss", under the record's
/// key: `fileName` and `origName` written one behind the other.
using AttachModifyCache = std::map<QString, QString>;

/// Sets `modifyTime` of each record: the time in the cache, and for a record that is not there the
/// time of this call. The GUID is not used.
void UpdateAttModifyTimeField(const QString& noteGuid, std::vector<NewAttachFile>& attList,
    const AttachModifyCache& modifyCache);

} // namespace noteattach
