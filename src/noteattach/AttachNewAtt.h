#pragma once

#include <QString>

/// One rewrite of attachment elements, for `UpdateAttachAttValue`.
struct AttachNewAtt {
    /// The whole `nm_exdata` text of the elements to change.
    QString oldExData;
    /// The `nm_exdata` text they get.
    QString newExData;
    /// The file name they get as the last component of `src`, `data-ke-src` and `nmimgsrc`.
    QString newSrcName;
};
