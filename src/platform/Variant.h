#pragma once

#include "support/Export.h"

#include <QString>
#include <QtGlobal>

#include <vector>

/// Type numbers of a `VARIANT`, as the automation type library numbers them.
enum VARTYPE : quint16 {
    VT_EMPTY = 0,
    VT_NULL = 1,
    VT_I2 = 2,
    VT_I4 = 3,
    VT_R4 = 4,
    VT_R8 = 5,
    VT_CY = 6,
    VT_DATE = 7,
    VT_BSTR = 8,
    VT_BOOL = 11,
    VT_UNKNOWN = 13,
    VT_DECIMAL = 14,
    VT_UI2 = 18,
    VT_UI4 = 19,
    VT_I8 = 20,
    VT_UI8 = 21,
    VT_INT = 22,
    VT_UINT = 23,
    VT_VOID = 24,
    VT_LPSTR = 30,
    VT_LPWSTR = 31,
    VT_BYREF = 0x4000,
};

/// A decimal number: sign byte (0x80 is negative), power of ten, 96-bit mantissa.
struct DECIMAL {
    quint8 scale = 0;
    quint8 sign = 0;
    quint32 hi32 = 0;
    quint32 lo32 = 0;
    quint32 mid32 = 0;
};

/// A tagged value on its way to or from a page script. `vt` says which field counts.
struct NOMAR_EXPORT VARIANT {
    quint16 vt = VT_EMPTY;
    qint64 llVal = 0; ///< Every integer type, in two's complement; `VT_BOOL` too, 0 is false.
    double dblVal = 0; ///< `VT_R4`, `VT_R8`; `VT_DATE` in days since 1899-12-30, local time.
    DECIMAL decVal; ///< `VT_DECIMAL`.
    QString bstrVal; ///< `VT_BSTR`, `VT_LPSTR`, `VT_LPWSTR`.

    static VARIANT Text(const QString& text);
    static VARIANT Integer(quint16 type, qint64 value);
    static VARIANT Real(quint16 type, double value);
    static VARIANT Bool(bool value);
};

/// Arguments of a call from script, in reverse: the last script argument is element 0.
struct DISPPARAMS {
    std::vector<VARIANT> rgvarg;
    unsigned cArgs = 0;
};
