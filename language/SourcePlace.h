#pragma once

#include <QtGlobal>

// Where a word stands in the program text, counted the way the code editor counts: a line is a
// paragraph of the editor (a line feed, a carriage return, both together, or U+2029 starts the
// next one) and columns are UTF-16 code units from the start of that line. Lines and columns
// start at 0. A default place is nowhere.
struct SourcePlace
{
    int line = -1;
    int column = 0;
    int length = 0;

    bool isValid() const { return line >= 0; }
    bool operator==(const SourcePlace &) const = default;
};

// Plain bytes: lists of places grow by reallocating, without copying element by element.
Q_DECLARE_TYPEINFO(SourcePlace, Q_PRIMITIVE_TYPE);
