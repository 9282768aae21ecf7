#include "attachstore/EntryRules.h"

namespace attachstore {

Refused ApplyEntryRules(std::vector<DropFileInfo>& files, quint64 total)
{
    Refused refused;
    quint64 room = total < attachLimit ? attachLimit - total : 0; // no sum, so none that overflows
    std::vector<DropFileInfo> entering;
    entering.reserve(files.size());
    for (DropFileInfo& file : files) {
        if (file.isFolder) {
            refused.folder = true;
        } else if (file.fileSize == 0) {
            refused.empty = true;
        } else if (file.fileSize > room) {
            refused.overLimit = true;
        } else {
            room -= file.fileSize;
            entering.push_back(std::move(file));
        }
    }
    files = std::move(entering);
    return refused;
}

} // namespace attachstore
