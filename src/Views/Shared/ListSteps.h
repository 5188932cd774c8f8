#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace navorin {

/// One change of a list by rows, to be carried out in the order given.
struct ListStep
{
    enum class Kind { Remove, Move, Insert };
    Kind kind;
    qsizetype row;    ///< first row removed or inserted; the row that moves
    qsizetype number; ///< how many rows; for a move, the row at which it stands afterwards

    bool operator==(const ListStep &) const = default;
};

/// The steps that turn a list of the rows `before` into one of the rows `after`, told apart by their keys:
/// removals from the back, then moves, then insertions from the front. Absent if it takes more than
/// `maxSteps`, as when little is left of the old list: then it is better replaced. Equal keys are told apart
/// by their order. Takes time in proportion to the rows, and to the rows once more for each move.
[[nodiscard]] std::optional<QList<ListStep>> listSteps(const QList<QString> &before,
                                                       const QList<QString> &after, qsizetype maxSteps);

} // namespace navorin
