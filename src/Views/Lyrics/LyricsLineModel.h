#pragma once

#include "Models/APIModels.h"

#include <QAbstractListModel>
#include <QtQml/qqmlregistration.h>

namespace navorin {

/// The lines of a song as rows.
class LyricsLineModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("comes with the lyrics' screen")
public:
    enum Role { WordsRole = Qt::UserRole, TranslationRole, TimedRole };

    using QAbstractListModel::QAbstractListModel;

    void setLines(const QList<LyricsLine> &lines);
    [[nodiscard]] const QList<LyricsLine> &lines() const { return m_lines; }

    [[nodiscard]] int rowCount(const QModelIndex &parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex &index, int role) const override;
    [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

private:
    QList<LyricsLine> m_lines;
};

} // namespace navorin
