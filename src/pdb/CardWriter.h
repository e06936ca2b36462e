#pragma once

#include "pdb/Columns.h"
#include "textio/writer.h"

namespace tarnex::pdb {

/// Writes the fields of one line from left to right, with blanks between them. Columns are where fields belong: a text
/// that is cut or a number of extra blanks moves everything behind it.
class CardWriter {
public:
    static constexpr int lastColumn = 80;

    /// The keyword is left-aligned.
    CardWriter(writer& cardOut, char const* keyword) : out(cardOut) { putLeftAligned(keyword, keywordColumns); }

    /// Writes a text or a number, right-aligned.
    template <class Value>
    CardWriter& put(Value value, Columns field) {
        return putAligned(value, field, 0);
    }
    CardWriter& putLeftAligned(char const* text, Columns field) { return putAligned(text, field, 1); }
    /// Writes blanks that take up no columns.
    CardWriter& insertBlanks(int count) {
        out.writeColumns("", 1, count, 0);
        return *this;
    }
    /// Leaves out the columns up to this one, without blanks.
    CardWriter& skipTo(int column) {
        nextColumn = column;
        return *this;
    }
    void end() {
        fillTo(lastColumn);
        out.write("\n", 1);
    }

private:
    template <class Value>
    CardWriter& putAligned(Value value, Columns field, unsigned short alignment) {
        fillTo(field.first - 1);
        out.writeColumns(value, field.first, field.last, alignment);
        nextColumn = field.last + 1;
        return *this;
    }
    void fillTo(int column) { out.writeColumns("", nextColumn, column, 0); }

    writer& out;
    int nextColumn = 1;
};

} // namespace tarnex::pdb
