#include "Views/Shared/ListSteps.h"

#include <QHash>

#include <algorithm>
#include <vector>

namespace navorin {

namespace {

constexpr int gone = -1;
using Rows = std::vector<int>;

/// For each old row, its row in the new list; the n-th row of a key stands for the n-th of that key there.
Rows newRows(const QList<QString> &before, const QList<QString> &after)
{
    QHash<QStringView, Rows> places;
    places.reserve(after.size());
    for (qsizetype i = after.size(); i-- > 0;)
        places[after[i]].push_back(int(i));
    Rows rows;
    rows.reserve(size_t(before.size()));
    for (const auto &key : before) {
        const auto found = places.find(key);
        if (found == places.end() || found->empty()) {
            rows.push_back(gone);
        } else {
            rows.push_back(found->back());
            found->pop_back();
        }
    }
    return rows;
}

class Steps
{
public:
    explicit Steps(qsizetype max)
        : m_max(max)
    {
    }

    void add(ListStep::Kind kind, qsizetype row, qsizetype number)
    {
        if (!isFull())
            m_steps.append({kind, row, number});
        ++m_count;
    }
    [[nodiscard]] bool isFull() const { return m_count > m_max; }
    [[nodiscard]] QList<ListStep> take() { return std::move(m_steps); }

private:
    QList<ListStep> m_steps;
    qsizetype m_max;
    qsizetype m_count = 0;
};

/// Takes the rows that are gone out of `rows`, run by run.
void removeGone(Rows &rows, Steps &steps)
{
    for (auto end = qsizetype(rows.size()); end > 0 && !steps.isFull();) {
        auto first = end;
        while (first > 0 && rows[size_t(first - 1)] == gone)
            --first;
        if (first < end)
            steps.add(ListStep::Kind::Remove, first, end - first);
        end = first - (first == end ? 1 : 0);
    }
    std::erase(rows, gone);
}

/// Members of one longest rising run of `rows` (not necessarily adjacent): these stay where they are.
std::vector<bool> staying(const Rows &rows)
{
    Rows tails; // index of the smallest last member of a run of each length
    Rows previous(rows.size(), -1);
    for (size_t i = 0; i < rows.size(); ++i) {
        const auto place = std::lower_bound(tails.begin(), tails.end(), rows[i], [&](int index, int value) {
            return rows[size_t(index)] < value;
        });
        if (place != tails.begin())
            previous[i] = *std::prev(place);
        if (place == tails.end())
            tails.push_back(int(i));
        else
            *place = int(i);
    }
    std::vector<bool> stays(rows.size(), false);
    for (int i = tails.empty() ? -1 : tails.back(); i >= 0; i = previous[size_t(i)])
        stays[size_t(i)] = true;
    return stays;
}

/// Brings the rows that are left into the new order, each that moves behind the one it follows there.
void moveIntoOrder(Rows &rows, Steps &steps)
{
    if (std::is_sorted(rows.begin(), rows.end()))
        return;
    const auto stays = staying(rows);
    Rows moving;
    for (size_t i = 0; i < rows.size(); ++i) {
        if (!stays[i])
            moving.push_back(rows[i]);
    }
    std::sort(moving.begin(), moving.end());
    auto sorted = rows;
    std::sort(sorted.begin(), sorted.end());
    for (const auto row : moving) {
        if (steps.isFull())
            return;
        const auto from = std::find(rows.begin(), rows.end(), row) - rows.begin();
        rows.erase(rows.begin() + from);
        const auto rank = std::lower_bound(sorted.begin(), sorted.end(), row);
        const auto to = rank == sorted.begin()
                            ? 0
                            : std::find(rows.begin(), rows.end(), *std::prev(rank)) - rows.begin() + 1;
        rows.insert(rows.begin() + to, row);
        if (from != to)
            steps.add(ListStep::Kind::Move, from, to);
    }
}

void insertNew(const Rows &rows, qsizetype size, Steps &steps)
{
    auto kept = rows.begin();
    for (qsizetype row = 0; row < size && !steps.isFull();) {
        const auto next = kept == rows.end() ? size : qsizetype(*kept);
        if (row < next)
            steps.add(ListStep::Kind::Insert, row, next - row);
        row = next + 1;
        if (kept != rows.end())
            ++kept;
    }
}

} // namespace

std::optional<QList<ListStep>> listSteps(const QList<QString> &before, const QList<QString> &after,
                                         qsizetype maxSteps)
{
    if (before == after)
        return QList<ListStep>();
    auto rows = newRows(before, after);
    Steps steps(maxSteps);
    removeGone(rows, steps);
    moveIntoOrder(rows, steps);
    insertNew(rows, after.size(), steps);
    return steps.isFull() ? std::nullopt : std::optional(steps.take());
}

} // namespace navorin
