// The value of nm_exdata from arbitrary bytes, and any name through its value and back.

#include "Require.h"

#include "noteattach/ExData.h"
#include "support/Text.h"

#include <cstddef>
#include <cstdint>
#include <string>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    const QString name = noteattach::GetOrigNameFromJson(bytes);
    require(!name.contains(QChar::Null));
    require(noteattach::GetOrigNameFromJson(noteattach::FormatOrigNameToJson(name)) == name);

    const QString any = AnsiToWide(bytes);
    const QString value = noteattach::FormatOrigNameToJson(any);
    require(noteattach::GetOrigNameFromJson(value) == any);
    require(noteattach::GetOrigNameFromJson(WideToUtf8(value)) == any);
    return 0;
}
