#pragma once

#include "pdb/Columns.h"
#include "textio/Card.h"
#include "textio/lengthizer.h"

#include <cstdint>

namespace tarnex::pdb {

/// The columns behind the keyword.
using Card = CardFrom<keywordColumns.last + 1>;

/// Scans a PDB file line by line. The fields of a line are taken one by one, as from any `lengthizer`, or as a card.
class CardReader : public lengthizer {
public:
    using lengthizer::lengthizer;

    /// Reads the keyword of a line at its start.
    std::uint64_t readKeyword() {
        constexpr std::uint64_t atomCard = packed("ATOM  ");
        constexpr std::uint64_t hetatmCard = packed("HETATM");
        constexpr std::uint64_t ofKeyword = ~(~std::uint64_t{0} << (8 * keywordColumns.width()));
        std::uint64_t const word = loadWord(cursor) & ofKeyword;
        bool const isAtHand = blockEnd - cursor >= keywordColumns.width();
        if (!isAtHand || (word != atomCard && word != hetatmCard)) return packed(getString(keywordColumns.width()));
        cursor += keywordColumns.width();
        return word == atomCard ? packed("ATOM") : hetatmCard;
    }

    /// Reads the columns behind the keyword. They stay in place until the next call of any kind.
    Card readCard() { return Card(takeColumns(lastColumn - keywordColumns.last)); }

    /// Passes the columns behind the keyword, as far as the line has them.
    void passCard() { passColumns(lastColumn - keywordColumns.last); }

private:
    static constexpr int lastColumn = 80;
};

} // namespace tarnex::pdb
