#include "platform/Variant.h"

VARIANT VARIANT::Text(const QString& text)
{
    VARIANT value;
    value.vt = VT_BSTR;
    value.bstrVal = text;
    return value;
}

VARIANT VARIANT::Integer(quint16 type, qint64 number)
{
    VARIANT value;
    value.vt = type;
    value.llVal = number;
    return value;
}

VARIANT VARIANT::Real(quint16 type, double number)
{
    VARIANT value;
    value.vt = type;
    value.dblVal = number;
    return value;
}

VARIANT VARIANT::Bool(bool truth)
{
    return Integer(VT_BOOL, truth ? -1 : 0);
}
