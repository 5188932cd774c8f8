#pragma once

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

#include <optional>

namespace navorin {

/// What one row or card of a list shows. Two equal rows look the same, which what is behind them need not.
struct ListRow
{
    QString key; ///< what it is, through all changes of the list; several rows may share one
    QString title;
    QString line; ///< below the title; empty for none
    QString artworkAddress;
    QString note; ///< at the far end; empty for none

    bool operator==(const ListRow &) const = default;
};

/// The rows of a list. A new list changes it row by row, so that rows that stay the same are not touched.
/// When most of it differs, the rows stay and show something else: making anew what can be seen would take
/// several frames.
class RowListModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("comes with its screen")
    Q_PROPERTY(int count READ count NOTIFY countChanged)
public:
    enum Role { TitleRole = Qt::UserRole, LineRole, ArtworkRole, NoteRole, SelectedRole };

    using QAbstractListModel::QAbstractListModel;

    void setRows(const QList<ListRow> &fresh);
    [[nodiscard]] const QList<ListRow> &rows() const { return m_rows; }
    /// Every row of this key is selected.
    void setSelectedKey(std::optional<QString> key);
    /// The first row of this key, or -1.
    [[nodiscard]] qsizetype rowOf(const QString &key) const;

    [[nodiscard]] int count() const { return int(m_rows.size()); }
    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

private:
    void carryOut(const QList<ListRow> &fresh);
    void replace(const QList<ListRow> &fresh);
    void insertSome(qsizetype row, qsizetype number, const QList<ListRow> &fresh);
    void removeSome(qsizetype row, qsizetype number);
    void moveOne(qsizetype from, qsizetype to);
    void update(const QList<ListRow> &fresh);
    void tellSelection(const std::optional<QString> &key);

    QList<ListRow> m_rows;
    std::optional<QString> m_selectedKey;
};

} // namespace navorin
