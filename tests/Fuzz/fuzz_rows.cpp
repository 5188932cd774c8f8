#include "Fuzz.h"
#include "Views/Shared/RowListModel.h"

#include <QAbstractItemModelTester>

using namespace navorin;

namespace {

/// A list of up to 40 rows whose keys repeat, as those of playlists that hold a song twice.
QList<ListRow> nextList(FuzzInput &input)
{
    QList<ListRow> rows;
    for (int left = input.byte() % 40; left > 0; --left) {
        const auto byte = input.byte();
        rows.append({QString::number(byte % 24), QString::number(byte / 24), {}, {}, {}});
    }
    return rows;
}

/// Follows the model as a view does, from its signals alone.
class View
{
public:
    explicit View(RowListModel &model)
        : m_model(model)
    {
        QObject::connect(&model, &RowListModel::rowsInserted,
                         [this](const QModelIndex &, int first, int last) {
                             for (int row = first; row <= last; ++row)
                                 m_titles.insert(row, titleAt(row));
                         });
        QObject::connect(
            &model, &RowListModel::rowsRemoved,
            [this](const QModelIndex &, int first, int last) { m_titles.remove(first, last - first + 1); });
        QObject::connect(&model, &RowListModel::rowsMoved,
                         [this](const QModelIndex &, int from, int last, const QModelIndex &, int to) {
                             require(from == last, "rows move one by one");
                             m_titles.move(from, to > from ? to - 1 : to);
                         });
        QObject::connect(&model, &RowListModel::dataChanged,
                         [this](const QModelIndex &first, const QModelIndex &last) {
                             for (int row = first.row(); row <= last.row(); ++row)
                                 m_titles[row] = titleAt(row);
                         });
        QObject::connect(&model, &RowListModel::modelReset, [this] {
            m_titles.clear();
            for (int row = 0; row < m_model.rowCount(); ++row)
                m_titles.append(titleAt(row));
        });
    }

    [[nodiscard]] const QStringList &titles() const { return m_titles; }

private:
    [[nodiscard]] QString titleAt(int row) const
    {
        return m_model.data(m_model.index(row), RowListModel::TitleRole).toString();
    }

    RowListModel &m_model;
    QStringList m_titles;
};

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    FuzzInput input(data, size);
    RowListModel model;
    const QAbstractItemModelTester tester(&model, QAbstractItemModelTester::FailureReportingMode::Fatal);
    const View view(model);
    while (!input.isEmpty()) {
        const auto rows = nextList(input);
        model.setRows(rows);
        require(model.rows() == rows, "the list is what was set");
        QStringList titles;
        for (const auto &row : rows)
            titles.append(row.title);
        require(view.titles() == titles, "a view that follows shows the list");
    }
    return 0;
}
