#include "Views/Lyrics/LyricsLineModel.h"

#include "Views/Shared/ShownText.h"

namespace navorin {

void LyricsLineModel::setLines(const QList<LyricsLine> &lines)
{
    beginResetModel();
    m_lines = lines;
    endResetModel();
}

int LyricsLineModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : int(m_lines.size());
}

QVariant LyricsLineModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const auto &line = m_lines.at(index.row());
    switch (role) {
    case WordsRole:
    case Qt::DisplayRole:
        return shownText(line.text.value_or(QString()));
    case TranslationRole:
        return shownText(line.translation.value_or(QString()));
    case TimedRole:
        return line.time.has_value();
    default:
        return {};
    }
}

QHash<int, QByteArray> LyricsLineModel::roleNames() const
{
    return {{WordsRole, "words"}, {TranslationRole, "translation"}, {TimedRole, "isTimed"}};
}

} // namespace navorin
