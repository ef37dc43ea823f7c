// zel/content/conversion.h: a caller's raw array, named by a data type string, as one string per
// element.
//
// Type strings, compared exactly and case-sensitively, with their element sizes:
//   "REAL*4" 4, "REAL*8" 8, "REAL*16" 16 (two doubles, runtime/quad.h), "INTEGER*8" 8,
//   "INTEGER*4" 4, "COMPLEX*4" 8, "COMPLEX*8" 16, "COMPLEX*16" 32 (the suffix names each half),
//   "CHARACTER*n" n (the text behind the first ten characters read as a number; none gives 0).
// The array is rows x columns elements, row after row, element (r, c) at index r x columns + c.
#pragma once

#include <QString>
#include <QStringList>

class ZEL_DataConverter
{
public:
    // One string per element, row 0 first; empty for an unknown type, rows or columns below 1,
    // a negative character length, a null pointer or more than maxElements elements. Reads exactly
    // rows x columns x elementSize(dataType) bytes.
    static QStringList convertDataToStringList(const void* data, const QString& dataType, int rows,
                                               int columns);

    // Bytes of one element of the type; -1 for a type the converter doesn't know.
    static int elementSize(const QString& dataType);

    // QString::number(value, 'g', 6), exactly, without the generic formatter on its common path.
    static QString realText(double value);
    // realText(value).toDouble(), exactly, mostly without making the text.
    static double sixDigitValue(double value);
    // The text of a 16-byte real: "d.ddd...Q" + exponent with 32 digits, "-" first when its
    // leading double is negative; "inf", "-inf" or "nan" for the others.
    static QString quadText(const void* quad);

    static constexpr qint64 maxElements = qint64(1) << 24;
};
